// The report's page as a person uses it: keyboard, mouse, swipe, menu, screen reader.

#include "tests/desktop/report/PageWindow.h"
#include "tests/desktop/report/ReportStory.h"
#include "tests/support/PinnedFonts.h"

namespace chatsum::desktop::test {
namespace {

class ReportPage : public ReportStory {
 protected:
  void SetUp() override {
    ReportStory::SetUp();
    std::filesystem::create_directories(reports());
    for (const char* name : {"One.txt", "Two.csv", "Three.pdf"}) {
      std::ofstream(reports() + "/" + name) << "bytes\n";
    }
    ASSERT_TRUE(report.open(select("Maya Lindqvist")));
    waitUntil([&] { return fileNames().size() == 3; }, "the list");
    page = std::make_unique<PageWindow>(report);
    list = page->find("reportList");
    ASSERT_TRUE(list);
    waitUntil([&] { return page->row(5) != nullptr && list->hasActiveFocus(); }, "the rows");
  }
  void TearDown() override {
    page.reset();
    ReportStory::TearDown();
  }

  [[nodiscard]] int current() const { return list->property("currentIndex").toInt(); }
  void goTo(int row) {
    while (current() < row) page->press(Qt::Key_Down);
    while (current() > row) page->press(Qt::Key_Up);
  }
  /// Waits until one of the three files is gone, and answers which are left.
  QStringList waitForTwo() {
    waitUntil([&] { return fileNames().size() == 2; }, "the deletion");
    return fileNames();
  }
  [[nodiscard]] static QAccessibleInterface* spoken(QQuickItem* item) {
    return QAccessible::queryAccessibleInterface(item);
  }

