#include "hosts/desktop/engine/Selection.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <memory>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "platform/fake/FakePlatform.h"
#include "tests/desktop/engine/RowsFixture.h"
#include "tests/desktop/engine/Waiting.h"

namespace chatsum::desktop {
namespace {

using testing::file;
using testing::happens;
using testing::kDay;
using testing::kMonday;
using testing::manyMessages;
using testing::message;
using testing::rowsOf;
using testing::textsOf;
using Mode = Selection::Mode;
using Texts = std::vector<std::string>;

class SelectionTest : public ::testing::Test {
 protected:
  void show(std::vector<Record> records) { selection.setRows(RowsOf::kMessages, rowsOf(std::move(records))); }
  /// Five messages, one on each day from Monday on, the third one a film.
  void showWeek() {
    show({message("mon"), message("tue", kMonday + kDay), file("wed.mov", kMonday + 2 * kDay),
          message("thu", kMonday + 3 * kDay), message("fri", kMonday + 4 * kDay)});
  }
  void showMany() {
    const auto list = manyMessages(1'000'000);
    selection.setRows(RowsOf::kMessages, std::shared_ptr<const ReportRows>(list, &list->rows));
  }
  [[nodiscard]] Texts selected() const { return textsOf(selection.rows().records()); }

  platform::fake::FakePlatform fake;  // knows which files are pictures
  platform::fake::ScopedPlatform scope{fake};
  Worker worker;
  Selection selection{worker};
};

TEST_F(SelectionTest, AllRowsAreSelectedAtFirst) {
  EXPECT_EQ(selection.count(), 0);
  showWeek();
  EXPECT_EQ(selection.mode(), Mode::All);
  EXPECT_EQ(selection.count(), 5);
  EXPECT_EQ(selected(), (Texts{"mon", "tue", "wed.mov", "thu", "fri"}));
  EXPECT_TRUE(selection.hasAttachments());
  EXPECT_TRUE(selection.hasMultiMediaAttachments());
}

TEST_F(SelectionTest, TickedRowsAreSelectedOnceOneIsTicked) {
  showWeek();
  selection.tick(3, true);
  selection.tick(0, true);
  EXPECT_EQ(selection.mode(), Mode::Ticked);
  EXPECT_EQ(selection.count(), 2);
  EXPECT_EQ(selected(), (Texts{"mon", "thu"}));
  EXPECT_FALSE(selection.hasAttachments());
  selection.tickRange(3, 1);
  EXPECT_EQ(selected(), (Texts{"mon", "tue", "wed.mov", "thu"}));
  EXPECT_TRUE(selection.hasMultiMediaAttachments());
  selection.tick(0, false);
  EXPECT_FALSE(selection.isTicked(0));
  EXPECT_TRUE(selection.isTicked(1));
  selection.clear();
  EXPECT_EQ(selection.mode(), Mode::All);
  EXPECT_FALSE(selection.isTicked(1));
}

TEST_F(SelectionTest, WhatIsNoRowCannotBeTicked) {
  showWeek();
  for (const int row : {-1, 5, 1000}) selection.tick(row, true);
  selection.tickRange(7, 9);
  selection.tickRange(-9, -7);
  EXPECT_EQ(selection.mode(), Mode::All);
  EXPECT_FALSE(selection.isTicked(-1));
  selection.tickRange(-3, 100);
  EXPECT_EQ(selection.count(), 5);
}

TEST_F(SelectionTest, TellsWhichTicksChanged) {
  showWeek();
  QSignalSpy ticks(&selection, &Selection::ticksChanged);
  selection.tickRange(1, 3);
  ASSERT_EQ(ticks.count(), 1);
  EXPECT_EQ(ticks.at(0).at(1).toInt(), 1);
  EXPECT_EQ(ticks.at(0).at(2).toInt(), 3);
}

TEST_F(SelectionTest, ARangeOfDatesHasItsLastDayInside) {
  showWeek();
  selection.setMode(Mode::Range);
  EXPECT_EQ(selection.count(), 5);
  selection.setSince("2020-01-07");
  EXPECT_EQ(selection.count(), 4);
  selection.setUntil(" 2020-01-09 ");
  EXPECT_EQ(selected(), (Texts{"tue", "wed.mov", "thu"}));
  selection.setUntil("2020-01-09 09:00");
  EXPECT_EQ(selected(), (Texts{"tue", "wed.mov"}));
  selection.setSince("");
  EXPECT_EQ(selected(), (Texts{"mon", "tue", "wed.mov"}));
}

TEST_F(SelectionTest, NothingIsInsideTimesThatMeanNothing) {
  showWeek();
  selection.setMode(Mode::Range);
  selection.setSince("yesterday");
  EXPECT_FALSE(selection.isSinceValid());
  EXPECT_TRUE(selection.isUntilValid());
  EXPECT_FALSE(selection.isRangeValid());
  EXPECT_EQ(selection.count(), 0);
  selection.setSince("2020-01-08");
  selection.setUntil("2020-01-07");
  EXPECT_TRUE(selection.isSinceValid());
  EXPECT_TRUE(selection.isUntilValid());
  EXPECT_FALSE(selection.isRangeValid());
  EXPECT_EQ(selection.count(), 0);
  EXPECT_TRUE(selected().empty());
}

TEST_F(SelectionTest, RowsWithoutADateAreInsideOfNoTimesButTheOpenOnes) {
  show({Record{{"Text", "undated"}}, message("mon")});
  selection.setMode(Mode::Range);
  EXPECT_EQ(selection.count(), 2);
  selection.setSince("1900-01-01");
  EXPECT_EQ(selected(), (Texts{"mon"}));
}

TEST_F(SelectionTest, HitsReachFromTheFirstToTheLast) {
  showWeek();
  selection.setMode(Mode::Hits);
  EXPECT_EQ(selection.count(), 0);
  selection.setHits(1, 3);
  EXPECT_EQ(selected(), (Texts{"tue", "wed.mov", "thu"}));
  EXPECT_TRUE(selection.hasAttachments());
  selection.setHits(4, 4);
  EXPECT_EQ(selected(), (Texts{"fri"}));
  EXPECT_FALSE(selection.hasAttachments());
  selection.setHits(std::nullopt, std::nullopt);
  EXPECT_EQ(selection.count(), 0);
}

TEST_F(SelectionTest, EachListHasItsOwnChoice) {
  showWeek();
  selection.setRows(RowsOf::kPhone, rowsOf({message("call one"), message("call two")}));
  selection.tick(2, true);
  selection.setApp("phone");
  EXPECT_EQ(selection.mode(), Mode::All);
  EXPECT_EQ(selected(), (Texts{"call one", "call two"}));
  selection.tick(1, true);
  selection.setMode(Mode::Hits);
  EXPECT_EQ(selection.count(), 0);
  selection.setApp("messages");
  EXPECT_EQ(selected(), (Texts{"wed.mov"}));
  EXPECT_TRUE(selection.ticks(RowsOf::kPhone).has(1));
  selection.setApp("letters");
  EXPECT_EQ(selection.app(), "messages");
}

TEST_F(SelectionTest, OtherRowsAreChosenAnew) {
  showWeek();
  selection.tick(1, true);
  selection.setSince("2020-01-07");
  showWeek();
  EXPECT_EQ(selection.mode(), Mode::All);
  EXPECT_EQ(selection.since(), "");
  EXPECT_FALSE(selection.isTicked(1));
  selection.setRows(RowsOf::kMessages, nullptr);
  EXPECT_EQ(selection.count(), 0);
  EXPECT_EQ(selection.total(), 0);
}

TEST_F(SelectionTest, TheRequestLeavesTheLineFormatToTheFormatThatIsChosenLater) {
  showWeek();
  selection.tickRange(0, 1);
  const SelectedReport report = selection.request(device::ReportFormat::kCsv);
  EXPECT_EQ(report.request[request::kFileName].description(), "Maya Lindqvist");
  EXPECT_EQ(report.request[request::kFileFormat].integerValue(), kFileFormatCSV);
  EXPECT_TRUE(report.request[request::kReportFormat].isNone());
  EXPECT_EQ(textsOf(*report.request[request::kRecords].asArray()), (Texts{"mon", "tue"}));
  EXPECT_EQ(report.request[request::kColumns], Value(Array{"Name", "Text", "Date"}));
  EXPECT_FALSE(report.hasAttachments);
}

TEST_F(SelectionTest, TheWorkerPreparesTheSameRequest) {
  showWeek();
  selection.tickRange(1, 3);
  QObject receiver;
  std::optional<SelectedReport> prepared;
  selection.prepare(device::ReportFormat::kPdf, &receiver,
                    [&](SelectedReport report) { prepared = std::move(report); });
  const SelectedReport expected = selection.request(device::ReportFormat::kPdf);
  selection.clear();  // what was asked for stays as it was
  ASSERT_TRUE(happens([&] { return prepared.has_value(); }));
  EXPECT_EQ(prepared->request, expected.request);
  EXPECT_EQ(prepared->hasAttachments, expected.hasAttachments);
  EXPECT_TRUE(prepared->hasMultiMediaAttachments);
}

/// Counts what came of a preparation.
struct Preparation {
  explicit Preparation(Selection& selection) : dropped(&selection, &Selection::preparationDropped) {
    selection.prepare(device::ReportFormat::kPdf, &receiver, [this](const SelectedReport&) { ++done; });
  }
  /// Lets the worker and the events do all that they have to do.
  void settle(Worker& worker) {
    bool isIdle = false;
    worker.run(
        &receiver, [](const Cancellation&) { return device::StoreResult<int>(0); },
        [&](const device::StoreResult<int>&) { isIdle = true; });
    ASSERT_TRUE(happens([&] { return isIdle; }));
  }

