// The whole way of a person through the program: from the sample device to reports of each format, and away with them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QStyleHints>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>
#include <vector>

#include "tests/desktop/story/Desk.h"
#include "tests/support/PagePictures.h"

namespace chatsum::desktop {
namespace {

namespace fs = std::filesystem;
using ::testing::HasSubstr;
using ::testing::StartsWith;

std::string bytesOf(const fs::path& path) {
  std::ifstream stream(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), {}};
}

class Story : public ::testing::Test {
 protected:
  static void SetUpTestSuite() {
    QGuiApplication::styleHints()->setCursorFlashTime(0);
    // 9 March 2024, 08:00: reports tell when they were made.
    ::setenv("SOURCE_DATE_EPOCH", "1709971200", 1);
  }

  static Arguments sample(bool isDark = false) {
    Arguments arguments;
    arguments.usesSample = true;
    arguments.isDark = isDark;
    return arguments;
  }

  [[nodiscard]] Library& library() { return desk_->application().engine().source(); }
  [[nodiscard]] MessageModel& messages() { return desk_->application().engine().messages(); }
  [[nodiscard]] ConversationFilter& conversations() { return desk_->application().engine().conversations(); }
  [[nodiscard]] Selection& selection() { return desk_->application().engine().selection(); }
  [[nodiscard]] ReportScreen& report() { return desk_->application().report(); }

  void open(bool isDark = false) {
    desk_ = std::make_unique<Desk>(sample(isDark));
    ASSERT_TRUE(desk_->start());
    ASSERT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Open; }))
        << library().error().toStdString();
  }
  /// Clicks the conversation whose name holds the text.
  void choose(const QString& name) {
    ASSERT_TRUE(Desk::waitFor([this] { return conversations().count() > 3; }));
    for (int row = 0; row < conversations().count(); ++row) {
      const auto index = conversations().index(row, 0);
      if (!conversations().data(index, ConversationModel::NameRole).toString().contains(name)) continue;
      desk_->clickRow("conversationList", row);
      ASSERT_TRUE(Desk::waitFor([this] { return messages().state() == MessageModel::State::Ready; }));
      // The window goes to the newest message.
      ASSERT_TRUE(Desk::waitFor([this] {
        const QQuickItem* list = desk_->item("messageList");
        return list && list->property("currentIndex").toInt() == messages().rowCount() - 1;
      }));
      return;
    }
    FAIL() << "there is no conversation with " << name.toStdString();
  }
  /// Brings the message with these words into the middle.
  void show(const QString& words) {
    for (int row = 0; row < messages().rowCount(); ++row) {
      if (!messages().data(messages().index(row), MessageModel::TextRole).toString().contains(words)) continue;
      // Twice: what comes meanwhile may move the rows.
      for (int pass = 0; pass < 2; ++pass) {
        QMetaObject::invokeMethod(desk_->item("messageList"), "show", Q_ARG(QVariant, row));
        (void)desk_->picture();
        ASSERT_TRUE(Desk::waitFor([this] { return desk_->hasItsPictures("messageList"); }));
      }
      return;
    }
    FAIL() << "nobody says " << words.toStdString();
  }
  void openReport() {
    desk_->click("openReport");
    ASSERT_TRUE(Desk::waitFor([this] { return report().isOpen() && !report().busy(); }));
  }
  [[nodiscard]] int rowOfKind(const QString& kind, int skip = 0) {
    const auto* table = report().table();
    for (int row = 0; row < table->rowCount(); ++row) {
      if (table->data(table->index(row, 0), ReportTableModel::kKindRole).toString() == kind && skip-- == 0) return row;
    }
    return -1;
  }
  /// What the report screen says of a criterion: 0 the order, 1 the format.
  [[nodiscard]] std::string criterion(int which) {
    const auto* table = report().table();
    return table->data(table->index(rowOfKind("choice", which), 0), ReportTableModel::kDetailRole)
        .toString()
        .toStdString();
  }
  static constexpr int kFormatRow = 3, kOrderRow = 4;  // of the settings
  void set(int row, const char* word) {
    QSignalSpy written(&desk_->application().settings(), &SettingsModel::written);
    desk_->application().settings().set(row, QString::fromUtf8(word));
    ASSERT_TRUE(written.wait(Desk::kPatience));
  }
  [[nodiscard]] int files() {
    int count = 0;
    while (rowOfKind("file", count) >= 0) ++count;
    return count;
  }
  /// Chooses in the sheet that comes next.
  void answer(const QString& title) {
    ASSERT_TRUE(Desk::waitFor([this] { return report().alert() != nullptr; }));
    const auto buttons = report().alert()->property("buttons").toList();
    for (int i = 0; i < buttons.size(); ++i) {
      if (buttons[i].toMap().value("title").toString() != title) continue;
      desk_->click(QStringLiteral("choice%1").arg(i));
      ASSERT_TRUE(Desk::waitFor([this] { return report().alert() == nullptr; }));
      return;
    }
    FAIL() << "nothing offers " << title.toStdString();
  }
  void chooseFormat(const QString& format) {
    const int row = rowOfKind("choice", 1);
    ASSERT_GE(row, 0);
    desk_->clickRow("reportList", row);
    answer(format);
  }
  /// Begins to write a report of a conversation with pictures, and is back while it is being written.
  void beginReport() {
    choose("Maya");
    openReport();
    chooseFormat("PDF");
    desk_->click("generate");
    if (report().alert()) answer("Continue");
    ASSERT_TRUE(report().busy());
  }
  /// Generates, and answers whatever is asked in the way that goes on; the path of the report.
  std::string generate() {
    QSignalSpy finished(&report(), &ReportScreen::finished);
    QSignalSpy failed(&report(), &ReportScreen::failed);
    desk_->click("generate");
    const bool isDone = Desk::waitFor([&] {
      if (QObject* alert = report().alert()) {
        const auto buttons = alert->property("buttons").toList();
        const int cancel = alert->property("cancelIndex").toInt();
        report().choose(buttons.size() > 1 && cancel == 0 ? 1 : 0);
      }
      return finished.count() + failed.count() > 0;
    });
    EXPECT_TRUE(isDone);
    EXPECT_EQ(failed.count(), 0) << report().failure().toStdString();
    EXPECT_TRUE(Desk::waitFor([this] { return !report().busy(); }));
    return finished.isEmpty() ? std::string() : finished.first().first().toString().toStdString();
  }
  /// Compares the window with a committed picture.
  void expectPicture(const std::string& name, const std::vector<test::PixelRect>& without = {}) {
    const fs::path file = fs::path(desk_->home()) / (name + ".png");
    ASSERT_TRUE(desk_->picture().save(QString::fromStdString(file.string())));
    EXPECT_TRUE(test::looksLikeGolden(file, "desktop/" + name + ".png", without));
  }

  std::unique_ptr<Desk> desk_;
};

