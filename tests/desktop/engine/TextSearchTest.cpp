#include "hosts/desktop/engine/TextSearch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "hosts/device/conversations/FoldedText.h"
#include "tests/desktop/engine/RowsFixture.h"

namespace chatsum::desktop {
namespace {

using testing::arrayOf;
using testing::file;
using testing::message;
using Rows = std::vector<std::uint32_t>;

Rows found(const std::vector<Record>& records, std::string_view words) {
  return findRows(arrayOf(records), words, Cancellation());
}

TEST(TextSearchTest, FindsPartsOfTextsInAnyCase) {
  const std::vector<Record> records = {message("See you at Eight"), message("seen"), message("no"), message("sEE")};
  EXPECT_EQ(found(records, "see"), (Rows{0, 1, 3}));
  EXPECT_EQ(found(records, "SEE YOU"), (Rows{0}));
  EXPECT_EQ(found(records, "eight"), (Rows{0}));
  EXPECT_EQ(found(records, "eighty"), Rows{});
}

TEST(TextSearchTest, ComparesAsPeopleReadAndNotByBytes) {
  const std::vector<Record> records = {message("in der Straße"), message("CAFE\u0301"), message("\u212Aelvin"),
                                       message("ΌΔΟΣ")};
  EXPECT_EQ(found(records, "STRASSE"), (Rows{0}));
  EXPECT_EQ(found(records, "café"), (Rows{1}));
  EXPECT_EQ(found(records, "kelvin"), (Rows{2}));
  EXPECT_EQ(found(records, "όδος"), (Rows{3}));
  EXPECT_EQ(found(records, "cafe"), Rows{});  // accents count
}

TEST(TextSearchTest, TakesEveryKindOfIForThePlainOne) {
  const std::vector<Record> records = {message("İstanbul’da"), message("ISTANBUL"), message("I\u0307stanbul"),
                                       message("ıstanbul"), message("stanbul")};
  for (const char* words : {"istanbul", "ISTANBUL", "İSTANBUL", "i\u0307stanbul", "ıstanbul"}) {
    EXPECT_EQ(found(records, words), (Rows{0, 1, 2, 3})) << words;
  }
  EXPECT_EQ(found({message("e\u0307"), message("e")}, "e"), (Rows{1}));  // other letters keep their dots
}

TEST(TextSearchTest, FindsNothingForCharactersThatNobodySees) {
  const std::vector<Record> records = {message("see"), message("\u200Bsee"), message("")};
  for (const char* words : {"\u200B", "\u200B\u00AD\u2060"}) EXPECT_EQ(found(records, words), Rows{}) << words;
  EXPECT_EQ(found(records, "\u200Bsee"), (Rows{0, 1}));
}

TEST(TextSearchTest, GivesWhatFoldingBothTextsGives) {
  const std::vector<std::string> texts = {"aab", "aaab", "AaB", "ab", "", "baa", "aabaab", "äab", "aäb"};
  for (const std::string& words : texts) {
    const TextSearch search(words);
    for (const std::string& text : texts) {
      const bool expected = device::foldedCase(text).find(device::foldedCase(words)) != std::string::npos;
      EXPECT_EQ(search.isIn(text), expected) << words << " in " << text;
    }
  }
}

TEST(TextSearchTest, KnowsFilesByTheirNamesOnly) {
  const std::vector<Record> records = {file("User/Library/SMS/Attachments/ab/Harbour.jpg"), message("library")};
  EXPECT_EQ(found(records, "harbour"), (Rows{0}));
  EXPECT_EQ(found(records, "library"), (Rows{1}));
}

TEST(TextSearchTest, FindsNothingWithoutWordsAndInRowsWithoutTexts) {
  const std::vector<Record> records = {Record{{"Text", 5}}, Record{}, message("5")};
  EXPECT_EQ(found(records, ""), Rows{});
  EXPECT_EQ(found(records, "5"), (Rows{2}));
}

TEST(TextSearchTest, EndsWhenItIsCancelled) {
  const Cancellation cancellation;
  cancellation.cancel();
  EXPECT_EQ(findRows(arrayOf({message("a")}), "a", cancellation), Rows{});
}

}  // namespace
}  // namespace chatsum::desktop