  QObject receiver;
  QSignalSpy dropped;
  int done = 0;
};

TEST_F(SelectionTest, OtherRowsDropWhatIsPreparedOfTheirListAndTellSo) {
  showWeek();
  Preparation preparation(selection);
  show({message("sat")});
  EXPECT_EQ(preparation.dropped.count(), 1);
  preparation.settle(worker);
  EXPECT_EQ(preparation.done, 0);
  Preparation next(selection);  // nothing stands in its way
  next.settle(worker);
  EXPECT_EQ(next.done, 1);
  show({});
  EXPECT_EQ(next.dropped.count(), 0);  // it was done already
}

TEST_F(SelectionTest, OtherRowsOfAnotherListLeaveWhatIsPreparedAlone) {
  showWeek();
  Preparation preparation(selection);
  selection.setRows(RowsOf::kPhone, rowsOf({message("a call")}));
  preparation.settle(worker);
  EXPECT_EQ(preparation.dropped.count(), 0);
  EXPECT_EQ(preparation.done, 1);
}

TEST_F(SelectionTest, AnotherListInFrontDropsWhatIsPrepared) {
  showWeek();
  Preparation preparation(selection);
  selection.setApp("phone");
  EXPECT_EQ(preparation.dropped.count(), 1);
  preparation.settle(worker);
  EXPECT_EQ(preparation.done, 0);
}

TEST_F(SelectionTest, AnotherListOfMessagesHasNoHits) {
  showWeek();
  selection.setHits(0, 1);
  show({message("sat"), message("sun")});
  selection.setMode(Mode::Hits);
  EXPECT_EQ(selection.count(), 0);
}

TEST_F(SelectionTest, PicturesAreNamedInTheRecordsOfAReportWithoutPictures) {
  show({message("mon"), file("User/Library/tue.png", kMonday + kDay), message("See https://example.com/wed.png"),
        message("thu.pdf")});
  const SelectedReport report = selection.request();
  // What was typed names no file: a blank keeps it.
  EXPECT_EQ(textsOf(*report.request[request::kRecords].asArray()),
            (Texts{"mon", "User/Library/tue.png", "See https://example.com/wed.png ", "thu.pdf "}));
  ASSERT_TRUE(report.textRecords);
  EXPECT_EQ(textsOf(*report.textRecords), (Texts{"mon", "[tue.png]", "See https://example.com/wed.png ", "thu.pdf"}));
}

TEST_F(SelectionTest, PicturesThatAreNotToBeHadAreNamedOnPagesToo) {
  show({file("User/Library/gone.png"), file("User/Library/there.png")});
  const SelectedReport report = selection.rows().report(
      device::ReportFormat::kPdf, [](const std::string& path) { return path.ends_with("there.png"); });
  EXPECT_EQ(textsOf(*report.request[request::kRecords].asArray()), (Texts{"[gone.png]", "User/Library/there.png"}));
  EXPECT_EQ(report.undrawn, 1U);
}

TEST_F(SelectionTest, TextsTallerThanAPageGoOnInFurtherRowsOfPages) {
  const std::string tall(4000, 'x');
  show({message(tall), message("short")});
  const SelectedReport report = selection.request();
  const Texts paged = textsOf(*report.request[request::kRecords].asArray());
  ASSERT_GT(paged.size(), 2U);
  EXPECT_TRUE(paged[1].starts_with("(continued)\n")) << paged[1];
  EXPECT_EQ(paged.back(), "short");
  EXPECT_EQ(textsOf(*report.textRecords), (Texts{tall, "short"}));
}

TEST_F(SelectionTest, AllOfAMillionRowsAreTheListItself) {
  showMany();
  EXPECT_EQ(selection.count(), 1'000'000);
  const auto list = selection.rows().rows;
  const SelectedReport report = selection.request();
  EXPECT_EQ(report.request[request::kRecords].asArray()->identity(), list->records.identity());
  ASSERT_TRUE(report.textRecords);
  EXPECT_EQ(report.textRecords->size(), list->records.size());
  EXPECT_EQ((*(*report.textRecords)[99].asRecord())["Text"].description(), "[a.jpg]");
  EXPECT_EQ((*report.textRecords)[98].asRecord()->identity(), list->records[98].asRecord()->identity());
}

TEST_F(SelectionTest, AMillionRowsAreTickedAsASetOfNumbers) {
  constexpr int kRows = 1'000'000;
  showMany();
  std::mt19937 random(11);
  std::set<int> expected;
  for (int i = 0; i < 50'000; ++i) {
    const int row = static_cast<int>(random() % kRows);
    const bool on = random() % 4 != 0;
    selection.tick(row, on);
    if (on) {
      expected.insert(row);
    } else {
      expected.erase(row);
    }
    ASSERT_EQ(selection.count(), static_cast<int>(expected.size()));
  }
  const Array records = selection.rows().records();
  ASSERT_EQ(records.size(), expected.size());
  EXPECT_EQ((*records[0].asRecord())["guid"].description(), "G" + std::to_string(*expected.begin()));

  selection.tickRange(0, kRows - 1);
  EXPECT_EQ(selection.count(), kRows);
  EXPECT_TRUE(selection.hasMultiMediaAttachments());
  for (int row = 0; row < kRows; row += 2) selection.tick(row, false);
  EXPECT_EQ(selection.count(), kRows / 2);
  EXPECT_EQ(selection.rows().records().size(), static_cast<std::size_t>(kRows / 2));
}

TEST_F(SelectionTest, TimesAndHitsOfAMillionRowsAreCountedRightly) {
  showMany();
  selection.setMode(Mode::Range);
  selection.setSince("2020-01-06 10:41");  // the sixtieth second
  selection.setUntil("2020-01-06 10:42");
  EXPECT_EQ(selection.count(), 61);
  EXPECT_TRUE(selection.hasAttachments());
  EXPECT_FALSE(selection.hasMultiMediaAttachments());
  const Array inTimes = selection.rows().records();
  EXPECT_EQ((*inTimes[0].asRecord())["guid"].description(), "G60");
  EXPECT_EQ(inTimes.size(), 61U);
  selection.setMode(Mode::Hits);
  selection.setHits(10, 899'999);
  EXPECT_EQ(selection.count(), 899'990);
  EXPECT_EQ(selection.rows().records().size(), 899'990U);
}

}  // namespace
}  // namespace chatsum::desktop