TEST_F(Story, AReportOfEachFormatIsMadeShownAndDeleted) {
  open();
  choose("Daniel");
  EXPECT_EQ(messages().rowCount(), selection().count());
  openReport();
  EXPECT_EQ(files(), 0);

  const std::pair<const char*, const char*> formats[] = {{"Text", ".txt"}, {"CSV", ".csv"}, {"PDF", ".pdf"}};
  int made = 0;
  for (const auto& [format, extension] : formats) {
    chooseFormat(QString::fromUtf8(format));
    const fs::path path = generate();
    EXPECT_EQ(path.extension(), extension);
    EXPECT_THAT(path.string(), StartsWith(desk_->home()));
    ASSERT_TRUE(fs::is_regular_file(path)) << path;
    ++made;
    EXPECT_TRUE(Desk::waitFor([&] { return files() == made; }));
    const std::string bytes = bytesOf(path);
    if (std::string(extension) == ".txt") {
      EXPECT_THAT(bytes, HasSubstr("Your front wheel is ready."));
    }
    if (std::string(extension) == ".pdf") {
      EXPECT_THAT(bytes, StartsWith("%PDF-"));
    }
  }

  // A click shows the report, Escape goes back, the Delete key deletes it.
  for (; made > 0; --made) {
    const int row = rowOfKind("file");
    desk_->clickRow("reportList", row);
    ASSERT_TRUE(Desk::waitFor([this] { return report().preview().isOpen() && !report().busy(); }));
    EXPECT_TRUE(report().preview().problem().isEmpty()) << report().preview().problem().toStdString();
    const std::string path = report().preview().path().toStdString();
    ASSERT_TRUE(fs::exists(path));
    desk_->key(Qt::Key_Escape);
    ASSERT_TRUE(Desk::waitFor([this] { return !report().preview().isOpen(); })) << desk_->focus();
    QQuickItem* list = desk_->item("reportList");
    ASSERT_NE(list, nullptr);
    ASSERT_TRUE(Desk::waitFor([list] { return list->hasActiveFocus(); })) << desk_->focus();
    EXPECT_EQ(list->property("currentIndex").toInt(), row);
    desk_->key(Qt::Key_Delete);
    answer("Delete");
    EXPECT_TRUE(Desk::waitFor([&] { return files() == made - 1; }));
    EXPECT_FALSE(fs::exists(path));
  }
  desk_->key(Qt::Key_Escape);
  EXPECT_TRUE(Desk::waitFor([this] { return !report().isOpen(); }));
  // The keyboard is back where it was.
  EXPECT_TRUE(Desk::waitFor([this] {
    const QQuickItem* button = desk_->item("openReport");
    return button && button->hasActiveFocus();
  })) << desk_->focus();
}

