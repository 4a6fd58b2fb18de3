#include "hosts/desktop/engine/ConversationFilter.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hosts/desktop/engine/DateWords.h"
#include "tests/desktop/engine/RowsFixture.h"

namespace chatsum::desktop {
namespace {

using Tester = QAbstractItemModelTester;
using Names = std::vector<std::string>;

device::Conversation conversation(const std::string& name, std::vector<device::ConversationMember> members,
                                  bool isGroup = false) {
  device::Conversation made;
  made.guids = {"chat of " + name};
  made.name = name;
  made.members = std::move(members);
  made.isGroup = isGroup;
  made.messages = 12;
  made.last = Date{testing::kMonday};
  return made;
}

std::shared_ptr<const ConversationItems> shared(std::vector<device::Conversation> conversations) {
  return std::make_shared<ConversationItems>(itemsOf(std::move(conversations)));
}

class ConversationFilterTest : public ::testing::Test {
 protected:
  ConversationFilterTest() {
    const device::ConversationMember maya{"+15550100142", "Maya Lindqvist", 1}, jonas{"jonas@example.com", "Jönas", 2},
        unknown{"020 5550 1063", "020 5550 1063", -1};
    model.setItems(shared({conversation("Maya Lindqvist", {maya}), conversation("Straßenfest", {maya, jonas}, true),
                           conversation("020 5550 1063", {unknown})}));
  }
  [[nodiscard]] Names names() const {
    Names found;
    for (int row = 0; row < filter.rowCount(); ++row) {
      found.push_back(filter.index(row, 0).data(ConversationModel::NameRole).toString().toStdString());
    }
    return found;
  }
  [[nodiscard]] Names namesFor(const char* words) {
    filter.setFilter(QString::fromUtf8(words));
    return names();
  }

