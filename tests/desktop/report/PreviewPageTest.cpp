// What is shown of a report of each format, made by the real library.

#include "tests/desktop/report/PageWindow.h"
#include "tests/desktop/report/ReportStory.h"

namespace chatsum::desktop::test {
namespace {

class PreviewPage : public ReportStory {
 protected:
  /// Makes a report of the format and shows it in a window.
  void show(const char* format) {
    ASSERT_TRUE(report.open(select("Maya Lindqvist")));
    chooseFormat(format);
    const QString path = generate();
    ASSERT_NE(path, "") << report.failure().toStdString();
    waitUntil([&] { return fileNames().size() == 1; }, "the list");
    page = std::make_unique<PageWindow>(report);
    report.activate(3);
    waitUntil([&] { return !report.busy(); });
    EXPECT_TRUE(page->await("previewContent"));
  }
  void TearDown() override {
    page.reset();
    ReportStory::TearDown();
  }
  [[nodiscard]] static int count(QQuickItem* view) { return view->property("count").toInt(); }
  [[nodiscard]] static double height(QQuickItem* view) { return view->property("contentHeight").toDouble(); }
  [[nodiscard]] static double scrolled(QQuickItem* view) { return view->property("contentY").toDouble(); }

  std::unique_ptr<PageWindow> page;
};

TEST_F(PreviewPage, ShowsThePagesOfAPdf) {
  show("PDF");
  QQuickItem* const pages = page->await("pdfPages");
  ASSERT_TRUE(pages);
  waitUntil([&] { return count(pages) > 1 && height(pages) > pages->height(); }, "the pages");
  waitUntil([&] { return pages->hasActiveFocus(); }, "the focus");
  page->picture("pdf");
  const double top = scrolled(pages);
  page->press(Qt::Key_PageDown);
  EXPECT_GT(scrolled(pages), top);
  page->press(Qt::Key_End);
  EXPECT_EQ(pages->property("page").toInt(), count(pages) - 1);
  page->press(Qt::Key_Home);
  EXPECT_EQ(pages->property("page").toInt(), 0);
  const double width = pages->property("pageWidth").toDouble();
  page->press(Qt::Key_Plus, Qt::ControlModifier);
  EXPECT_GT(pages->property("pageWidth").toDouble(), width);
  page->press(Qt::Key_0, Qt::ControlModifier);
  EXPECT_EQ(pages->property("pageWidth").toDouble(), width);
}

TEST_F(PreviewPage, SaysThatAPdfIsBroken) {
  show("Text");
  page.reset();
  report.preview().close();
  const std::string broken = reports() + "/broken.pdf";
  std::ofstream(broken) << "no pages at all";
  page = std::make_unique<PageWindow>(report);
  report.preview().open(QString::fromStdString(broken));
  ASSERT_TRUE(page->await("previewPdf"));
  waitUntil([&] { return page->find("previewPdf")->property("isBroken").toBool(); }, "the sentence");
  EXPECT_FALSE(page->find("pdfPages"));
}

TEST_F(PreviewPage, ShowsTheLinesOfAText) {
  show("Text");
  QQuickItem* const lines = page->await("previewText");
  ASSERT_TRUE(lines);
  waitUntil([&] { return count(lines) > 20; }, "the lines");
  waitUntil([&] { return lines->hasActiveFocus(); }, "the focus");
  page->picture("text");
  page->press(Qt::Key_End);
  EXPECT_GT(scrolled(lines), 0);
  page->press(Qt::Key_Home);
  EXPECT_LE(scrolled(lines), 0);
}

TEST_F(PreviewPage, ShowsTheTableOfACsv) {
  show("CSV");
  QQuickItem* const table = page->await("csvTable");
  ASSERT_TRUE(table);
  waitUntil([&] { return table->property("rows").toInt() > 20; }, "the rows");
  EXPECT_EQ(table->property("columns").toInt(), 3);
  EXPECT_TRUE(page->findText("Text"));
  waitUntil([&] { return table->hasActiveFocus(); }, "the focus");
  page->press(Qt::Key_Down);
  page->press(Qt::Key_Right);
  const QString cell = report.preview().tableModel()->index(1, 1).data().toString();
  ASSERT_FALSE(cell.isEmpty());
  waitUntil([&] { return page->find("wholeCell") && page->find("wholeCell")->property("text") == cell; }, "the cell");
  page->picture("csv");
}

TEST_F(PreviewPage, TellsWhereACopyWent) {
  show("Text");
  const QString copy = QString::fromStdString(folder.path() + "/copy.txt");
  report.preview().exportTo(QUrl::fromLocalFile(copy));
  waitUntil([&] { return page->find("exportNote") != nullptr; }, "the sentence");
  EXPECT_TRUE(page->findText(QString("A copy is now at “%1”.").arg(copy)));
  page->picture("exported");
  report.preview().exportTo(QUrl::fromLocalFile(copy + "/no/folder"));
  waitUntil([&] { return page->find("exportNote")->property("isProblem").toBool(); }, "the failure");
}

TEST_F(PreviewPage, AsksWhereACopyShallGo) {
  show("Text");
  page->click(*page->find("exportReport"));
  // The dialog is Qt's own; here it only has to come and know the name.
  waitUntil([&] { return page->findText("Export a copy") != nullptr || page->window().findChild<QObject*>("copyDialog"); },
            "the dialog");
}

TEST_F(PreviewPage, SaysWhyAFileCannotBeShown) {
  ASSERT_TRUE(report.open(select("Maya Lindqvist")));
  page = std::make_unique<PageWindow>(report);
  report.preview().open(QString::fromStdString(reports() + "/gone.csv"));
  waitUntil([&] { return page->findText(report.preview().problem()) != nullptr; }, "the sentence");
  EXPECT_FALSE(page->find("csvTable"));
}

}  // namespace
}  // namespace chatsum::desktop::test