TEST_F(Story, TheKeyboardComesBackFromTheSettings) {
  open();
  choose("Daniel");
  desk_->item("messageList")->forceActiveFocus();
  desk_->key(Qt::Key_Comma, Qt::ControlModifier);
  ASSERT_TRUE(Desk::waitFor([this] { return desk_->item("settingsDone") != nullptr; }));
  desk_->key(Qt::Key_Escape);
  EXPECT_TRUE(Desk::waitFor([this] { return desk_->item("messageList")->hasActiveFocus(); })) << desk_->focus();
}

TEST_F(Story, NothingComesBetweenAReportAndItsEnd) {
  open();
  QSignalSpy finished(&report(), &ReportScreen::finished);
  beginReport();
  desk_->key(Qt::Key_Escape);
  desk_->key(Qt::Key_2, Qt::ControlModifier);
  EXPECT_FALSE(desk_->item("conversationList")->isEnabled());
  desk_->key(Qt::Key_Comma, Qt::ControlModifier);
  EXPECT_FALSE(desk_->item("settingsDone"));
  EXPECT_TRUE(report().isOpen());
  ASSERT_TRUE(Desk::waitFor([&] { return finished.count() == 1 && !report().busy(); }))
      << report().failure().toStdString();
  EXPECT_THAT(bytesOf(finished[0][0].toString().toStdString()), StartsWith("%PDF-"));
  EXPECT_TRUE(desk_->item("conversationList")->isEnabled());
}

TEST_F(Story, TheWindowThatIsClosedWaitsForAReportToBeWritten) {
  open();
  QSignalSpy finished(&report(), &ReportScreen::finished);
  beginReport();
  desk_->window().close();
  EXPECT_TRUE(desk_->window().isVisible());
  EXPECT_TRUE(Desk::waitFor([this] { return !desk_->window().isVisible(); }));
  EXPECT_EQ(finished.count(), 1);
}

TEST_F(Story, ADeviceMayBeLeftAsSoonAsAReportIsBegun) {
  open();
  beginReport();
  library().close();  // nothing of the window does that; the library's own work has to bear it
  EXPECT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Closed; }));
  EXPECT_FALSE(report().isOpen());
}

TEST_F(Story, AnotherConversationLeavesTheReportButtonAlive) {
  open();
  choose("Daniel");
  desk_->application().openReport();
  ASSERT_TRUE(desk_->application().isPreparing());
  conversations().select(conversations().data(conversations().index(0, 0), ConversationModel::GuidRole).toString());
  ASSERT_TRUE(Desk::waitFor([this] { return messages().state() == MessageModel::State::Ready; }));
  EXPECT_FALSE(desk_->application().isPreparing());
  EXPECT_FALSE(report().isOpen());
  openReport();
}

TEST_F(Story, AReportBeginsAsTheLibraryAndTheSettingsSay) {
  open();
  choose("Daniel");
  openReport();
  EXPECT_EQ(criterion(1), "CSV");  // as the command line without settings
  report().close();
  set(kFormatRow, "text");
  openReport();
  EXPECT_EQ(criterion(1), "Text");
}

