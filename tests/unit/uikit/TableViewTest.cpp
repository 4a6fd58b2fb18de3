#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "platform/uikit/UITableView.h"

namespace chatsum::platform::test {
namespace {

class RedCell final : public UITableViewCell {
 public:
  RedCell(UITableViewCellStyle style, std::string identifier) : UITableViewCell(style, std::move(identifier)) {}
  void layoutSubviews() override { ++layouts; }
  int layouts = 0;
};

/// Sections of words.
struct Words final : UITableViewDataSource, UITableViewDelegate, UITableViewListener {
  std::vector<std::vector<std::string>> sections = {{"a", "b", "c"}, {"d"}};
  std::vector<std::string> told;

  std::int64_t numberOfSectionsInTableView(UITableView&) override { return std::ssize(sections); }
  std::int64_t numberOfRowsInSection(UITableView&, std::int64_t section) override {
    return std::ssize(sections.at(static_cast<std::size_t>(section)));
  }
  std::shared_ptr<UITableViewCell> cellForRowAtIndexPath(UITableView& table, IndexPath place) override {
    auto cell = table.dequeueReusableCellWithIdentifier("Red", place);
    cell->textLabel().setText(
        sections.at(static_cast<std::size_t>(place.section)).at(static_cast<std::size_t>(place.row)));
    return cell;
  }
  std::optional<std::string> titleForHeaderInSection(UITableView&, std::int64_t section) override {
    return "header " + std::to_string(section);
  }
  std::optional<std::string> titleForFooterInSection(UITableView&, std::int64_t) override { return std::nullopt; }
  bool canEditRowAtIndexPath(UITableView&, IndexPath place) override { return place.section > 0; }
  void commitEditingStyle(UITableView&, UITableViewCellEditingStyle style, IndexPath place) override {
    told.push_back("commit " + std::to_string(static_cast<int>(style)) + " " + text(place));
  }
  void didSelectRowAtIndexPath(UITableView&, IndexPath place) override { told.push_back("tap " + text(place)); }
  UITableViewCellEditingStyle editingStyleForRowAtIndexPath(UITableView&, IndexPath) override {
    return UITableViewCellEditingStyle::kDelete;
  }
  void didReload(UITableView&) override { told.push_back("reload"); }
  void didUpdate(UITableView&, const UITableViewUpdate& update) override {
    std::string line = "update";
    for (const auto& place : update.deletedRows) line += " row " + text(place);
    for (const auto section : update.deletedSections) line += " section " + std::to_string(section);
    told.push_back(line + " animation " + std::to_string(static_cast<int>(update.animation)));
  }
  void didDeselectRow(UITableView&, IndexPath place, bool animated) override {
    told.push_back("deselect " + text(place) + (animated ? " animated" : ""));
  }
  static std::string text(IndexPath place) { return std::to_string(place.section) + "." + std::to_string(place.row); }
};

class TableView : public ::testing::Test {
 protected:
  Words words;
  UITableView table{UITableViewStyle::kGrouped};

  void SetUp() override {
    table.setDataSource(&words);
    table.setDelegate(&words);
    table.setListener(&words);
    table.registerClass<RedCell>("Red");
  }
  std::string textAt(std::int64_t section, std::int64_t row) {
    const auto cell = table.cellForRowAtIndexPath({section, row});
    return cell ? cell->textLabel().text() : "nothing";
  }
};

TEST_F(TableView, IsEmptyWithoutADataSource) {
  table.setDataSource(nullptr);
  table.reloadData();
  EXPECT_EQ(table.numberOfSections(), 0);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 0}), nullptr);
  EXPECT_EQ(table.titleForHeaderInSection(0), std::nullopt);
  table.tapRow({0, 0});
  EXPECT_EQ(table.editingStyle({0, 0}), UITableViewCellEditingStyle::kNone);
  EXPECT_EQ(words.told, std::vector<std::string>{"reload"});
}

TEST_F(TableView, AnswersAsOfTheLastReload) {
  EXPECT_EQ(table.numberOfSections(), 2);
  EXPECT_EQ(table.numberOfRowsInSection(0), 3);
  words.sections = {{"x"}};
  EXPECT_EQ(table.numberOfSections(), 2);
  table.reloadData();
  EXPECT_EQ(table.numberOfSections(), 1);
  EXPECT_EQ(table.numberOfRowsInSection(0), 1);
  EXPECT_EQ(table.numberOfRowsInSection(1), 0);
  EXPECT_EQ(table.numberOfRowsInSection(-1), 0);
}

