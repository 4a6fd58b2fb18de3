// From the selection to the finished reports and back to none, as a person does it.

#include "tests/desktop/report/ReportStory.h"

#include <QAbstractItemModelTester>
#include <algorithm>

#include "tests/support/OrdinaryUser.h"
#include "tests/support/PinnedFonts.h"
#include "tests/support/Tool.h"

namespace chatsum::desktop::test {
namespace {

TEST_F(ReportStory, MakesLooksAtExportsAndDeletesReports) {
  const QAbstractItemModelTester tester(report.table(), QAbstractItemModelTester::FailureReportingMode::Fatal);
  SelectedReport selected = select("Maya Lindqvist");
  const auto count = selected.request[request::kRecords].asArray()->size();
  ASSERT_GT(count, 20U);
  ASSERT_TRUE(report.open(selected));
  waitUntil([&] { return report.table()->rowCount() == 3; });
  EXPECT_EQ(report.title(), "Generate Report");
  EXPECT_EQ(report.name(), "Maya Lindqvist");
  EXPECT_EQ(report.table()->index(2, 0).data(ReportTableModel::kSectionFooterRole).toString(),
            QString("You have selected %1 records.").arg(count));

  report.setName("Strawberries");
  report.endName();
  report.activate(1);
  answer("Descending");

  chooseFormat("Text");
  EXPECT_EQ(generate().toStdString(), reports() + "/Strawberries.txt") << report.failure().toStdString();
  waitForFiles({"Strawberries.txt"});
  EXPECT_EQ(report.name(), "Strawberries - 1");

  report.setName("Strawberries");
  chooseFormat("CSV");
  EXPECT_EQ(generate().toStdString(), reports() + "/Strawberries.csv") << report.failure().toStdString();
  waitUntil([&] { return fileNames().size() == 2; });

  report.setName("Strawberries");
  chooseFormat("PDF");
  EXPECT_EQ(generate().toStdString(), reports() + "/Strawberries.pdf") << report.failure().toStdString();
  waitUntil([&] { return fileNames().size() == 3; });
  EXPECT_EQ(report.failure(), "");

  const int text = rowOf("Strawberries.txt");
  const QString made = report.table()->index(text, 0).data(ReportTableModel::kDetailRole).toString();
  EXPECT_FALSE(made.isEmpty());

  Preview& preview = report.preview();
  report.activate(text);
  EXPECT_EQ(preview.kind(), "text");
  waitUntil([&] { return qobject_cast<TextLinesModel*>(preview.textModel())->isComplete(); });
  EXPECT_GE(preview.textModel()->rowCount(), static_cast<int>(count));
  EXPECT_FALSE(preview.textModel()->index(0, 0).data().toString().isEmpty());
  const QString copy = QString::fromStdString(folder.path() + "/copy.txt");
  const QSignalSpy exported(&preview, &Preview::exported);
  preview.exportTo(QUrl::fromLocalFile(copy));
  waitUntil([&] { return exported.size() == 1; });
  EXPECT_EQ(PreviewFiles::read(copy), PreviewFiles::read(preview.path()));
  preview.close();
  waitUntil([&] { return !report.busy(); });

  report.activate(rowOf("Strawberries.csv"));
  EXPECT_EQ(preview.kind(), "csv");
  waitUntil([&] { return qobject_cast<CsvTableModel*>(preview.tableModel())->isComplete(); });
  EXPECT_EQ(preview.tableModel()->rowCount(), static_cast<int>(count));
  EXPECT_EQ(preview.tableModel()->columnCount(), 3);
  EXPECT_EQ(preview.tableModel()->headerData(1, Qt::Horizontal).toString(), "Text");
  preview.close();
  waitUntil([&] { return !report.busy(); });

  report.activate(rowOf("Strawberries.pdf"));
  EXPECT_EQ(preview.kind(), "pdf");
  EXPECT_EQ(preview.problem(), "");
  EXPECT_TRUE(PreviewFiles::read(preview.path()).starts_with("%PDF-"));
  preview.close();
  waitUntil([&] { return !report.busy(); });

  for (const char* name : {"Strawberries.csv", "Strawberries.pdf", "Strawberries.txt"}) {
    report.remove(rowOf(name));
    waitUntil([&] { return rowOf(name) < 0; }, name);
    EXPECT_FALSE(std::filesystem::exists(reports() + "/" + name));
  }
  EXPECT_EQ(report.table()->rowCount(), 3);
}

TEST_F(ReportStory, AsksBeforeItReplacesAndWarnsOfAttachments) {
  SelectedReport selected = select("Maya Lindqvist");
  selected.hasAttachments = true;
  ASSERT_TRUE(report.open(selected));
  chooseFormat("CSV");
  report.generate();
  answer("Continue");
  waitForFiles({"Maya Lindqvist.csv"});
  waitUntil([&] { return !report.busy(); });
  const auto size = std::filesystem::file_size(reports() + "/Maya Lindqvist.csv");
  report.setName("Maya Lindqvist");
  report.generate();
  answer("Continue");
  answer("Cancel");
  EXPECT_FALSE(report.busy());
  QSignalSpy finished(&report, &ReportScreen::finished);
  report.generate();
  answer("Continue");
  answer("Replace");
  waitUntil([&] { return finished.size() == 1; });
  EXPECT_EQ(std::filesystem::file_size(reports() + "/Maya Lindqvist.csv"), size);
}

TEST_F(ReportStory, TellsThatTheReportsFolderIsAFile) {
  std::filesystem::create_directories(home() + "/Library/Preferences");
  std::ofstream(reports()) << "not a folder";
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  for (const char* format : {"Text", "CSV", "PDF"}) {
    chooseFormat(format);
    EXPECT_EQ(generate(), "") << format;
    EXPECT_TRUE(report.failure().contains(QString::fromStdString(reports()))) << report.failure().toStdString();
  }
  EXPECT_EQ(PreviewFiles::read(QString::fromStdString(reports())), "not a folder");
}

TEST_F(ReportStory, TellsThatTheReportsFolderMayNotBeWritten) {
  std::filesystem::create_directories(reports());
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  const chatsum::test::OrdinaryUser user;
  for (const char* format : {"Text", "CSV", "PDF"}) {
    chooseFormat(format);
    EXPECT_EQ(generate(), "") << format;
    EXPECT_TRUE(report.failure().contains("denied")) << report.failure().toStdString();
  }
}

TEST_F(ReportStory, SaysThatAPageNeedsAFont) {
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  chooseFormat("PDF");
  {
    const chatsum::test::PinnedFonts none({folder.path() + "/none"});
    EXPECT_EQ(generate(), "");
    EXPECT_TRUE(report.failure().startsWith("A PDF report needs a font")) << report.failure().toStdString();
    EXPECT_FALSE(std::filesystem::exists(reports() + "/Maya Lindqvist.pdf"));
    // What fails before a font is asked for is told instead.
    std::filesystem::remove_all(reports());
    std::filesystem::permissions(home() + "/Library/Preferences", std::filesystem::perms(0555));
    {
      const chatsum::test::OrdinaryUser user;
      EXPECT_EQ(generate(), "");
    }
    EXPECT_TRUE(report.failure().contains("denied")) << report.failure().toStdString();
    std::filesystem::permissions(home() + "/Library/Preferences", std::filesystem::perms(0755));
    chooseFormat("Text");
    EXPECT_NE(generate(), "") << report.failure().toStdString();
  }
  chooseFormat("PDF");
  EXPECT_NE(generate(), "") << report.failure().toStdString();
}

TEST_F(ReportStory, SaysWhatAPageDoesNotShow) {
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder.path() + "/device")) {
    if (entry.path().filename() == "IMG_0001.jpeg") std::filesystem::remove(entry.path());
    if (entry.path().filename() != "IMG_0233.jpeg") continue;
    std::filesystem::resize_file(entry.path(), std::filesystem::file_size(entry.path()) * 7 / 10);
  }
  SelectedReport selected = select("Maya Lindqvist");
  selected.undrawn = 2;
  ASSERT_TRUE(report.open(selected));
  const auto says = [&](const char* words) {
    return std::any_of(report.notes().begin(), report.notes().end(),
                       [&](const QString& note) { return note.contains(QString::fromUtf8(words)); });
  };
  const chatsum::test::PinnedFonts few({"/usr/share/fonts/truetype/liberation2"});
  chooseFormat("Text");
  ASSERT_NE(generate(), "");
  EXPECT_TRUE(report.notes().isEmpty()) << report.notes().join(" ").toStdString();
  chooseFormat("PDF");
  ASSERT_NE(generate(), "") << report.failure().toStdString();
  EXPECT_EQ(report.notes().size(), 4) << report.notes().join(" ").toStdString();
  EXPECT_TRUE(says("2 pictures are missing or damaged: their names")) << report.notes().join(" ").toStdString();
  EXPECT_TRUE(says(" missing or damaged: an empty place")) << report.notes().join(" ").toStdString();
  EXPECT_TRUE(says(" incomplete: ")) << report.notes().join(" ").toStdString();
  EXPECT_TRUE(says(" shown as boxes ")) << report.notes().join(" ").toStdString();
  const QStringList notes = report.notes();
  ASSERT_NE(generate(), "");
  EXPECT_EQ(report.notes(), notes);  // of the second one alone
  chooseFormat("CSV");
  ASSERT_NE(generate(), "");
  EXPECT_TRUE(report.notes().isEmpty());
}

TEST_F(ReportStory, NamesAPageInItsFile) {
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  report.setName("Dr. Lindqvist");
  chooseFormat("PDF");
  const QString path = generate();
  ASSERT_NE(path, "") << report.failure().toStdString();
  const auto info = chatsum::test::runTool({"pdfinfo", path.toStdString()});
  EXPECT_NE(info.out.find("Dr. Lindqvist\n"), std::string::npos) << info.out << info.err;
}

TEST_F(ReportStory, OpensAgainWithAnotherSelection) {
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  chooseFormat("Text");
  ASSERT_NE(generate(), "");
  report.close();
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  waitForFiles({"Maya Lindqvist.txt"});
  EXPECT_EQ(report.name().toStdString(), "Maya Lindqvist - 1");  // one that is free
}

}  // namespace
}  // namespace chatsum::desktop::test