  DateWords dates{Date{testing::kMonday + 40 * testing::kDay}};
  ConversationModel model{dates};
  ConversationFilter filter{model};
};

TEST_F(ConversationFilterTest, BehavesAsAModel) {
  const Tester ofModel(&model, Tester::FailureReportingMode::Fatal);
  const Tester ofFilter(&filter, Tester::FailureReportingMode::Fatal);
  for (const char* words : {"maya", "x", "555", ""}) filter.setFilter(words);
  model.setItems(nullptr);
  model.setItems(shared({conversation("A", {})}));
  EXPECT_EQ(filter.count(), 1);
}

TEST_F(ConversationFilterTest, FindsNamesInAnyCaseAlsoThoseOfMembers) {
  EXPECT_EQ(namesFor("MAYA"), (Names{"Maya Lindqvist", "Straßenfest"}));
  EXPECT_EQ(namesFor("strasse"), (Names{"Straßenfest"}));
  EXPECT_EQ(namesFor("JO\u0308NAS"), (Names{"Straßenfest"}));
  EXPECT_EQ(namesFor("jonas@"), (Names{"Straßenfest"}));
  EXPECT_EQ(namesFor("  lindqvist "), (Names{"Maya Lindqvist", "Straßenfest"}));
  EXPECT_EQ(namesFor("nobody"), Names{});
  EXPECT_EQ(namesFor(""), (Names{"Maya Lindqvist", "Straßenfest", "020 5550 1063"}));
}

TEST_F(ConversationFilterTest, FindsWhatPeopleTypeAndNothingForWhatNobodySees) {
  model.setItems(shared({conversation("İstanbul", {}), conversation("Oslo", {})}));
  EXPECT_EQ(namesFor("istanbul"), (Names{"İstanbul"}));
  EXPECT_EQ(namesFor("İSTANBUL"), (Names{"İstanbul"}));
  EXPECT_EQ(namesFor("\u200B"), Names{});
  EXPECT_EQ(namesFor("  "), (Names{"İstanbul", "Oslo"}));
}

TEST_F(ConversationFilterTest, NamesTakeOneLineAndLeaveOthersInTheirPlaces) {
  const device::ConversationMember hebrew{"a@example.com", "שלום", 1}, odd{"b@example.com", "Jo\u202E\nnas", 2};
  model.setItems(shared({conversation("A\u2028trip\u200F " + std::string(200'000, 'x'), {hebrew, odd}, true)}));
  const auto at = [&](int role) { return model.index(0).data(role).toString(); };
  EXPECT_EQ(at(ConversationModel::MembersRole), "\u2068שלום\u2069, Jo nas");
  EXPECT_TRUE(at(ConversationModel::NameRole).startsWith("A trip xxx"));
  EXPECT_EQ(at(ConversationModel::NameRole).size(), 201);
  EXPECT_EQ(at(ConversationModel::InitialsRole), "AX");
}

TEST_F(ConversationFilterTest, OneThatCouldNotBeReadCanBeReadAgain) {
  QSignalSpy selected(&filter, &ConversationFilter::conversationSelected);
  filter.readAgain();
  EXPECT_EQ(selected.count(), 0);
  filter.select("chat of Straßenfest");
  filter.setFilter("nobody");
  filter.readAgain();
  ASSERT_EQ(selected.count(), 2);
  EXPECT_EQ(filter.selectedGuid(), "chat of Straßenfest");
  model.setItems(nullptr);
  filter.readAgain();
  EXPECT_EQ(selected.count(), 2);
}

TEST_F(ConversationFilterTest, FindsNumbersHoweverTheyAreWritten) {
  EXPECT_EQ(namesFor("(555) 010-0142"), (Names{"Maya Lindqvist", "Straßenfest"}));
  EXPECT_EQ(namesFor("+1 555 0100"), (Names{"Maya Lindqvist", "Straßenfest"}));
  EXPECT_EQ(namesFor("001555010"), (Names{"Maya Lindqvist", "Straßenfest"}));
  EXPECT_EQ(namesFor("20-5550-1063"), (Names{"020 5550 1063"}));
  EXPECT_EQ(namesFor("٥٥٥٠١"), (Names{"Maya Lindqvist", "Straßenfest", "020 5550 1063"}));
  EXPECT_EQ(namesFor("0"), (Names{"Maya Lindqvist", "Straßenfest", "020 5550 1063"}));
  EXPECT_EQ(namesFor("999"), Names{});
}

TEST_F(ConversationFilterTest, ShowsWhatAListShows) {
  const auto at = [&](int row, int role) { return model.index(row).data(role).toString().toStdString(); };
  EXPECT_EQ(at(0, ConversationModel::MembersRole), "+15550100142");
  EXPECT_EQ(at(1, ConversationModel::MembersRole), "Maya Lindqvist, Jönas");
  EXPECT_EQ(at(0, ConversationModel::LastTextRole), "Jan 6, 2020");
  EXPECT_EQ(model.index(0).data(ConversationModel::CountRole).toInt(), 12);
  EXPECT_TRUE(model.index(1).data(ConversationModel::IsGroupRole).toBool());
  EXPECT_EQ(model.roleNames().value(ConversationModel::InitialsRole), "initials");
}

TEST_F(ConversationFilterTest, OneIsSelectedByItsGuidWhateverIsFiltered) {
  QSignalSpy selected(&filter, &ConversationFilter::conversationSelected);
  filter.select("chat of Straßenfest");
  filter.select("chat of Straßenfest");
  filter.select("chat of nobody");
  EXPECT_EQ(selected.count(), 1);
  EXPECT_EQ(filter.selectedGuid(), "chat of Straßenfest");
  EXPECT_EQ(filter.selectedName(), "Straßenfest");
  EXPECT_EQ(filter.selectedRow(), 1);
  filter.setFilter("strasse");
  EXPECT_EQ(filter.selectedRow(), 0);
  filter.setFilter("020");
  EXPECT_EQ(filter.selectedRow(), -1);
  EXPECT_EQ(filter.selectedGuid(), "chat of Straßenfest");
  EXPECT_EQ(filter.selectedMembers(), "Maya Lindqvist, Jönas");
  EXPECT_EQ(filter.selectedInitials(), "S");
  EXPECT_TRUE(filter.selectedIsGroup());
  QSignalSpy left(&filter, &ConversationFilter::conversationLeft);
  filter.selectNone();
  filter.selectNone();
  EXPECT_EQ(left.count(), 1);
  EXPECT_EQ(filter.selectedGuid(), "");
}

TEST(InitialsTest, AreTheFirstLettersOfTheFirstAndLastWord) {
  const auto initials = [](const char* name) { return initialsOf(QString::fromUtf8(name)).toStdString(); };
  EXPECT_EQ(initials("Maya Lindqvist"), "ML");
  EXPECT_EQ(initials("maya van der Berg"), "MB");
  EXPECT_EQ(initials("Élodie"), "É");
  EXPECT_EQ(initials("E\u0301lodie"), "E\u0301");
  EXPECT_EQ(initials("+1 (555) 010-0142"), "");
  EXPECT_EQ(initials(""), "");
}

}  // namespace
}  // namespace chatsum::desktop
