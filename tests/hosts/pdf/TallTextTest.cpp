// Texts that are taller than a page, and pictures that a page cannot show.
#include <gmock/gmock.h>

#include <algorithm>
#include <fstream>

#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/pdf/PdfReportTest.h"

namespace chatsum::test {
namespace {

constexpr double kBottom = 692;
constexpr const char* kContinued = "(continued)";

class TallText : public PdfReportTest {
 protected:
  /// The lines of the texts in a report, of which none may stand below the end of a page.
  [[nodiscard]] std::vector<std::string> linesIn(const std::filesystem::path& file) const {
    std::vector<std::string> lines;
    const ReportPages pages = readReportPages(file);
    for (const ReportLine& line : pages.columns[1]) {
      EXPECT_LT(line.baseline, kBottom) << "page " << line.page << ": " << line.text;
      lines.push_back(line.text);
    }
    return lines;
  }
  [[nodiscard]] std::string balance(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> arguments = {"report", person, "--format", "pdf", "--replace"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return run(arguments).err;
  }
};

TEST_F(TallText, GoesOnInFurtherRowsWithoutLosingALine) {
  std::string text;
  std::vector<std::string> expected = {"before"};
  for (int line = 0; line < 200; ++line) {
    expected.push_back("line " + std::to_string(line));
    text += expected.back() + (line == 199 ? "" : "\n");
  }
  writeTexts({"before", text, "behind"});
  expected.emplace_back("behind");
  const std::filesystem::path file = pdf(person);
  std::vector<std::string> lines = linesIn(file);
  const auto further = static_cast<std::size_t>(std::count(lines.begin(), lines.end(), kContinued));
  std::erase(lines, kContinued);
  EXPECT_EQ(lines, expected);
  EXPECT_EQ(further, 5U);  // 37 lines on a page, 36 where one says that they continue
  const ReportPages pages = readReportPages(file);
  EXPECT_EQ(pages.columns[0].size(), 3 + further);  // each row says whose it is, and when
  EXPECT_EQ(pages.columns[2].size(), 3 + further);
  EXPECT_NE(balance().find("3 in the store + 5 for texts that go on = 8 written + 0 left out."), std::string::npos)
      << balance();
}

TEST_F(TallText, OfOneHugeWordLosesNoLetter) {
  std::string word;
  for (int i = 0; word.size() < 1'000'000; ++i) word += "w" + std::to_string(i) + "q";
  writeTexts({word});
  std::string found;
  for (const std::string& line : linesIn(pdf(person))) {
    if (line != kContinued) found += line;
  }
  EXPECT_EQ(found.size(), word.size());
  EXPECT_TRUE(found == word);
}

TEST_F(TallText, LeavesTextsAsTheyAreInFormatsWithoutPages) {
  std::string text;
  for (int line = 0; line < 60; ++line) text += "line " + std::to_string(line) + "\n";
  writeTexts({text});
  EXPECT_NE(report(person).find(text), std::string::npos);
  EXPECT_EQ(report(person, {"--format", "csv"}).find(kContinued), std::string::npos);
}

TEST_F(TallText, OfPlainRecordsIsToldToBeCutOff) {
  std::string text;
  for (int line = 0; line < 60; ++line) text += "line " + std::to_string(line) + "\n";
  writeTexts({text, "short"});
  EXPECT_NE(balance({"--plain"}).find("1 message is taller than a page and cut off at its end"), std::string::npos);
  EXPECT_EQ(balance().find("cut off"), std::string::npos);
}

TEST_F(TallText, OfNamesThatEndLikePicturesStandsOnThePages) {
  writeTexts({"Look at https://example.com/cat.png", "The lease.pdf"});
  EXPECT_THAT(linesIn(pdf(person)), ::testing::Contains("The lease.pdf"));
  EXPECT_EQ(balance().find("picture"), std::string::npos) << balance();
}

TEST_F(TallText, StandsWherePicturesAreMissingOrDamaged) {
  const std::string folder = "Library/SMS/Attachments/ab/12/";
  {
    cli::testing::SmallStore store(storePath());
    const auto chat = store.chat(person);
    for (const char* name : {"there.jpg", "gone.jpg", "broken.jpg", "broken.pdf", "half.png"}) {
      const std::int64_t file[] = {store.store.addAttachment({.guid = name, .filename = "~/" + folder + name})};
      store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = file});
    }
    store.finish();
  }
  const std::filesystem::path place = device() / "var/mobile" / folder;
  const std::string picture(device::boatJpeg());
  cli::testing::putBytes(place / "there.jpg", picture);
  cli::testing::putBytes(place / "broken.jpg", "no picture");
  cli::testing::putBytes(place / "broken.pdf", "no document");
  // Its header is good, and little stands behind it.
  const std::string png = cli::testing::bytesOf(std::string(CHATSUM_TEST_GOLDEN) + "/../data/pictures/interlaced.png");
  cli::testing::putBytes(place / "half.png", png.substr(0, 150));
  EXPECT_EQ(linesIn(pdf(person)),
            (std::vector<std::string>{"[gone.jpg]", "[broken.jpg]", "[broken.pdf]", "[half.png]"}));
  const std::string said = balance();
  EXPECT_NE(said.find("4 pictures are missing or damaged: their names stand in their places."), std::string::npos)
      << said;
}

}  // namespace
}  // namespace chatsum::test
