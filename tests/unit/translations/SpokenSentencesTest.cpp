// Finds sentences in the sources of the hosts that nobody translates.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <regex>
#include <set>
#include <string>
#include <vector>

#include "tests/support/SourceTexts.h"

namespace chatsum::platform::system {
namespace {

using test::SourceText;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

const std::vector<std::string> kSaying = {"say", "sayCounted", "toSay"};

/// Commands are the same in every language, what stands in files is not for people, and the errors of files are worded
/// as those of devices.
const std::set<std::string> kNoSentences = {
    "\n  chatsum demo\n  chatsum --source DEVICE conversations\n  chatsum --source DEVICE report \"Maya Lindqvist\" "
    "--format pdf\n\n",
    "chatsum evidence", ":memory:", "” couldn’t be removed"};

/// Two words, or one that ends as sentences do, or words in brackets as they stand in messages.
bool readsLikeASentence(const std::string& text) {
  static const std::regex kWords("[A-Za-z]{2,} [a-z]{2,}|[a-z]{3,}[.:;?]$|^\\[[a-z]");
  static const std::regex kStatement(
      "\\b(SELECT|FROM|WHERE|CREATE|INSERT|DROP|PRAGMA|UNION|CASE|THEN|ELSE|JOIN|ORDER BY|AND|IN|IS NULL|BETWEEN)\\b|"
      "\\bchatsum_[a-z]+\\(|^SQLite format");
  return std::regex_search(text, kWords) && !std::regex_search(text, kStatement);
}

/// The places of sentences that are not said.
std::vector<std::string> unsaid(const std::vector<SourceText>& texts) {
  std::vector<std::string> found;
  for (const SourceText& text : texts) {
    if (text.isWithin(kSaying) || kNoSentences.contains(text.text) || !readsLikeASentence(text.text)) continue;
    found.push_back(text.place + ": " + text.text);
  }
  return found;
}

TEST(SpokenSentences, AreAllSaidInTheLanguageOfTheReader) {
  for (const char* folder : {"hosts/cli", "hosts/device"}) {
    auto texts = test::textsOfSources(CHATSUM_SOURCE_ROOT, folder);
    ASSERT_GT(texts.size(), 100U) << folder;
    // The people of the sample device write in their own languages.
    std::erase_if(texts, [](const SourceText& text) { return text.place.starts_with("hosts/device/sample/"); });
    EXPECT_THAT(unsaid(texts), IsEmpty()) << "say() them, and have tools/make-translations find them";
  }
}

TEST(SpokenSentences, AreFoundWhereNobodyTranslatesThem) {
  EXPECT_THAT(unsaid(test::textsOfCode("#include \"the old file\"\n"
                                       "// \"a comment here\"\n"
                                       "int big = 1'000; char quote = '\"';\n"
                                       "fail(\"The file is \"\n  \"gone.\");\n"
                                       "fail(say(\"The file '{0}' is gone.\", name(\"or two words\")));\n"
                                       "note(sayCounted(count, \"{0} row is\", \"{0} rows are\") + \" left out\");\n"
                                       "sql(\"SELECT name FROM people\"); key(\"Name\"); word(\"[loved\");\n"
                                       "constexpr Names kNames = {{toSay(\"invisible ink\"), \"in words\"}};\n",
                                       "a.cpp")),
              ElementsAre("a.cpp:4: The file is gone.", "a.cpp:7:  left out", "a.cpp:8: [loved", "a.cpp:9: in words"));
}

}  // namespace
}  // namespace chatsum::platform::system
