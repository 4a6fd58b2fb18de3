// What a report says of pictures that it cannot show as they should be.
#include <gmock/gmock.h>

#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/pdf/PdfReportTest.h"

namespace chatsum::test {
namespace {

using cli::testing::bytesOf;
using cli::testing::countOf;
using cli::testing::Outcome;
using cli::testing::putBytes;
using ::testing::HasSubstr;
using ::testing::Not;

class PdfPictures : public PdfReportTest {
 protected:
  struct Made {
    std::string notes;
    std::size_t pictures = 0;
  };

  /// A report of messages with these files.
  [[nodiscard]] Made reportOf(const std::vector<std::string>& contents) const {
    std::filesystem::remove(storePath());
    cli::testing::SmallStore store(storePath());
    const auto chat = store.chat(person);
    for (std::size_t i = 0; i < contents.size(); ++i) {
      const std::string name = std::to_string(i) + ".jpg";
      const auto file = storePath().parent_path() / "Attachments" / name;
      std::filesystem::remove(file);
      if (!contents[i].empty()) putBytes(file, contents[i]);
      const std::string path = "~/Library/SMS/Attachments/" + name;
      const std::int64_t attachment[] = {store.store.addAttachment({.guid = path, .filename = path})};
      store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = attachment});
    }
    store.finish();
    const Outcome outcome = run({"report", person, "--format", "pdf", "--replace"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    const auto lines = cli::testing::linesOf(outcome.out);
    return {outcome.err, lines.empty() ? 0 : countOf(bytesOf(lines[0]), "/Subtype/Image")};
  }

  const std::string whole_{device::boatJpeg()};
  /// Its header is good.
  const std::string damaged_ =
      bytesOf(std::string(CHATSUM_TEST_GOLDEN) + "/../data/pictures/interlaced.png").substr(0, 150);
};

TEST_F(PdfPictures, ThatAreDamagedBehindAGoodHeaderCountAsMissing) {
  const Made none = reportOf({""});
  EXPECT_THAT(none.notes, HasSubstr("1 picture is missing or damaged: its name stands in its place."));
  const Made made = reportOf({damaged_, whole_, ""});
  EXPECT_THAT(made.notes, HasSubstr("2 pictures are missing or damaged: their names stand in their places."));
  EXPECT_THAT(made.notes, Not(HasSubstr("incomplete")));
  EXPECT_EQ(made.pictures, none.pictures + 1);  // no empty square is drawn
  EXPECT_THAT(reportOf({whole_}).notes, Not(HasSubstr("missing")));
}

TEST_F(PdfPictures, ThatWereReceivedInPartAreDrawnAndTold) {
  const Made none = reportOf({""});
  const Made made = reportOf({whole_.substr(0, whole_.size() * 7 / 10)});
  EXPECT_THAT(made.notes, HasSubstr("1 picture is incomplete: only the part that is there is drawn."));
  EXPECT_THAT(made.notes, Not(HasSubstr("missing")));
  EXPECT_GT(made.pictures, none.pictures);
}

}  // namespace
}  // namespace chatsum::test