  std::unique_ptr<PageWindow> page;
  QQuickItem* list = nullptr;
};

TEST_F(ReportPage, IsUsedByKeyboardAlone) {
  page->picture("report");
  EXPECT_TRUE(list->hasActiveFocus());
  goTo(2);
  page->press(Qt::Key_Return);
  ASSERT_TRUE(page->await("choice1"));
  page->picture("chooser");
  page->press(Qt::Key_Down);
  page->press(Qt::Key_Down);
  page->press(Qt::Key_Return);  // the third answer
  waitUntil([&] { return !report.alert(); });
  EXPECT_EQ(report.table()->index(2, 0).data(ReportTableModel::kDetailRole).toString(), "Text");

  waitUntil([&] { return list->hasActiveFocus(); }, "the list's focus");
  page->press(Qt::Key_Space);
  ASSERT_TRUE(page->await("choice1"));
  page->press(Qt::Key_Escape);
  waitUntil([&] { return !report.alert(); });
  EXPECT_TRUE(report.isOpen());

  waitUntil([&] { return list->hasActiveFocus(); }, "the list's focus");
  goTo(3);
  const QString name = fileNames()[0];
  page->press(Qt::Key_Return);
  waitUntil([&] { return report.preview().isOpen(); });
  EXPECT_EQ(report.preview().name(), name);
  ASSERT_TRUE(page->await("closePreview"));
  page->press(Qt::Key_Escape);
  waitUntil([&] { return !report.preview().isOpen() && list->hasActiveFocus(); }, "the list's focus");

  page->press(Qt::Key_Delete);
  ASSERT_TRUE(page->await("choice1"));
  page->picture("delete");
  page->press(Qt::Key_Return);  // the keyboard stands on what loses nothing
  waitUntil([&] { return !report.alert() && list->hasActiveFocus(); }, "the list's focus");
  EXPECT_TRUE(std::filesystem::exists(reports() + "/" + name.toStdString()));
  page->press(Qt::Key_Delete);
  ASSERT_TRUE(page->await("choice1"));
  page->press(Qt::Key_Up);
  page->press(Qt::Key_Return);
  EXPECT_FALSE(waitForTwo().contains(name));
  EXPECT_FALSE(std::filesystem::exists(reports() + "/" + name.toStdString()));
  waitUntil([&] { return list->hasActiveFocus(); }, "the list's focus");
  EXPECT_EQ(current(), 3);
}

TEST_F(ReportPage, TakesANameAndMakesTheReport) {
  chooseFormat("Text");
  waitUntil([&] { return !report.alert() && list->hasActiveFocus(); }, "the list's focus");
  goTo(0);
  page->press(Qt::Key_Return);
  QQuickItem* const field = page->find("reportName");
  ASSERT_TRUE(field && field->hasActiveFocus());
  page->press(Qt::Key_Backspace);  // all of it is chosen
  EXPECT_EQ(report.name(), "");
  EXPECT_FALSE(page->find("generate")->isEnabled());
  page->type("Trip");
  EXPECT_EQ(report.name(), "Trip");
  page->picture("name");
  page->press(Qt::Key_Return);
  EXPECT_TRUE(list->hasActiveFocus());
  QQuickItem* const button = page->find("generate");
  ASSERT_TRUE(button && button->isEnabled());
  QSignalSpy finished(&report, &ReportScreen::finished);
  page->click(*button);
  waitUntil([&] { return finished.size() == 1; });
  waitUntil([&] { return rowOf("Trip.txt") == 3; });
  EXPECT_EQ(field->property("text").toString(), "Trip - 1");
  page->picture("finished");
}

TEST_F(ReportPage, ShowsThatItIsBusy) {
  chooseFormat("PDF");
  QSignalSpy finished(&report, &ReportScreen::finished);
  report.generate();
  ASSERT_TRUE(page->find("busyOverlay"));
  waitUntil([&] { return !report.busyTitle().isEmpty(); }, "the indicator");
  EXPECT_TRUE(page->findText("Generating"));
  page->picture("busy");
  EXPECT_FALSE(page->find("generate")->isEnabled());
  waitUntil([&] { return finished.size() == 1 && !report.busy(); });
  waitUntil([&] { return !page->find("busyOverlay"); });
}

TEST_F(ReportPage, TellsOfAFailureUntilItIsRead) {
  report.setName("a/b");
  page->click(*page->find("generate"));
  QQuickItem* const note = page->await("failure");
  ASSERT_TRUE(note);
  EXPECT_TRUE(page->findText(report.failure()));
  page->picture("failure");
  report.forgetFailure();
  EXPECT_FALSE(page->find("failure"));
}

TEST_F(ReportPage, TellsWhatAReportDoesNotShowUntilItIsRead) {
  EXPECT_FALSE(page->find("notes"));
  const chatsum::test::PinnedFonts few({"/usr/share/fonts/truetype/liberation2"});
  chooseFormat("PDF");
  ASSERT_NE(generate(), "") << report.failure().toStdString();
  ASSERT_FALSE(report.notes().isEmpty());
  QQuickItem* const close = page->await("closeNotes");
  ASSERT_TRUE(close);
  for (const QString& note : report.notes()) EXPECT_TRUE(page->findText(note)) << note.toStdString();
  page->picture("notes");
  page->click(*close);
  EXPECT_TRUE(report.notes().isEmpty());
  EXPECT_FALSE(page->find("notes"));
}

TEST_F(ReportPage, DeletesBySwipe) {
  const QString name = fileNames()[1];
  QQuickItem* const row = page->row(4);
  const QPoint from = page->middleOf(*row);
  QWindow* const window = &page->window();
  QTest::mousePress(window, Qt::LeftButton, {}, from);
  for (int step = 1; step <= 10; ++step) QTest::mouseMove(window, from - QPoint(30 * step, 0));
  QTest::mouseRelease(window, Qt::LeftButton, {}, from - QPoint(300, 0));
  QTest::qWait(50);
  page->picture("swiped");
  EXPECT_TRUE(fileNames().contains(name));  // the swipe alone deletes nothing
  const QPoint behind = row->mapToScene(QPointF(row->width() - 40, row->height() / 2)).toPoint();
  QTest::mouseClick(window, Qt::LeftButton, {}, behind);
  EXPECT_FALSE(waitForTwo().contains(name));
  EXPECT_FALSE(report.preview().isOpen());
}

TEST_F(ReportPage, DeletesByTheButtonThatComesWithTheMouse) {
  const QString name = fileNames()[2];
  QQuickItem* const row = page->row(5);
  QTest::mouseMove(&page->window(), page->middleOf(*row));
  QQuickItem* button = nullptr;
  std::function<void(QQuickItem*)> look = [&](QQuickItem* item) {
    if (item->objectName() == "deleteReport") button = item;
    for (QQuickItem* child : item->childItems()) look(child);
  };
  look(row);
  ASSERT_TRUE(button);
  waitUntil([&] { return button->opacity() == 1; }, "the button");
  page->click(*button);
  ASSERT_TRUE(page->await("choice0"));
  EXPECT_TRUE(std::filesystem::exists(reports() + "/" + name.toStdString()));
  page->click(*page->find("choice0"));
  EXPECT_FALSE(waitForTwo().contains(name));
}

TEST_F(ReportPage, DeletesAndShowsByTheMenu) {
  const QString first = fileNames()[0], second = fileNames()[1];
  page->click(*page->row(3), Qt::RightButton);
  waitUntil([&] { return page->findText("Preview") != nullptr; }, "the menu");
  EXPECT_FALSE(report.preview().isOpen());
  page->picture("menu");
  page->click(*page->findText("Preview"));
  waitUntil([&] { return report.preview().isOpen(); });
  EXPECT_EQ(report.preview().name(), first);
  report.preview().close();
  waitUntil([&] { return !report.busy() && list->hasActiveFocus(); });
  goTo(4);
  page->press(Qt::Key_Menu);
  waitUntil([&] { return page->findText("Preview") != nullptr; }, "the menu");
  page->press(Qt::Key_Down);
  page->press(Qt::Key_Down);
  page->press(Qt::Key_Return);
  ASSERT_TRUE(page->await("choice0"));
  EXPECT_TRUE(std::filesystem::exists(reports() + "/" + second.toStdString()));
  page->click(*page->find("choice0"));
  EXPECT_FALSE(waitForTwo().contains(second));
}

TEST_F(ReportPage, LeavesAReportThatIsNotWantedGone) {
  report.setName("One");
  chooseFormat("Text");
  report.setName("One");
  report.generate();
  ASSERT_TRUE(page->await("choice1"));
  page->picture("replace");
  // The keyboard stands on what loses nothing.
  page->press(Qt::Key_Return);
  waitUntil([&] { return !report.alert(); });
  EXPECT_EQ(PreviewFiles::read(QString::fromStdString(reports() + "/One.txt")), "bytes\n");
}

TEST_F(ReportPage, SpeaksItsRowsAndQuestions) {
  QAccessible::setActive(true);
  EXPECT_EQ(spoken(list)->role(), QAccessible::List);
  std::vector<QString> names;
  std::function<void(QAccessibleInterface*)> collect = [&](QAccessibleInterface* item) {
    for (int i = 0; item && i < item->childCount(); ++i) {
      QAccessibleInterface* const child = item->child(i);
      if (child && child->role() == QAccessible::ListItem) names.push_back(child->text(QAccessible::Name));
      collect(child);
    }
  };
  collect(spoken(list));
  const auto has = [&](const QString& start) {
    return std::any_of(names.begin(), names.end(), [&](const QString& name) { return name.startsWith(start); });
  };
  EXPECT_TRUE(has("Sort By: Date, "));
  EXPECT_TRUE(has("One.txt, "));
  report.activate(2);
  ASSERT_TRUE(page->await("choice0"));
  EXPECT_EQ(spoken(page->find("choice0"))->text(QAccessible::Name), "CSV");
  EXPECT_EQ(spoken(page->find("choice0"))->role(), QAccessible::Button);
  // A screen reader presses.
  QAccessibleInterface* const pdf = spoken(page->find("choice1"));
  pdf->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
  waitUntil([&] { return !report.alert(); });
  EXPECT_EQ(report.table()->index(2, 0).data(ReportTableModel::kDetailRole).toString().toStdString(), "PDF");
}

}  // namespace
}  // namespace chatsum::desktop::test
