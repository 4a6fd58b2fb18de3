// The models behind a preview of lines and of a table.

#include <gtest/gtest.h>

#include <QAbstractItemModelTester>

#include "hosts/desktop/report/CsvTableModel.h"
#include "hosts/desktop/report/TextLinesModel.h"
#include "tests/desktop/report/PreviewFiles.h"

namespace chatsum::desktop {
namespace {

constexpr auto kFatal = QAbstractItemModelTester::FailureReportingMode::Fatal;

TEST(TextLines, AreThoseOfTheFile) {
  const test::PreviewFiles files;
  TextLinesModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.txt", "Anna: Grüße 🎉 (Mon)\nMe: hi\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.index(0).data(TextLinesModel::kLineRole).toString(), "Anna: Grüße 🎉 (Mon)");
  EXPECT_EQ(model.index(1).data().toString(), "Me: hi");
  EXPECT_FALSE(model.index(0).data(Qt::DecorationRole).isValid());
  model.close();
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_FALSE(model.isComplete());
}

TEST(TextLines, OfAnotherFileTakeTheirPlace) {
  const test::PreviewFiles files;
  TextLinesModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.txt", "one\ntwo\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.open(files.put("b.txt", "three\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.rowCount(), 1);
  EXPECT_EQ(model.index(0).data().toString(), "three");
  EXPECT_NE(model.open(files.path("missing.txt")), "");
  EXPECT_EQ(model.rowCount(), 0);
}

TEST(TextLines, AreManyInALargeFile) {
  const test::PreviewFiles files;
  std::string bytes;
  constexpr int kLines = 400'000;
  for (int i = 0; i < kLines; ++i) bytes += "Anna: line " + std::to_string(i) + " of a long report (Mon, 01-06-2020)\n";
  TextLinesModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.txt", bytes)), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.rowCount(), kLines);
  EXPECT_EQ(model.index(kLines - 1).data().toString(), "Anna: line 399999 of a long report (Mon, 01-06-2020)");
}

TEST(CsvTable, HasTitlesAndCells) {
  const test::PreviewFiles files;
  CsvTableModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.csv", "Name,Text,Date\nAnna,\"a, \"\"b\"\"\nc\",Mon\nMe,hi\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.rowCount(), 2);
  ASSERT_EQ(model.columnCount(), 3);
  EXPECT_EQ(model.headerData(1, Qt::Horizontal, Qt::DisplayRole).toString(), "Text");
  EXPECT_EQ(model.headerData(1, Qt::Vertical, Qt::DisplayRole).toInt(), 2);
  EXPECT_EQ(model.index(0, 1).data().toString(), "a, \"b\"\nc");
  EXPECT_EQ(model.index(1, 1).data().toString(), "hi");
  EXPECT_EQ(model.index(1, 2).data().toString(), "");  // the row has only two cells
}

TEST(CsvTable, HasAsManyColumnsAsTheWidestRow) {
  const test::PreviewFiles files;
  CsvTableModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.csv", "Name\nAnna,hi,Mon\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.columnCount(), 3);
  EXPECT_EQ(model.headerData(2, Qt::Horizontal, Qt::DisplayRole).toString(), "");
  ASSERT_EQ(model.open(files.put("b.csv", std::string(100'000, ','))), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.columnCount(), CsvTableModel::kMostColumns);
}

TEST(CsvTable, IsEmptyForAnEmptyFileAndForTitlesAlone) {
  const test::PreviewFiles files;
  CsvTableModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.csv", "")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_EQ(model.columnCount(), 0);
  ASSERT_EQ(model.open(files.put("b.csv", "Name,Text\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.rowCount(), 0);
  EXPECT_EQ(model.columnCount(), 2);
}

TEST(CsvTable, KnowsHowWideItsColumnsAre) {
  const test::PreviewFiles files;
  CsvTableModel model;
  ASSERT_EQ(model.open(files.put("a.csv", "N,Text\nAnna,a sentence of some length\nB," + std::string(500, 'x'))), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_LT(model.charactersOf(0), model.charactersOf(1));
  EXPECT_LE(model.charactersOf(1), 60);
  EXPECT_GT(model.charactersOf(7), 0);  // not there
}

TEST(CsvTable, MeasuresRowsThatComeLaterAndForgetsThoseOfAnotherFile) {
  const test::PreviewFiles files;
  CsvTableModel model;
  const int narrowest = model.charactersOf(0);
  ASSERT_EQ(model.open(files.put("a.csv", "N,T\nA\nB,a sentence of some length\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.charactersOf(1), 25);
  EXPECT_EQ(model.charactersOf(-1), narrowest);
  ASSERT_EQ(model.open(files.put("b.csv", "N,T\nA,b\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_EQ(model.charactersOf(1), narrowest);
}

TEST(CsvTable, ShowsNoMoreOfACellThanAnybodyReads) {
  const test::PreviewFiles files;
  CsvTableModel model;
  ASSERT_EQ(model.open(files.put("a.csv", "N,T\nA,\"" + std::string(900'000, 'x') + "\"\n")), "");
  test::waitUntil([&] { return model.isComplete(); });
  EXPECT_LT(model.index(0, 1).data().toString().size(), 5000);
  EXPECT_LE(model.charactersOf(1), 60);
}

TEST(CsvTable, GrowsWhileALargeFileIsRead) {
  const test::PreviewFiles files;
  std::string bytes = "Name,Text,Date\n";
  int rows = 0;
  while (bytes.size() < 20'000'000) bytes += "Anna,\"line\n" + std::to_string(rows++) + "\",Mon\n";
  CsvTableModel model;
  const QAbstractItemModelTester tester(&model, kFatal);
  ASSERT_EQ(model.open(files.put("a.csv", bytes)), "");
  test::waitUntil([&] { return model.isComplete(); });
  ASSERT_EQ(model.rowCount(), rows);
  EXPECT_EQ(model.index(rows - 1, 1).data().toString(), "line\n" + QString::number(rows - 1));
}

}  // namespace
}  // namespace chatsum::desktop
