#include "hosts/desktop/engine/MessageModel.h"

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>
#include <QSignalSpy>
#include <memory>
#include <string>

#include "hosts/desktop/engine/DateWords.h"
#include "tests/desktop/engine/RowsFixture.h"
#include "tests/desktop/engine/Waiting.h"

namespace chatsum::desktop {
namespace {

using testing::file;
using testing::happens;
using testing::kDay;
using testing::kMonday;
using testing::listOf;
using testing::manyMessages;
using testing::message;
using Tester = QAbstractItemModelTester;

class MessageModelTest : public ::testing::Test {
 protected:
  [[nodiscard]] QVariant at(int row, int role) const { return model.index(row).data(role); }
  [[nodiscard]] std::string textAt(int row, int role) const { return at(row, role).toString().toStdString(); }
  [[nodiscard]] QVariantMap attachmentAt(int row) const { return at(row, MessageModel::AttachmentRole).toMap(); }
  [[nodiscard]] bool find(const char* words) {
    model.search(QString::fromUtf8(words));
    return happens([&] { return !model.isSearching(); });
  }

  Worker worker;
  OpenDevice device;
  DateWords dates{Date{kMonday + 30 * kDay}};
  MessageModel model{worker, device, dates};
};

TEST_F(MessageModelTest, BehavesAsAModel) {
  const Tester tester(&model, Tester::FailureReportingMode::Fatal);
  model.setList(listOf({message("one"), file("User/Library/SMS/Attachments/a.jpg"), message("two", kMonday + kDay)}));
  EXPECT_EQ(model.rowCount(), 3);
  EXPECT_TRUE(find("o"));
  RowTicks ticks(3);
  model.setTicks(&ticks);
  model.tellTicks(0, 2);
  model.setList(listOf({message("other")}));
  model.clear();
  EXPECT_EQ(model.rowCount(), 0);
}

TEST_F(MessageModelTest, ShowsWhoSaidWhatAndWhen) {
  model.setList(listOf({message("Hello"), message("Hi", kMonday + 60, true)}));
  EXPECT_EQ(textAt(0, MessageModel::TextRole), "Hello");
  EXPECT_EQ(textAt(0, MessageModel::NameRole), "Maya Lindqvist");
  EXPECT_EQ(textAt(0, MessageModel::TimeTextRole), "10:40 AM");
  EXPECT_FALSE(at(0, MessageModel::IsFromMeRole).toBool());
  EXPECT_TRUE(at(1, MessageModel::IsFromMeRole).toBool());
  EXPECT_EQ(model.roleNames().value(MessageModel::TimeTextRole), "timeText");
}

TEST_F(MessageModelTest, SaysByWhichWayAMessageCameWhereThatChanges) {
  Record sms = message("Hello"), bare = message("Hi");
  sms.set("Address", "+15550100142");
  sms.set("Service", "SMS");
  const auto list = std::make_shared<MessageList>(*listOf({sms, sms, bare}));
  list->origins = {0, 2};
  model.setList(list);
  EXPECT_EQ(textAt(0, MessageModel::OriginRole), "+15550100142 · SMS");
  EXPECT_EQ(textAt(1, MessageModel::OriginRole), "");
  EXPECT_EQ(textAt(2, MessageModel::OriginRole), "");
  EXPECT_EQ(model.roleNames().value(MessageModel::OriginRole), "origin");
}

TEST_F(MessageModelTest, EachDayHasALineAboveItsFirstMessage) {
  const Record undated{{"guid", "G"}, {"Text", "no date"}, {"is_from_me", 0}};
  model.setList(listOf({undated, message("a"), message("b", kMonday + 60), message("c", kMonday + kDay), undated,
                        message("d", kMonday + kDay)}));
  EXPECT_EQ(textAt(0, MessageModel::DateLineRole), "");
  EXPECT_EQ(textAt(0, MessageModel::TimeTextRole), "");
  EXPECT_EQ(textAt(1, MessageModel::DateLineRole), "Monday, January 6, 2020");
  EXPECT_EQ(textAt(2, MessageModel::DateLineRole), "");
  EXPECT_EQ(textAt(3, MessageModel::DateLineRole), "Tuesday, January 7, 2020");
  EXPECT_EQ(textAt(4, MessageModel::DateLineRole), "");
}

TEST_F(MessageModelTest, DaysNearTodayHaveWords) {
  const double today = kMonday + 30 * kDay;
  model.setList(listOf({message("a", today - kDay), message("b", today)}));
  EXPECT_EQ(textAt(0, MessageModel::DateLineRole), "Yesterday");
  EXPECT_EQ(textAt(1, MessageModel::DateLineRole), "Today");
}

TEST_F(MessageModelTest, FilesAreToldByKindAndNameAndPicturesByAnAddress) {
  model.setList(listOf({message("words"), file("User/Library/SMS/Attachments/ab/Har bour%2F#?.JPG"), file("~/a.pdf"),
                        file("a.mov"), file("a.m4a"), file("strange")}));
  EXPECT_EQ(attachmentAt(0)["kind"].toString().toStdString(), "");
  EXPECT_EQ(textAt(1, MessageModel::TextRole), "");
  EXPECT_EQ(attachmentAt(1)["kind"].toString().toStdString(), "image");
  EXPECT_EQ(attachmentAt(1)["name"].toString().toStdString(), "Har bour%2F#?.JPG");
  const std::string url = attachmentAt(1)["url"].toString().toStdString();
  EXPECT_TRUE(url.starts_with("image://attachment/0/")) << url;
  EXPECT_EQ(url.find_first_of("%#? "), std::string::npos) << url;
  EXPECT_EQ(attachmentAt(2)["kind"].toString().toStdString(), "pdf");
  EXPECT_EQ(attachmentAt(3)["kind"].toString().toStdString(), "movie");
  EXPECT_EQ(attachmentAt(4)["kind"].toString().toStdString(), "audio");
  EXPECT_EQ(attachmentAt(5)["kind"].toString().toStdString(), "file");
  for (int row : {3, 4, 5}) EXPECT_EQ(attachmentAt(row)["url"].toString().toStdString(), "");
}

TEST_F(MessageModelTest, RowsThatNobodyWroteAreMarked) {
  model.setList(listOf({message("[added Jonas]"), message("[added by hand]")}, {0}));
  EXPECT_TRUE(at(0, MessageModel::IsSystemRole).toBool());
  EXPECT_FALSE(at(1, MessageModel::IsSystemRole).toBool());
}

TEST_F(MessageModelTest, SearchingMarksTheHitsAndGoesFromOneToTheNext) {
  model.setList(listOf({message("Sea"), message("sand"), message("by the SEA"), message("seal")}));
  QSignalSpy current(&model, &MessageModel::currentHitChanged);
  ASSERT_TRUE(find("sea"));
  EXPECT_EQ(model.hits(), 3);
  EXPECT_EQ(model.currentHit(), 2);
  EXPECT_EQ(model.currentHitRow(), 3);  // the newest
  EXPECT_EQ(current.count(), 1);
  model.nextHit();
  EXPECT_EQ(model.currentHitRow(), 0);
  EXPECT_TRUE(at(2, MessageModel::IsHitRole).toBool());
  EXPECT_FALSE(at(1, MessageModel::IsHitRole).toBool());
  model.nextHit();
  EXPECT_EQ(model.currentHitRow(), 2);
  model.nextHit();
  model.nextHit();
  EXPECT_EQ(model.currentHitRow(), 0);
  model.previousHit();
  EXPECT_EQ(model.currentHitRow(), 3);

  model.search({});
  EXPECT_EQ(model.hits(), 0);
  EXPECT_EQ(model.currentHit(), -1);
  EXPECT_EQ(model.currentHitRow(), -1);
  EXPECT_FALSE(at(2, MessageModel::IsHitRole).toBool());
  model.nextHit();
  model.previousHit();
  EXPECT_EQ(model.currentHit(), -1);
}

TEST_F(MessageModelTest, ASearchGoesUpwardsFromWhereItBegins) {
  model.setList(listOf({message("b"), message("a"), message("b"), message("a"), message("a")}));
  const auto rowFrom = [&](const char* words, int from) {
    model.search({});
    model.search(words, from);
    EXPECT_TRUE(happens([&] { return !model.isSearching(); }));
    return model.currentHitRow();
  };
  EXPECT_EQ(rowFrom("a", 4), 4);
  EXPECT_EQ(rowFrom("a", 2), 1);
  EXPECT_EQ(rowFrom("a", 0), 1);  // there is none above
  EXPECT_EQ(rowFrom("b", 4), 2);
  EXPECT_EQ(rowFrom("b", -1), 0);
  EXPECT_EQ(rowFrom("c", 4), -1);
}

TEST_F(MessageModelTest, ThereAreNoHitsUntilThoseOfTheNewWordsAreThere) {
  model.setList(listOf({message("a"), message("b")}));
  ASSERT_TRUE(find("a"));
  QSignalSpy told(&model, &MessageModel::hitsChanged);
  model.search("b");
  EXPECT_TRUE(model.isSearching());
  EXPECT_EQ(model.hits(), 0);
  EXPECT_EQ(model.currentHitRow(), -1);
  EXPECT_FALSE(at(0, MessageModel::IsHitRole).toBool());
  EXPECT_EQ(told.count(), 1);
  model.nextHit();
  EXPECT_EQ(model.currentHit(), -1);
  ASSERT_TRUE(happens([&] { return !model.isSearching(); }));
  EXPECT_EQ(model.currentHitRow(), 1);
}

TEST_F(MessageModelTest, OfAVeryLongMessageTheBeginningIsShownAndAllOfItFound) {
  const std::string end = "the very end";
  std::string japanese, blanks(16 * 1024, ' ');
  while (japanese.size() < 20'000) japanese += "日本";
  model.setList(listOf({message(std::string(1'000'000, 'x') + end), message(japanese), message(blanks)}));
  const QString cut = at(0, MessageModel::TextRole).toString();
  EXPECT_LT(cut.size(), 17'000);
  EXPECT_TRUE(cut.startsWith("xxx") && cut.endsWith("…\n\nThis message is very long; a report has all of it."));
  EXPECT_EQ(at(0, Qt::DisplayRole).toString(), cut);
  EXPECT_FALSE(at(1, MessageModel::TextRole).toString().contains(QChar::ReplacementCharacter));
  EXPECT_TRUE(at(1, MessageModel::TextRole).toString().contains("本…\n") ||
              at(1, MessageModel::TextRole).toString().contains("日…\n"));
  EXPECT_EQ(textAt(2, MessageModel::TextRole), blanks);
  ASSERT_TRUE(find(end.c_str()));
  EXPECT_EQ(model.hitRows(), (std::vector<std::uint32_t>{0}));
}

TEST_F(MessageModelTest, NamesTakeOneLine) {
  const Record odd{{"guid", "G"}, {"Text", "Hello"}, {"is_from_me", 0}, {"Name", "Ma\u202Eya\r\nLindqvist"}};
  model.setList(listOf({message("Hello"), odd, file("a/in\n\u202Evoice\u2029.pdf")}));
  EXPECT_EQ(textAt(0, MessageModel::NameRole), "Maya Lindqvist");
  EXPECT_EQ(textAt(1, MessageModel::NameRole), "Maya Lindqvist");
  EXPECT_EQ(attachmentAt(2)["name"].toString().toStdString(), "in voice .pdf");
}

TEST_F(MessageModelTest, OnlyTheLastOfSeveralSearchesCounts) {
  model.setList(listOf({message("a"), message("b")}));
  model.search("a");
  model.search("ab");
  model.search("b");
  ASSERT_TRUE(happens([&] { return !model.isSearching(); }));
  EXPECT_EQ(model.hitRows(), (std::vector<std::uint32_t>{1}));
}

TEST_F(MessageModelTest, OtherMessagesEndTheSearch) {
  model.setList(listOf({message("a"), message("b")}));
  ASSERT_TRUE(find("b"));
  model.setList(listOf({message("c")}));
  EXPECT_EQ(model.hits(), 0);
  ASSERT_TRUE(find("c"));
  model.setList(listOf({message("c")}));
  model.search("c");  // these are other messages
  EXPECT_TRUE(model.isSearching());
  model.setList(listOf({message("d")}));  // while it is on its way
  EXPECT_FALSE(model.isSearching());
  testing::runEvents();
  EXPECT_EQ(model.hits(), 0);
}

TEST_F(MessageModelTest, TellsWhenThereIsNoSourceToReadFrom) {
  model.show(device::Conversation());
  EXPECT_EQ(model.state(), MessageModel::State::Reading);
  ASSERT_TRUE(happens([&] { return model.state() == MessageModel::State::Failed; }));
  EXPECT_NE(model.error(), "");
}

TEST_F(MessageModelTest, AMillionMessagesAreCountedAndSearchedWithoutACopy) {
  const auto list = manyMessages(1'000'000);
  const void* records = list->rows.records.identity();
  model.setList(list);
  EXPECT_EQ(model.rowCount(), 1'000'000);
  EXPECT_EQ(model.list()->rows.records.identity(), records);
  EXPECT_EQ(textAt(999'998, MessageModel::TextRole), "message 999998");
  ASSERT_TRUE(find("MESSAGE 99999"));
  // 99999 itself is a file; of 999990 to 999999 the last one is.
  EXPECT_EQ(model.hits(), 9);
  EXPECT_EQ(model.currentHitRow(), 999'998);
}

}  // namespace
}  // namespace chatsum::desktop