TEST_F(Story, SettingsThatChangeWhileNoDeviceIsOpenHold) {
  open();
  choose("Daniel");
  openReport();
  EXPECT_EQ(criterion(0), "Date, Asc");
  report().close();
  library().close();
  set(kFormatRow, "pdf");
  set(kOrderRow, "desc");
  library().openSample();
  ASSERT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Open; }));
  choose("Daniel");
  openReport();
  EXPECT_EQ(criterion(0), "Date, Desc");
  EXPECT_EQ(criterion(1), "PDF");
}

TEST_F(Story, AnOpenReportFollowsTheSettings) {
  open();
  choose("Daniel");
  openReport();
  set(kFormatRow, "text");
  EXPECT_TRUE(Desk::waitFor([this] { return criterion(1) == "Text"; })) << criterion(1);
  set(kOrderRow, "desc");
  EXPECT_TRUE(Desk::waitFor([this] { return criterion(0) == "Date, Desc"; })) << criterion(0);
}

TEST_F(Story, AQuestionIsAnsweredBeforeTheReportFollowsTheSettings) {
  open();
  choose("Daniel");
  openReport();
  report().activate(rowOfKind("choice"));
  ASSERT_TRUE(report().alert());
  set(kFormatRow, "text");
  (void)desk_->picture();
  EXPECT_EQ(criterion(1), "CSV");
  answer("Cancel");
  EXPECT_TRUE(Desk::waitFor([this] { return criterion(1) == "Text"; })) << criterion(1);
}

TEST_F(Story, ASourceThatIsOpenedElsewhereTakesTheSourcesAway) {
  open();
  desk_->click("otherSources");
  ASSERT_TRUE(Desk::waitFor([this] { return desk_->item("sourceList") != nullptr; }));
  library().openSample();  // as a dialog or a drop does
  ASSERT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Open; }));
  EXPECT_TRUE(Desk::waitFor([this] { return desk_->item("conversationList") != nullptr; }));
  EXPECT_FALSE(desk_->item("sourceList"));
}

TEST_F(Story, TheTextIsThatOfTheCommandLine) {
  ::setenv("TZ", "America/New_York", 1);
  ::tzset();
  open();
  choose("Daniel");
  openReport();
  chooseFormat("Text");
  const std::string made = bytesOf(generate());
  EXPECT_EQ(made, bytesOf(fs::path(CHATSUM_TEST_GOLDEN) / "cli/daniel.txt"));
}

TEST_F(Story, TickedMessagesAreTheReport) {
  open();
  choose("Daniel");
  selection().setMode(Selection::Mode::Ticked);
  desk_->item("messageList")->forceActiveFocus();
  desk_->key(Qt::Key_Home);
  desk_->key(Qt::Key_Space);
  desk_->key(Qt::Key_Down, Qt::ShiftModifier);
  desk_->key(Qt::Key_Down, Qt::ShiftModifier);
  EXPECT_EQ(selection().count(), 3);
  openReport();
  chooseFormat("Text");
  const std::string text = bytesOf(generate());
  EXPECT_THAT(text, StartsWith("Daniel Okafor: Hi, Daniel from the bike workshop here."));
  EXPECT_THAT(text, ::testing::Not(HasSubstr("Sorry, 10 minutes late")));
}

TEST_F(Story, ASearchGoesFromHitToHitAndIntoTheReport) {
  open();
  choose("Daniel");
  desk_->key(Qt::Key_F, Qt::ControlModifier);
  desk_->type("the");
  desk_->key(Qt::Key_Return);
  ASSERT_TRUE(Desk::waitFor([this] { return messages().hits() > 1; }));
  // The newest message is shown; from there it goes upwards.
  const int newest = messages().currentHitRow();
  EXPECT_EQ(newest, static_cast<int>(messages().hitRows().back()));
  desk_->key(Qt::Key_Up);
  const int before = messages().currentHitRow();
  EXPECT_LT(before, newest);
  desk_->key(Qt::Key_Return);
  EXPECT_EQ(messages().currentHitRow(), newest);
  selection().setMode(Selection::Mode::Hits);
  EXPECT_GE(selection().count(), messages().hits());
  desk_->key(Qt::Key_Escape);
  EXPECT_EQ(messages().hits(), 0);
}