TEST_F(TableView, MakesCellsOfTheRegisteredClassAsWideAsItself) {
  table.setFrame({{0, 0}, {414, 896}});
  const auto cell = table.cellForRowAtIndexPath({0, 0});
  ASSERT_NE(dynamic_cast<RedCell*>(cell.get()), nullptr);
  EXPECT_EQ(cell->style(), UITableViewCellStyle::kDefault);
  EXPECT_EQ(cell->reuseIdentifier(), "Red");
  EXPECT_EQ(cell->frame(), (Rect{{0, 0}, {414, 44}}));
  EXPECT_EQ(dynamic_cast<RedCell*>(cell.get())->layouts, 1);
}

TEST_F(TableView, GivesAPlainCellForAnUnknownIdentifier) {
  const auto cell = table.dequeueReusableCellWithIdentifier("Blue", {0, 0});
  EXPECT_EQ(cell->reuseIdentifier(), "Blue");
  EXPECT_EQ(cell->style(), UITableViewCellStyle::kDefault);
}

TEST_F(TableView, ShowsOneCellPerRow) {
  const auto cell = table.cellForRowAtIndexPath({0, 1});
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 1}), cell);
  EXPECT_NE(table.cellForRowAtIndexPath({0, 2}), cell);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 3}), nullptr);
  EXPECT_EQ(table.cellForRowAtIndexPath({2, 0}), nullptr);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, -1}), nullptr);
}

TEST_F(TableView, ReusesTheCellOfARowThatIsNoLongerShown) {
  const auto cell = table.cellForRowAtIndexPath({0, 0});
  table.endDisplayingRow({0, 0});
  EXPECT_EQ(table.cellForRowAtIndexPath({1, 0}), cell);
  EXPECT_EQ(cell->textLabel().text(), "d");
  EXPECT_NE(table.cellForRowAtIndexPath({0, 0}), cell);
}

TEST_F(TableView, GivesARowItsOwnCellBack) {
  const auto a = table.cellForRowAtIndexPath({0, 0}), b = table.cellForRowAtIndexPath({0, 1});
  table.endDisplayingRow({0, 0});
  table.endDisplayingRow({0, 1});
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 1}), b);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 0}), a);
}

TEST_F(TableView, AsksForTheShownCellsAnewWhenItReloads) {
  const auto a = table.cellForRowAtIndexPath({0, 0});
  const auto c = table.cellForRowAtIndexPath({0, 2});
  words.sections[0] = {"A", "B"};
  table.reloadData();
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 0}), a) << "a row keeps its cell";
  EXPECT_EQ(a->textLabel().text(), "A");
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 2}), nullptr);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 1}), c) << "the cell of the row that went serves another";
}

TEST_F(TableView, DeletesRowsAndSectionsInOneStep) {
  const auto c = table.cellForRowAtIndexPath({0, 2});
  ASSERT_EQ(textAt(1, 0), "d");
  words.sections = {{"a", "c"}};
  table.beginUpdates();
  table.deleteRowsAtIndexPaths({{0, 1}}, UITableViewRowAnimation::kAutomatic);
  table.deleteSections({1}, UITableViewRowAnimation::kAutomatic);
  EXPECT_TRUE(words.told.empty());
  EXPECT_TRUE(table.endUpdates());
  EXPECT_EQ(words.told, std::vector<std::string>{"update row 0.1 section 1 animation 100"});
  EXPECT_EQ(table.numberOfSections(), 1);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 1}), c) << "the rows behind move up with their cells";
}

TEST_F(TableView, MovesSectionsUpBehindADeletedOne) {
  ASSERT_EQ(textAt(1, 0), "d");
  const auto d = table.cellForRowAtIndexPath({1, 0});
  words.sections = {{"d"}};
  table.deleteSections({0}, UITableViewRowAnimation::kAutomatic);
  EXPECT_EQ(table.cellForRowAtIndexPath({0, 0}), d);
  EXPECT_EQ(words.told, std::vector<std::string>{"update section 0 animation 100"});
}

