#include "hosts/desktop/report/RowSource.h"

#include <gtest/gtest.h>

#include <filesystem>

#include "tests/desktop/report/PreviewFiles.h"

namespace chatsum::desktop {
namespace {

class RowSourceTest : public ::testing::Test {
 protected:
  std::unique_ptr<RowSource> open(std::string_view bytes, RowKind kind = RowKind::kLines) const {
    auto source = std::make_unique<RowSource>(files.put("rows", bytes), kind);
    EXPECT_EQ(source->start(), "");
    test::waitUntil([&] { return source->isComplete(); }, "the end of the file");
    return source;
  }
  static std::vector<std::string> rowsOf(RowSource& source) {
    std::vector<std::string> rows;
    for (int i = 0; i < source.rows(); ++i) rows.push_back(source.row(i).toStdString());
    return rows;
  }
  [[nodiscard]] std::vector<std::string> rows(std::string_view bytes, RowKind kind = RowKind::kLines) const {
    return rowsOf(*open(bytes, kind));
  }

  test::PreviewFiles files;
};

using Rows = std::vector<std::string>;

TEST_F(RowSourceTest, FindsLines) {
  EXPECT_EQ(rows(""), Rows{});
  EXPECT_EQ(rows("\n"), Rows{""});
  EXPECT_EQ(rows("one\ntwo"), (Rows{"one", "two"}));
  EXPECT_EQ(rows("one\r\n\r\ntwo\r\n"), (Rows{"one", "", "two"}));
  EXPECT_EQ(rows("\xEF\xBB\xBFone\ntwo\n"), (Rows{"one", "two"}));
  EXPECT_EQ(rows("say \"one\ntwo\" \n"), (Rows{"say \"one", "two\" "}));
}

TEST_F(RowSourceTest, FindsRecordsWithLineEndsInTheirCells) {
  EXPECT_EQ(rows("a,b\n\"1\n2\",3\n4,5", RowKind::kCsv), (Rows{"a,b", "\"1\n2\",3", "4,5"}));
  EXPECT_EQ(rows("\"say \"\"hi\n\"\"\",b\nc\n", RowKind::kCsv), (Rows{"\"say \"\"hi\n\"\"\",b", "c"}));
  EXPECT_EQ(rows("5\" pipe,b\nc,d\n", RowKind::kCsv), (Rows{"5\" pipe,b", "c,d"}));
  EXPECT_EQ(rows("a\r\n\"b\r\nc\"\r\n", RowKind::kCsv), (Rows{"a", "\"b\r\nc\""}));
}

TEST_F(RowSourceTest, KnowsTheMostCellsOfARow) {
  EXPECT_EQ(open("a,b\nc\n\"d,e\",f,g\n", RowKind::kCsv)->cells(), 3);
  EXPECT_EQ(open("a,b,c,d", RowKind::kCsv)->cells(), 4);
  EXPECT_EQ(open("a,b,c,d", RowKind::kLines)->cells(), 1);
}

TEST_F(RowSourceTest, AnswersRowsInAnyOrder) {
  std::string bytes;
  for (int i = 0; i < 5000; ++i) bytes += "line " + std::to_string(i) + "\n";
  const auto source = open(bytes);
  ASSERT_EQ(source->rows(), 5000);
  for (int i = 0; i < 5000; ++i) {
    const int row = (i * 1237) % 5000;
    ASSERT_EQ(source->row(row).toStdString(), "line " + std::to_string(row));
  }
  EXPECT_EQ(source->row(-1), QByteArray());
  EXPECT_EQ(source->row(5000), QByteArray());
}

TEST_F(RowSourceTest, CutsRowsThatDoNotEnd) {
  const std::string characters(100'000, 'x');
  const Rows lines = rows(characters);
  EXPECT_GT(lines.size(), 1U);
  std::string together;
  for (const std::string& line : lines) {
    EXPECT_LE(line.size(), RowSplitter::kLongestLine + 3);
    together += line;
  }
  EXPECT_EQ(together, characters);
  // An open quote swallows all that follows, but no more than a window can hold.
  const Rows records = rows("\"" + std::string(3'000'000, ','), RowKind::kCsv);
  EXPECT_EQ(records.size(), 3U);
}

TEST_F(RowSourceTest, CutsLongLinesBetweenCharacters) {
  std::string characters;
  while (characters.size() < 50'000) characters += "日本";
  for (const std::string& line : rows(characters)) {
    EXPECT_FALSE(QString::fromStdString(line).contains(QChar::ReplacementCharacter));
  }
  const std::string noText(50'000, '\x80');  // no character at all
  std::size_t bytes = 0;
  for (const std::string& line : rows(noText)) bytes += line.size();
  EXPECT_EQ(bytes, noText.size());
}

TEST_F(RowSourceTest, ShowsTheFirstRowsOfALargeFileBeforeTheLast) {
  std::string bytes;
  for (int i = 0; bytes.size() < 30'000'000; ++i) bytes += "row " + std::to_string(i) + ",some words of a message\n";
  RowSource source(files.put("rows", bytes), RowKind::kCsv);
  std::vector<int> news;
  QObject::connect(&source, &RowSource::grew, [&] { news.push_back(source.rows()); });
  ASSERT_EQ(source.start(), "");
  test::waitUntil([&] { return source.isComplete(); }, "the end of the file");
  EXPECT_GT(news.size(), 2U);
  EXPECT_LT(news.front(), source.rows() / 10);
  EXPECT_TRUE(std::is_sorted(news.begin(), news.end()));
  EXPECT_EQ(source.row(source.rows() - 1), "row " + QByteArray::number(source.rows() - 1) + ",some words of a message");
}

TEST_F(RowSourceTest, StopsWhenNobodyWantsTheRowsAnyMore) {
  const QString path = files.put("rows", std::string(60'000'000, '\n'));
  RowSource source(path, RowKind::kLines);
  ASSERT_EQ(source.start(), "");
  // Ends at once: a test that hangs here has a thread that does not stop.
}

TEST_F(RowSourceTest, HasNoRowsWhereAFileBecameShorter) {
  std::string bytes;
  for (int i = 0; i < 10'000; ++i) bytes += "a line of some length\n";
  const auto source = open(bytes);
  std::filesystem::resize_file(files.path("rows").toStdString(), 30);
  EXPECT_EQ(source->row(9'999), QByteArray());
  EXPECT_EQ(source->row(0), "a line of some length");
}

TEST_F(RowSourceTest, SaysWhyAFileCannotBeRead) {
  RowSource source(files.path("missing"), RowKind::kLines);
  const QString problem = source.start();
  EXPECT_TRUE(problem.contains("missing") && problem.contains("No such file")) << problem.toStdString();
}

}  // namespace
}  // namespace chatsum::desktop
