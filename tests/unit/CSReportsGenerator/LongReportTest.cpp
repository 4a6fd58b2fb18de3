// Reports that are long enough to be written by two threads: the same lines in the same order.

#include <new>

#include "libchatsum/CSReportsGenerator/ReportLines.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "tests/support/NoMoreThreads.h"
#include "tests/unit/CSReportsGenerator/ReportEngineTest.h"

namespace chatsum::test {
namespace {

constexpr int kRecords = 50'001;  // an odd number: the halves differ

class LongReport : public ReportEngineTest {
 protected:
  void SetUp() override { makeFolder(); }

  /// Records of several shapes, a minute apart.
  static Array records() {
    Array array;
    for (int i = 0; i < kRecords; ++i) {
      Record record{{"Text", "line " + std::to_string(i)}, {"Date", Date{1578307200.0 + 60.0 * i}}};
      if (i % 3 != 0) record.set("Name", i % 2 == 0 ? "Ann" : "Bo, the \"first\"");
      array.append(std::move(record));
    }
    return array;
  }

  /// The report that short ones of one record each make together.
  template <class Write>
  std::string oneByOne(const std::string& path, const Array& records, Write write) {
    std::string together;
    for (const std::size_t place : {std::size_t{0}, records.size() / 2 - 1, records.size() / 2, records.size() - 1}) {
      (void)fake.realFiles.remove(path);
      write(Array{records[place]});
      together += fake.read(path);
    }
    return together;
  }

  static std::vector<std::string> lines(const std::string& text) {
    std::vector<std::string> result;
    for (std::size_t start = 0; start < text.size();) {
      const std::size_t end = text.find('\n', start);
      result.push_back(text.substr(start, end - start));
      start = end + 1;
    }
    return result;
  }
};

TEST_F(LongReport, HoldsEveryTextLineOnceAndInOrder) {
  const std::string path = inFolder("long.txt");
  const Value format = Record{{"%@: %@ (%@)", "Name,Text,Date"}};
  const Array all = records();
  ASSERT_EQ(engine.generateTextReport(path, format, Value(), all), std::nullopt);
  const auto written = lines(fake.read(path));
  ASSERT_EQ(written.size(), static_cast<std::size_t>(kRecords));
  for (std::size_t i = 0; i < written.size(); ++i) {
    ASSERT_NE(written[i].find(": line " + std::to_string(i) + " ("), std::string::npos) << written[i];
  }
  EXPECT_EQ(ChatsumUtils::dateFormatter().dateFormat(), "EEE, MM-dd-YYYY hh:mm aa");

  const auto alone = lines(oneByOne(path, all, [&](const Array& one) {
    ASSERT_EQ(engine.generateTextReport(path, format, Value(), one), std::nullopt);
  }));
  EXPECT_THAT(alone, ::testing::ElementsAre(written.front(), written[all.size() / 2 - 1], written[all.size() / 2],
                                            written.back()));
}

TEST_F(LongReport, HoldsEveryCSVRowOnceAndInOrder) {
  const std::string path = inFolder("long.csv");
  const Value format = Record{{"%@,%@,%@", "Name,Text,Date"}};
  ASSERT_EQ(engine.generateCSVReport(path, format, Array{"Name", "Text", "Date"}, records()), std::nullopt);
  const auto written = lines(fake.read(path));
  ASSERT_EQ(written.size(), static_cast<std::size_t>(kRecords) + 1);
  for (std::size_t i = 1; i < written.size(); ++i) {
    ASSERT_NE(written[i].find(",line " + std::to_string(i - 1) + ",\""), std::string::npos) << written[i];
  }
  EXPECT_EQ(written[2], R"("Bo, the ""first""",line 1,"Mon, 01-06-2020 10:41 AM")");
}

/// Cells that run out of memory at one text.
struct FailingCells {
  void appendText(std::string_view text, TextBuffer&) {
    if (text == "line 15000") throw std::bad_alloc();
  }
  void appendDate(Date, TextBuffer&) {}
  void appendOther(const Value&, TextBuffer&) {}
};

TEST_F(LongReport, EndsWithTheMissingMemoryOfItsSecondThread) {
  ReportLines lines(Record{{"%@", "Text"}}, 0);
  TextBuffer text;
  EXPECT_THROW(lines.append<FailingCells>(records(), text), std::bad_alloc);
}

TEST_F(LongReport, IsTheSameWhereNoSecondThreadCanBeStarted) {
  const Value format = Record{{"%@: %@ (%@)", "Name,Text,Date"}};
  const Array all = records();
  ASSERT_EQ(engine.generateTextReport(inFolder("two.txt"), format, Value(), all), std::nullopt);
  const test::NoMoreThreads none;
  ASSERT_EQ(engine.generateTextReport(inFolder("one.txt"), format, Value(), all), std::nullopt);
  EXPECT_TRUE(fake.read(inFolder("one.txt")) == fake.read(inFolder("two.txt")));
}

}  // namespace
}  // namespace chatsum::test
