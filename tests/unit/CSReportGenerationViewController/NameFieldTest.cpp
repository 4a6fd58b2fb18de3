#include "tests/unit/CSReportGenerationViewController/ReportScreenTest.h"

namespace chatsum::test {
namespace {

class NameField : public ReportScreenTest {
 protected:
  [[nodiscard]] platform::UITextField& field() const { return *screen->nameTextField(); }
  [[nodiscard]] bool canGenerate() { return screen->navigationItem().rightBarButtonItem()->isEnabled(); }
};

TEST_F(NameField, IsMadeByTheFirstNameCellAndKept) {
  screen->setSelectedRecords(request("Anna"));
  navigation.pushViewController(screen, true);
  EXPECT_EQ(screen->nameTextField(), nullptr);
  showAllRows();
  const auto made = screen->nameTextField();
  ASSERT_TRUE(made);
  table().reloadData();
  EXPECT_EQ(screen->nameTextField(), made);
  EXPECT_EQ(made->superview(), table().cellForRowAtIndexPath(kNameRow).get());
}

TEST_F(NameField, LooksAsItShould) {
  open(request("Anna"));
  EXPECT_EQ(field().text(), "Anna");
  EXPECT_EQ(field().frame(), (Rect{{100, 7}, {185, 30}}));
  EXPECT_EQ(field().textColor(), platform::kGrayColor);
  EXPECT_EQ(field().textAlignment(), platform::TextAlignment::kRight);
  EXPECT_EQ(field().autocorrectionType(), platform::UITextAutocorrectionType::kNo);
  EXPECT_EQ(static_cast<int>(field().returnKeyType()), 9);
  EXPECT_EQ(field().clearButtonMode(), platform::UITextFieldViewMode::kWhileEditing);
}

TEST_F(NameField, StaysInTheNameRowWhenCellsAreReused) {
  open(request("Anna"));
  for (int i = 0; i < 3; ++i) {
    for (const auto place : {kFormatRow, kNameRow, kSortRow}) table().endDisplayingRow(place);
    for (const auto place : {kSortRow, kFormatRow, kNameRow}) table().cellForRowAtIndexPath(place);
    EXPECT_EQ(field().superview(), table().cellForRowAtIndexPath(kNameRow).get());
    EXPECT_EQ(detail(kNameRow), "");
    EXPECT_TRUE(table().cellForRowAtIndexPath(kSortRow)->subviews().empty());
  }
}

TEST_F(NameField, StandsAloneInACellThatShowedAnotherCriterion) {
  screen->setSelectedRecords(request("Anna"));
  navigation.pushViewController(screen, true);
  const auto cell = table().cellForRowAtIndexPath(kSortRow);
  table().endDisplayingRow(kSortRow);
  ASSERT_EQ(table().cellForRowAtIndexPath(kNameRow), cell);
  EXPECT_EQ(title(kNameRow), "Name");
  EXPECT_EQ(detail(kNameRow), "");
}

TEST_F(NameField, StoresWhatIsTyped) {
  open(request("Anna"));
  type("Anna and Ben");
  EXPECT_EQ(fileName(), "Anna and Ben");
}

TEST_F(NameField, DisablesTheButtonWhileItIsEmptyAndKeepsTheLastName) {
  open(request("Anna"));
  type("");
  EXPECT_FALSE(canGenerate());
  EXPECT_EQ(fileName(), "Anna");
  pressGenerate();
  settle();
  EXPECT_FALSE(hasReport("Anna.txt"));
  type("B");
  EXPECT_TRUE(canGenerate());
  EXPECT_EQ(fileName(), "B");
}

TEST_F(NameField, StoresItsTextWhenEditingEnds) {
  open(request("Anna"));
  field().becomeFirstResponder();
  field().setText("Ben");
  EXPECT_EQ(fileName(), "Anna");
  field().pressReturn();
  EXPECT_FALSE(field().isFirstResponder());
  EXPECT_EQ(fileName(), "Ben");
  field().becomeFirstResponder();
  field().setText("");
  field().resignFirstResponder();
  EXPECT_EQ(fileName(), "Ben");
  EXPECT_FALSE(canGenerate());
}

TEST_F(NameField, AnswersYesToItsQuestions) {
  open();
  EXPECT_TRUE(screen->textFieldShouldEndEditing(field()));
  EXPECT_TRUE(screen->textFieldShouldReturn(field()));
}

TEST_F(NameField, IsCopiedEvenWhenEmptyAndResignsWheneverARowIsTapped) {
  open(request("Anna"));
  type("");
  tap(kNameRow);
  EXPECT_EQ(fileName(), "");
  EXPECT_FALSE(field().isFirstResponder());
  EXPECT_EQ(questions(), 0U);
  EXPECT_EQ(table().indexPathForSelectedRow(), std::nullopt);
  EXPECT_FALSE(canGenerate());
}

TEST_F(NameField, LeavesTheNameAloneBeforeItIsMade) {
  screen->setSelectedRecords(request("Anna"));
  navigation.pushViewController(screen, true);
  tap(kSortRow);
  EXPECT_EQ(fileName(), "Anna");
}

}  // namespace
}  // namespace chatsum::test
