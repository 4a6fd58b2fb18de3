#include "platform/system/translations/MessageCatalogue.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <utility>

#include "tests/unit/translations/MoFile.h"

namespace chatsum::platform::system {
namespace {

using test::moFile;
using test::number32;

bool isRefused(std::string bytes) { return !MessageCatalogue::parse(std::move(bytes)).has_value(); }

/// The file with another number in its header or tables.
std::string changed(std::string bytes, std::size_t at, std::uint32_t value) {
  return bytes.replace(at, 4, number32(value, false));
}

TEST(MessageCatalogue, FindsTextsOfBothByteOrders) {
  for (const bool isBigEndian : {false, true}) {
    const auto catalogue = MessageCatalogue::parse(moFile({{"Close", "Schließen"}, {"Error", "Fehler"}}, isBigEndian));
    ASSERT_TRUE(catalogue.has_value());
    EXPECT_EQ(catalogue->find("Close"), "Schließen");
    EXPECT_EQ(catalogue->find("Error"), "Fehler");
    EXPECT_EQ(catalogue->find("error"), std::nullopt);
    EXPECT_EQ(catalogue->find(""), std::nullopt);
  }
}

TEST(MessageCatalogue, KeepsItsTextsWhenItMoves) {
  auto first = MessageCatalogue::parse(moFile({{"a", "b"}}));
  ASSERT_TRUE(first.has_value());
  const MessageCatalogue second = std::move(*first);
  EXPECT_EQ(second.find("a"), "b");
}

TEST(MessageCatalogue, NeverAnswersTheHeaderOrAnEmptyTranslation) {
  const auto catalogue = MessageCatalogue::parse(
      moFile({{"", "Content-Type: text/plain; charset=UTF-8\n"}, {"Empty", ""}, {"Close", "Fermer"}}));
  ASSERT_TRUE(catalogue.has_value());
  EXPECT_EQ(catalogue->find(""), std::nullopt);
  EXPECT_EQ(catalogue->find("Empty"), std::nullopt);
  EXPECT_EQ(catalogue->find("Close"), "Fermer");
}

TEST(MessageCatalogue, TakesTheSingularOfPluralForms) {
  const auto catalogue =
      MessageCatalogue::parse(moFile({{std::string("file\0files", 10), std::string("Datei\0Dateien", 13)}}));
  ASSERT_TRUE(catalogue.has_value());
  EXPECT_EQ(catalogue->find("file"), "Datei");
  EXPECT_EQ(catalogue->find("files"), std::nullopt);
}

TEST(MessageCatalogue, TakesThePluralFormThatItsHeaderNames) {
  const std::string calls("call\0calls", 10), forms("appel\0appels", 13);
  const auto french =
      MessageCatalogue::parse(moFile({{"", "Plural-Forms: nplurals=2; plural=(n > 1);\n"}, {calls, forms}}));
  ASSERT_TRUE(french.has_value());
  EXPECT_EQ(french->find("call", 0), "appel");
  EXPECT_EQ(french->find("call", 1), "appel");
  EXPECT_EQ(french->find("call", 2), "appels");
  EXPECT_EQ(french->find("calls", 2), std::nullopt);
  const auto plain = MessageCatalogue::parse(moFile({{calls, forms}}));
  ASSERT_TRUE(plain.has_value());
  EXPECT_EQ(plain->find("call", 0), "appels");
}

TEST(MessageCatalogue, MakesDoWithThePluralFormsThereAre) {
  const auto catalogue = MessageCatalogue::parse(moFile({{"", "Plural-Forms: nplurals=2; plural=n*1000000000;\n"},
                                                         {"call", "Anruf"},
                                                         {"file", std::string("Datei\0", 6)}}));
  ASSERT_TRUE(catalogue.has_value());
  EXPECT_EQ(catalogue->find("call", 0), "Anruf");
  EXPECT_EQ(catalogue->find("call", 4'000'000'000), "Anruf");
  EXPECT_EQ(catalogue->find("file", 1), "Datei");
}

TEST(MessageCatalogue, LeavesOutWhatIsNoUtf8) {
  const auto catalogue = MessageCatalogue::parse(moFile({{"Close",
                                                          "Schlie\xDF"
                                                          "en"},
                                                         {"Error", "Fehler"}}));
  ASSERT_TRUE(catalogue.has_value());
  EXPECT_EQ(catalogue->find("Close"), std::nullopt);
  EXPECT_EQ(catalogue->find("Error"), "Fehler");
}

TEST(MessageCatalogue, MayBeEmpty) {
  const auto catalogue = MessageCatalogue::parse(moFile({}));
  ASSERT_TRUE(catalogue.has_value());
  EXPECT_EQ(catalogue->find("Close"), std::nullopt);
}

TEST(MessageCatalogue, RefusesWhatIsNone) {
  EXPECT_TRUE(isRefused(""));
  EXPECT_TRUE(isRefused("msgid \"Close\""));
  EXPECT_TRUE(isRefused(std::string(4096, '\0')));
  EXPECT_TRUE(isRefused(moFile({{"a", "b"}}, false, 2U << 16U)));
  EXPECT_FALSE(isRefused(moFile({{"a", "b"}}, false, 1U << 16U)));
  EXPECT_TRUE(isRefused(moFile({{"a", "b"}, {"a", "c"}})));
  EXPECT_TRUE(isRefused(moFile({{"a", std::string(MessageCatalogue::kMostBytes, 'x')}})));
}

TEST(MessageCatalogue, RefusesPlacesOutsideTheFile) {
  const std::string good = moFile({{"Close", "Schließen"}});
  ASSERT_FALSE(isRefused(good));
  constexpr std::size_t kCount = 8, kOriginals = 12, kTranslations = 16, kFirstLength = 28, kFirstPlace = 32;
  for (const std::size_t at : {kCount, kOriginals, kTranslations, kFirstLength, kFirstPlace}) {
    EXPECT_TRUE(isRefused(changed(good, at, 0xFFFFFFFF))) << at;
    EXPECT_TRUE(isRefused(changed(good, at, 0x80000000))) << at;
    EXPECT_TRUE(isRefused(changed(good, at, static_cast<std::uint32_t>(good.size())))) << at;
  }
  for (std::size_t length = 0; length < good.size(); ++length) EXPECT_TRUE(isRefused(good.substr(0, length)));
}

// Thousands of entries that all point to one long text would take thousands of times its length.
TEST(MessageCatalogue, RefusesTextsThatOverlap) {
  std::string bytes = moFile(std::vector<std::pair<std::string, std::string>>(5000, {"key", std::string(50, 'x')}));
  const auto length = static_cast<std::uint32_t>(bytes.size() - 28 - 16 * 5000 - 1);
  for (std::uint32_t i = 0; i < 5000; ++i) {
    bytes = changed(std::move(bytes), 28 + 8 * i, length - i);
    bytes = changed(std::move(bytes), 28 + 8 * i + 4, 28 + 16 * 5000 + i);
  }
  EXPECT_TRUE(isRefused(bytes));
}

TEST(MessageCatalogue, DamagedAtAnyPlaceDoesNoHarm) {
  const std::string good = moFile({{"Close", "Schließen"}, {"Error", "Fehler"}, {"Me", "Ich"}});
  std::mt19937 random(1);
  for (int i = 0; i < 50'000; ++i) {
    std::string bad = good;
    for (unsigned n = random() % 4 + 1; n > 0; --n) bad[random() % bad.size()] = static_cast<char>(random());
    if (const auto catalogue = MessageCatalogue::parse(bad)) static_cast<void>(catalogue->find("Error"));
  }
}

}  // namespace
}  // namespace chatsum::platform::system
