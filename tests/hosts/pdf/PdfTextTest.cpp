// What a report says: every record once and in order, in a file that programs can search and copy from.
#include <gmock/gmock.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>

#include "tests/hosts/pdf/PdfReportTest.h"

namespace chatsum::test {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::Not;
using ::testing::SizeIs;

std::string withoutBlanks(std::string_view text) {
  static constexpr std::string_view kNoBreakSpace = "\u00a0";
  std::string packed;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text.substr(i).starts_with(kNoBreakSpace)) {
      ++i;
    } else if (text[i] != ' ' && text[i] != '\n' && text[i] != '\r' && text[i] != '\t') {
      packed += text[i];
    }
  }
  return packed;
}

/// The rows' text of a report as poppler reads it in the order of drawing: without heading, page numbers and blanks.
std::string rowsText(const std::filesystem::path& file) {
  const std::string all = pdfRawText(file);
  std::string rows;
  std::size_t page = 0;
  for (std::size_t begin = 0; begin < all.size(); ++page) {
    const std::size_t end = std::min(all.find('\f', begin), all.size());
    std::string text = withoutBlanks(std::string_view(all).substr(begin, end - begin));
    if (page == 0) text.erase(0, text.find("NameTextDate") + std::string_view("NameTextDate").size());
    const std::string number = std::to_string(page + 1);
    EXPECT_TRUE(text.starts_with(number)) << "page " << number << " begins with " << text.substr(0, 40);
    rows += text.substr(number.size());
    begin = end + 1;
  }
  return rows;
}

class PdfText : public PdfReportTest {
 protected:
  /// The same rows as a text report says them.
  std::string expectedText(const std::string& conversation) const {
    return withoutBlanks(report(conversation, {"--line-format", "%@ %@ %@", "--name", "expected", "--replace"}));
  }
  void expectSameText(const std::string& conversation) const {
    const std::string expected = expectedText(conversation), found = rowsText(pdf(conversation));
    ASSERT_GT(expected.size(), 20U);
    const auto [at, other] = std::mismatch(expected.begin(), expected.end(), found.begin(), found.end());
    const auto place = static_cast<std::size_t>(at - expected.begin());
    constexpr std::size_t kBefore = 30, kShown = 90;
    const std::size_t from = place < kBefore ? 0 : place - kBefore;
    EXPECT_TRUE(at == expected.end() && other == found.end())
        << "differs at byte " << place << "\nexpected: …" << expected.substr(from, kShown) << "\nfound:    …"
        << (from < found.size() ? found.substr(from, kShown) : "");
  }
};

TEST_F(PdfText, HoldsEveryRecordOnceAndInOrder) {
  std::vector<std::string> texts;
  for (int i = 0; i < 400; ++i) {
    std::string text = "Message " + std::to_string(i) + (i % 5 ? ":" : ",\nin lines:");
    for (int word = 0; word < i % 40; ++word) text += " word" + std::to_string(i * 40 + word);
    texts.push_back(text);
  }
  writeTexts(texts);
  expectSameText(person);
}

TEST_F(PdfText, HoldsLettersOfEuropeAndSigns) {
  writeTexts({"office, ffi fl fi ff: ligatures stay letters", "Zażółć gęślą jaźń – „cudzysłów” … 50 € ± ½ ²",
              "Größe, Ærø, Œuvre, Þórður, ñandú, Ġgantija", "Ελλάδα: Καλημέρα σας", "Привіт, як справи? Їжак, ґанок",
              "<tags> & \"quotes\" (brackets) [too] {and} \\backslash/ %@ %d", "1+1=2; #hash @at ^ ~ ` | _under_"});
  expectSameText(person);
}

TEST_F(PdfText, OfLaterRowsFirstIsInThatOrder) {
  writeTexts({"first", "second", "third"});
  EXPECT_THAT(textsOf(readReportPages(pdf(person, {"--sort", "desc"})).columns[1]),
              ElementsAre("third", "second", "first"));
}