TEST_F(Story, ConversationsAreFoundByNameAndNumber) {
  open();
  const int all = conversations().count();
  desk_->click("conversationFind");
  desk_->type("siob");
  EXPECT_TRUE(Desk::waitFor([&] { return conversations().count() < all; }));
  EXPECT_EQ(conversations().count(), 1);
  desk_->key(Qt::Key_Escape);
  EXPECT_EQ(conversations().count(), all);
}

TEST_F(Story, CallsHaveTabsAndReports) {
  open();
  ASSERT_TRUE(library().hasPhone());
  desk_->key(Qt::Key_2, Qt::ControlModifier);
  ASSERT_TRUE(Desk::waitFor([this] { return desk_->item("callList") != nullptr; }));
  EXPECT_GT(selection().count(), 0);
  openReport();
  chooseFormat("CSV");
  EXPECT_FALSE(bytesOf(generate()).empty());
}

TEST_F(Story, AnotherConversationClosesTheReport) {
  open();
  choose("Daniel");
  openReport();
  choose("Maya");
  EXPECT_FALSE(report().isOpen());
}

TEST_F(Story, WhatCannotBeOpenedIsToldAndTheSampleCanStillBeTried) {
  Arguments arguments;
  arguments.source = QStringLiteral("/nowhere/at/all");
  arguments.isDark = false;
  desk_ = std::make_unique<Desk>(arguments);
  ASSERT_TRUE(desk_->start());
  ASSERT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Failed; }));
  EXPECT_FALSE(library().error().isEmpty());
  desk_->click("openSample");
  EXPECT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Open; }));
}

TEST_F(Story, SettingsDecideHowAReportBegins) {
  open();
  desk_->application().settings().set(3, QStringLiteral("pdf"));
  QSignalSpy written(&desk_->application().settings(), &SettingsModel::written);
  ASSERT_TRUE(written.wait(Desk::kPatience));
  choose("Daniel");
  openReport();
  const auto* table = report().table();
  const int row = rowOfKind("choice", 1);
  EXPECT_EQ(table->data(table->index(row, 0), ReportTableModel::kDetailRole).toString(), "PDF");
}

// What the window looks like. The times of the reports' files are those of the test, so their rows are not compared.

TEST_F(Story, TheWindowLooksAsItShould) {
  open();
  choose("Maya");
  show("Four boxes");
  // Where the list of messages rests varies by a pixel.
  expectPicture("window", {{.left = 322, .top = 122, .right = 1180, .bottom = 708}});
}

TEST_F(Story, TheDarkWindowLooksAsItShould) {
  open(true);
  choose("Maya");
  show("Four boxes");
  // Where the list of messages rests varies by a pixel.
  expectPicture("window-dark", {{.left = 322, .top = 122, .right = 1180, .bottom = 708}});
}

TEST_F(Story, TheReportLooksAsItShould) {
  open();
  choose("Maya");
  openReport();
  for (const char* format : {"CSV", "Text", "PDF"}) {
    chooseFormat(format);
    ASSERT_FALSE(generate().empty());
  }
  ASSERT_TRUE(Desk::waitFor([this] { return files() == 3; }));
  // From the first report down to the end of the page.
  const QQuickItem* first = desk_->rowOf("reportList", rowOfKind("file"));
  ASSERT_NE(first, nullptr);
  const QPoint place = first->mapToScene(QPointF(0, 0)).toPoint();
  expectPicture("report", {{place.x(), place.y(), desk_->window().width(), desk_->window().height()}});
}

TEST_F(Story, ThePreviewLooksAsItShould) {
  open();
  choose("Maya");
  openReport();
  chooseFormat("PDF");
  ASSERT_FALSE(generate().empty());
  ASSERT_TRUE(Desk::waitFor([this] { return files() == 1; }));
  desk_->clickRow("reportList", rowOfKind("file"));
  ASSERT_TRUE(Desk::waitFor([this] { return report().preview().isOpen(); }));
  expectPicture("preview");
}

TEST_F(Story, TheFirstPageLooksAsItShould) {
  Arguments arguments;
  arguments.isDark = false;
  desk_ = std::make_unique<Desk>(arguments);
  desk_->application().engine().sources().setRoots({});
  ASSERT_TRUE(desk_->start());
  ASSERT_TRUE(Desk::waitFor([this] { return !desk_->application().engine().sources().isSearching(); }));
  expectPicture("start");
}

}  // namespace
}  // namespace chatsum::desktop
