// Rows that carry an attachment: the path, and whether anything is neither picture nor PDF.

#include "tests/unit/MessageStore/ReadingTest.h"

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AttachmentRow : public ReadingTest {
 protected:
  /// One message with the attachments in a row.
  void attach(const std::vector<std::optional<std::string>>& fileNames) {
    const std::int64_t message = addMessage({.guid = "A", .text = "\xEF\xBF\xBC", .hasAttachments = 1});
    for (const auto& name : fileNames) store().attachment(message, name);
  }
  std::vector<std::string> traceLines() { return linesWith("fileExtension"); }
};

TEST_F(AttachmentRow, StandsForThePathInTheUsersFolder) {
  attach({"~/Library/SMS/Attachments/ab/01/IMG_0001.jpeg"});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "attachment_location"), Value("User/Library/SMS/Attachments/ab/01/IMG_0001.jpeg"));
  EXPECT_EQ(outcome.at(0, "Text"), Value("User/Library/SMS/Attachments/ab/01/IMG_0001.jpeg"));
  EXPECT_TRUE(outcome.hasAttachments);
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 0 for fileExtension: jpeg"));
}

TEST_F(AttachmentRow, ReplacesEveryTildeWhenThePathBeginsWithOne) {
  attach({"~/a~b/~~.png", "~", "~~"});
  EXPECT_THAT(read().all("Text"), ElementsAre("User/aUserb/UserUser.png", "User", "UserUser"));
}

TEST_F(AttachmentRow, KeepsTildesWhenThePathBeginsOtherwise) {
  attach({"/var/mobile/a~b.png", " ~/c.png", ""});
  EXPECT_THAT(read().all("attachment_location"), ElementsAre("/var/mobile/a~b.png", " ~/c.png", ""));
}

TEST_F(AttachmentRow, KeepsTheMessagesTextWhenTheAttachmentHasNoFileName) {
  attach({std::nullopt});
  const ReadOutcome outcome = read();
  EXPECT_EQ(outcome.at(0, "Text"), Value("\xEF\xBF\xBC"));
  EXPECT_EQ(outcome.record(0).find("attachment_location"), nullptr);
  EXPECT_TRUE(outcome.hasAttachments);
  EXPECT_THAT(traceLines(), IsEmpty());
}

TEST_F(AttachmentRow, RepeatsTheMessageForEachOfThreeAttachments) {
  attach({"1.png", "2.pdf", "3.heic"});
  const ReadOutcome outcome = read();
  ASSERT_EQ(outcome.records.size(), 3U);
  EXPECT_THAT(outcome.all("guid"), ElementsAre("A", "A", "A"));
  EXPECT_THAT(outcome.all("Text"), ElementsAre("1.png", "2.pdf", "3.heic"));
  EXPECT_FALSE(outcome.hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 0 for fileExtension: png",
                                        "hasMultiMediaAttachments: 0 for fileExtension: pdf",
                                        "hasMultiMediaAttachments: 0 for fileExtension: heic"));
}

TEST_F(AttachmentRow, IsMultimediaFromTheFirstFilmOnAndThenNoLongerTested) {
  attach({"a.pdf"});
  EXPECT_FALSE(read().hasMultiMediaAttachments);
  fake.log.clear();
  attach({"b.mov", "c.jpeg", "d.mp3"});
  EXPECT_TRUE(read().hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 0 for fileExtension: pdf",
                                        "hasMultiMediaAttachments: 1 for fileExtension: mov"));
}

TEST_F(AttachmentRow, IsTestedAnewInEachRead) {
  attach({"b.mov"});
  EXPECT_TRUE(read().hasMultiMediaAttachments);
  EXPECT_TRUE(read().hasMultiMediaAttachments);
  EXPECT_EQ(traceLines().size(), 2U);
}

TEST_F(AttachmentRow, IsMultimediaWithoutAnExtension) {
  attach({"~/Library/SMS/Attachments/note"});
  EXPECT_TRUE(read().hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 1 for fileExtension: "));
}

TEST_F(AttachmentRow, IsMultimediaWithAnExtensionThatNobodyKnows) {
  attach({"card.Vcf2"});
  EXPECT_TRUE(read().hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 1 for fileExtension: Vcf2"));
}

TEST_F(AttachmentRow, KnowsExtensionsInCapitals) {
  attach({"~/IMG_0001.JPG", "~/bill.PDF"});
  EXPECT_FALSE(read().hasMultiMediaAttachments);
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 0 for fileExtension: JPG",
                                        "hasMultiMediaAttachments: 0 for fileExtension: PDF"));
}

TEST_F(AttachmentRow, TakesTheExtensionOfTheRewrittenPath) {
  attach({"~/archive.~"});
  EXPECT_EQ(read().at(0, "Text"), Value("User/archive.User"));
  EXPECT_THAT(traceLines(), ElementsAre("hasMultiMediaAttachments: 1 for fileExtension: User"));
}

TEST_F(AttachmentRow, EndsAtTheFirstNulOfThePath) {
  attach({std::string("~/a.png\0.mov", 12)});
  EXPECT_EQ(read().at(0, "Text"), Value("User/a.png"));
  EXPECT_FALSE(read().hasMultiMediaAttachments);
}

}  // namespace
}  // namespace chatsum::tests
