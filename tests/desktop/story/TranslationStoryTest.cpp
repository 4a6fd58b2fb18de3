// The real window as somebody sees and hears it whose machine speaks German.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QLocale>
#include <cstdlib>
#include <memory>
#include <set>
#include <string>

#include "tests/desktop/story/Desk.h"

namespace chatsum::desktop {
namespace {

using ::testing::AllOf;
using ::testing::Contains;
using ::testing::HasSubstr;
using ::testing::IsSubsetOf;
using ::testing::IsSupersetOf;
using Texts = std::set<std::string>;

class TranslationStory : public ::testing::Test {
 protected:
  void start(const Arguments& arguments) {
    ::setenv("LC_ALL", "de_DE.UTF-8", 1);
    ::setenv("SOURCE_DATE_EPOCH", "1709971200", 1);  // 9 March 2024, 08:00
    // Qt asked for the locale of numbers when this program began.
    QLocale::setDefault(QLocale(QStringLiteral("de_DE")));
    QAccessible::setActive(true);
    desk_ = std::make_unique<Desk>(arguments);
    desk_->application().engine().sources().setRoots({});
    ASSERT_TRUE(desk_->start());
    ASSERT_TRUE(Desk::waitFor([this] { return !desk_->application().engine().sources().isSearching(); }));
  }
  void startWithSample() {
    Arguments arguments;
    arguments.usesSample = true;
    ASSERT_NO_FATAL_FAILURE(start(arguments));
    ASSERT_TRUE(Desk::waitFor([this] { return library().state() == Library::State::Open; }));
    (void)desk_->picture();
  }
  [[nodiscard]] Library& library() { return desk_->application().engine().source(); }

  /// All that can be read in the window.
  [[nodiscard]] Texts shown() {
    Texts texts;
    collectShown(desk_->window().contentItem(), texts);
    return texts;
  }
  /// All that a screen reader may say of what can be seen.
  [[nodiscard]] Texts spoken() {
    Texts texts;
    collectSpoken(QAccessible::queryAccessibleInterface(&desk_->window()), texts);
    return texts;
  }

  std::unique_ptr<Desk> desk_;

 private:
  static void collectShown(QQuickItem* item, Texts& texts) {
    if (!item->isVisible()) return;
    const std::string text = item->property("text").toString().toStdString();
    if (!text.empty() && item->inherits("QQuickText")) texts.insert(text);
    for (QQuickItem* child : item->childItems()) collectShown(child, texts);
  }
  static void collectSpoken(QAccessibleInterface* item, Texts& texts) {
    if (!item || item->state().invisible) return;
    for (const auto kind : {QAccessible::Name, QAccessible::Description}) {
      const std::string text = item->text(kind).toStdString();
      if (!text.empty()) texts.insert(text);
    }
    for (int i = 0; i < item->childCount(); ++i) collectSpoken(item->child(i), texts);
  }
};

TEST_F(TranslationStory, TheFirstPageHasNoEnglishWord) {
  start({});
  const Texts words = {
      "Chatsum",
      "Quellen",
      "An den üblichen Orten wurde kein Backup gefunden. Öffnen Sie eines oder legen Sie seinen Ordner hier ab.",
      "Ordner öffnen\u00A0…",
      "Datei öffnen\u00A0…",
      "Beispielgerät",
      "Ihre Konversationen ansehen und bewahren",
      "Öffnen Sie das Backup eines iPhone, den Benutzerordner eines Mac oder eine einzelne Datenbank. Was Sie öffnen, "
      "wird nie verändert, und nichts verlässt diesen Computer.",
      "Backup öffnen\u00A0…",
      "Beispielgerät ausprobieren"};
  EXPECT_EQ(shown(), words);
  Texts all = words;
  all.insert({"Erneut suchen", "Einstellungen", "Geräte und Backups"});
  EXPECT_THAT(spoken(), AllOf(IsSupersetOf(words), IsSubsetOf(all)));
  EXPECT_EQ(desk_->item("openSample")->property("text").toString().toStdString(), "Beispielgerät");
}

TEST_F(TranslationStory, NumbersAndDatesAreInTheSameLanguage) {
  startWithSample();
  EXPECT_THAT(shown(), IsSupersetOf({"Beispielgerät", "Nachrichten", "Telefon", "116 Nachrichten", "18.05.2024"}));
  EXPECT_THAT(spoken(), Contains(HasSubstr(" Nachrichten, ")));
  desk_->clickRow("conversationList", 0);
  EXPECT_TRUE(Desk::waitFor([this] { return shown().contains("Dienstag, 11. Juni 2024"); }));
  EXPECT_THAT(shown(), Contains(HasSubstr(" im Bericht")));
}

TEST_F(TranslationStory, CallsAreToldInWords) {
  startWithSample();
  desk_->key(Qt::Key_2, Qt::ControlModifier);
  ASSERT_TRUE(Desk::waitFor([this] { return desk_->item("callList") != nullptr; }));
  (void)desk_->picture();
  EXPECT_THAT(shown(), Contains(HasSubstr("Eingehender Anruf · verpasst")));
  EXPECT_THAT(shown(), Contains("Telefonanrufe"));
}

TEST_F(TranslationStory, SettingsHaveNoEnglishWord) {
  start({});
  desk_->click("openSettings");
  ASSERT_TRUE(Desk::waitFor([this] { return desk_->item("settingsDone") != nullptr; }));
  (void)desk_->picture();
  EXPECT_THAT(shown(), IsSupersetOf({"Einstellungen", "Fertig", "Farben", "Hell", "Berichte von Nachrichten",
                                     "Älteste zuerst", "Dasselbe für Anrufe."}));
}

}  // namespace
}  // namespace chatsum::desktop