TEST_F(PdfText, KeepsThePlaceOfAnEmptyText) {
  writeTexts({"before", "", "after"});
  const ReportPages pages = readReportPages(pdf(person));
  EXPECT_THAT(textsOf(pages.columns[1]), ElementsAre("before", "after"));
  ASSERT_THAT(pages.columns[0], SizeIs(3));
  EXPECT_EQ(pages.columns[1][1].baseline, pages.columns[0][2].baseline);
}

TEST_F(PdfText, ShowsNoBoxesForControlCharacters) {
  writeTexts(
      {std::string("bell\aescape\x1b[0m end"), "one\r\ntwo\rthree", "tab\there", "zero\u200bwidth\u200djoin\ufeff"});
  const std::filesystem::path file = pdf(person);
  const std::string text = withoutBlanks(pdfRawText(file));
  for (const char* part : {"bell", "end", "one", "two", "three", "tab", "here", "zero", "width", "join"}) {
    EXPECT_NE(text.find(part), std::string::npos) << part;
  }
  EXPECT_EQ(pdfProblems(file), "");
}

/// Code points without blanks and without marks that only steer how neighbours look.
std::vector<char32_t> shownCharacters(std::string_view text) {
  std::vector<char32_t> characters;
  for (std::size_t i = 0; i < text.size();) {
    const auto lead = static_cast<unsigned char>(text[i]);
    const std::size_t length = lead < 0x80 ? 1 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    auto c = static_cast<char32_t>(length == 1 ? lead : lead & (0xFFU >> (length + 1)));
    for (std::size_t k = 1; k < length && i + k < text.size(); ++k) {
      c = (c << 6U) | (static_cast<unsigned char>(text[i + k]) & 0x3FU);
    }
    i += length;
    const bool steers = c == 0x200D || c == 0x200E || c == 0x200F || (c >= 0x202A && c <= 0x202E) ||
                        (c >= 0x2066 && c <= 0x2069) || c == 0xFE0E || c == 0xFE0F;
    if (!steers && c > ' ' && c != 0xA0) characters.push_back(c);
  }
  return characters;
}

// Of scripts that are shaped or run from right to left, programs differ in the order in which they copy; but each
// character can be found, as often as it was written.
TEST_F(PdfText, HoldsTheCharactersOfEveryScript) {
  writeSample();
  const std::string conversation = "Language table 🌍";
  // Plain: a text report in words has the names of pictures that a page shows.
  std::vector<char32_t> expected = shownCharacters(report(conversation, {"--plain", "--line-format", "%@ %@ %@"}));
  std::vector<char32_t> found = shownCharacters(rowsText(pdf(conversation, {"--plain"})));
  ASSERT_GT(expected.size(), 1500U);
  std::sort(expected.begin(), expected.end());
  std::sort(found.begin(), found.end());
  std::vector<char32_t> lost, added;
  std::set_difference(expected.begin(), expected.end(), found.begin(), found.end(), std::back_inserter(lost));
  std::set_difference(found.begin(), found.end(), expected.begin(), expected.end(), std::back_inserter(added));
  const auto hex = [](const std::vector<char32_t>& characters) {
    std::string text;
    for (const char32_t c : characters) {
      std::array<char, 16> number{};
      std::snprintf(number.data(), number.size(), " U+%04X", static_cast<unsigned>(c));
      text += number.data();
    }
    return text;
  };
  EXPECT_EQ(hex(lost), "");
  EXPECT_EQ(hex(added), "");
}

TEST_F(PdfText, IsToldToBeUnreadableWhereNoFontHasIt) {
  writeTexts({"Hello", "กขค", "kiwi \U0001F95D", "Привет"});
  const std::vector<std::string> command = {"report", person, "--format", "pdf", "--replace"};
  EXPECT_THAT(run(command).err, Not(HasSubstr("installed font")));
  const PinnedFonts few({"/usr/share/fonts/truetype/liberation2"});
  environment["FONTCONFIG_FILE"] = std::getenv("FONTCONFIG_FILE");
  EXPECT_THAT(run(command).err,
              HasSubstr("4 characters are shown as boxes because no installed font has them (Thai, Emoji); install"));
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_THAT(run(command).err, HasSubstr("4 Zeichen erscheinen als Kästchen"));
}

}  // namespace
}  // namespace chatsum::test