TEST_F(TableView, DeletesARowWithItsSection) {
  ASSERT_EQ(table.numberOfSections(), 2);
  words.sections.pop_back();
  table.beginUpdates();
  table.deleteRowsAtIndexPaths({{1, 0}}, UITableViewRowAnimation::kAutomatic);
  table.deleteSections({1}, UITableViewRowAnimation::kAutomatic);
  EXPECT_TRUE(table.endUpdates());
  EXPECT_EQ(table.numberOfSections(), 1);
}

TEST_F(TableView, TakesADeletionByItselfAsOneStep) {
  ASSERT_EQ(table.numberOfRowsInSection(0), 3);
  words.sections[0] = {"b"};
  table.deleteRowsAtIndexPaths({{0, 2}, {0, 0}, {0, 0}}, UITableViewRowAnimation::kAutomatic);
  EXPECT_EQ(words.told, std::vector<std::string>{"update row 0.0 row 0.2 animation 100"});
}

TEST_F(TableView, ReloadsWhenTheDataSourceLostSomethingElse) {
  const auto deleting = [this](std::vector<std::vector<std::string>> left, std::vector<IndexPath> rows,
                               std::vector<std::int64_t> sections) {
    words.sections = {{"a", "b", "c"}, {"d"}};
    table.reloadData();
    words.told.clear();
    words.sections = std::move(left);
    table.beginUpdates();
    table.deleteRowsAtIndexPaths(rows, UITableViewRowAnimation::kAutomatic);
    table.deleteSections(sections, UITableViewRowAnimation::kAutomatic);
    return table.endUpdates();
  };
  EXPECT_FALSE(deleting({{"a", "b", "c"}, {"d"}}, {{0, 1}}, {})) << "nothing lost";
  EXPECT_EQ(words.told, std::vector<std::string>{"reload"});
  EXPECT_EQ(table.numberOfRowsInSection(0), 3);
  EXPECT_FALSE(deleting({{"a"}, {"d"}}, {{0, 1}}, {})) << "more lost";
  EXPECT_EQ(table.numberOfRowsInSection(0), 1);
  EXPECT_FALSE(deleting({{"a", "b", "c"}}, {{1, 0}}, {})) << "the section, too";
  EXPECT_FALSE(deleting({{"a", "b", "c"}, {"d"}}, {}, {1})) << "the section stays";
  EXPECT_FALSE(deleting({{"a", "b"}, {"d"}}, {{0, 3}}, {})) << "no such row";
  EXPECT_FALSE(deleting({{"a", "b"}, {"d"}}, {{-1, 0}}, {})) << "no such section of the row";
  EXPECT_FALSE(deleting({{"a", "b"}, {"d"}}, {}, {2})) << "no such section";
  EXPECT_TRUE(deleting({{"a", "b", "c"}, {"d"}}, {}, {})) << "nothing deleted, nothing lost";
}

TEST_F(TableView, HasNothingToEndWithoutABeginning) {
  EXPECT_TRUE(table.endUpdates());
  EXPECT_TRUE(words.told.empty());
}

TEST_F(TableView, SelectsTheRowThatIsTappedUntilItIsDeselected) {
  table.tapRow({0, 2});
  EXPECT_EQ(table.indexPathForSelectedRow(), (IndexPath{0, 2}));
  table.deselectRowAtIndexPath({0, 1}, true);
  EXPECT_EQ(table.indexPathForSelectedRow(), (IndexPath{0, 2}));
  table.deselectRowAtIndexPath({0, 2}, true);
  EXPECT_EQ(table.indexPathForSelectedRow(), std::nullopt);
  table.tapRow({0, 7});
  EXPECT_EQ(words.told, (std::vector<std::string>{"tap 0.2", "deselect 0.2 animated"}));
}

TEST_F(TableView, DeletesOnlyWhereThatIsOffered) {
  EXPECT_EQ(table.editingStyle({0, 0}), UITableViewCellEditingStyle::kNone);
  EXPECT_EQ(table.editingStyle({1, 0}), UITableViewCellEditingStyle::kDelete);
  table.confirmDeletion({0, 0});
  table.confirmDeletion({1, 1});
  table.confirmDeletion({1, 0});
  EXPECT_EQ(words.told, std::vector<std::string>{"commit 1 1.0"});
}

}  // namespace
}  // namespace chatsum::platform::test
