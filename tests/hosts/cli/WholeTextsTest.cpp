// Whatever somebody wrote stands in the report, whole, and cannot pass for words of the program.
#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/sample/MessageArchives.h"
#include "hosts/device/sample/SamplePictures.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

using testing::bytesOf;
using testing::countOf;
using testing::linesOf;
using testing::Outcome;
using testing::putBytes;
using testing::SmallStore;

constexpr const char* kPerson = "+15550100101";

class WholeTexts : public testing::ProgramTest {
 protected:
  /// A conversation of messages with these texts.
  void write(const std::vector<std::string>& texts) const {
    SmallStore store(storePath());
    const auto chat = store.chat(kPerson);
    for (const std::string& text : texts) store.message(chat, text);
    store.finish();
  }
  /// The texts of the rows of a report of text; each has to be on one line.
  [[nodiscard]] std::vector<std::string> rows(const std::vector<std::string>& more = {}) const {
    std::vector<std::string> options = {"--keys", "Text", "--line-format", "<%@>", "--replace"};
    options.insert(options.end(), more.begin(), more.end());
    std::vector<std::string> texts;
    for (const std::string& line : linesOf(report(kPerson, options))) {
      texts.push_back(line.size() < 2 ? line : line.substr(1, line.size() - 2));
    }
    return texts;
  }
};
using Texts = std::vector<std::string>;

TEST_F(WholeTexts, ThatEndLikeAPicturesNameStandInEveryFormat) {
  const Texts texts = {"Look at https://example.com/cat.png", "me.jpg",
                       "two\nlines of holiday.gif",           "https://example.com/boat.jpeg/",
                       "The contract is called lease.pdf",    "Photo.PNG"};
  write(texts);
  const std::string text = report(kPerson), csv = report(kPerson, {"--format", "csv"});
  const Outcome paged = run({"report", kPerson, "--format", "pdf"});
  ASSERT_EQ(paged.code, 0) << paged.err;
  for (const std::string& each : texts) {
    EXPECT_EQ(countOf(text, ": " + each), 1U) << each << "\n" << text;
    EXPECT_EQ(countOf(csv, each), 1U) << each << "\n" << csv;
  }
  EXPECT_EQ(countOf(paged.err, "picture"), 0U) << paged.err;
  EXPECT_EQ(countOf(run({"report", kPerson, "--replace"}).err, "picture"), 0U);
}

TEST_F(WholeTexts, OfPlainRecordsAreToldWhereTheyAreTakenForPictures) {
  write({"me.jpg", "Hello"});
  const Outcome outcome = run({"report", kPerson, "--plain"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.err.find("1 message ends like the name of a picture and is taken for one: no text stands there; "
                             "leave --plain away to have it."),
            std::string::npos)
      << outcome.err;
  EXPECT_EQ(countOf(bytesOf(reports() / (std::string(kPerson) + ".txt")), "me.jpg"), 0U);
}

TEST_F(WholeTexts, GoOnBehindANulAndComeFromTheBodyWhereTheColumnIsEmpty) {
  const std::string nul("before\0behind", 13), nulBody = device::encodeBody(nul);
  const std::string body = device::encodeBody("from the body");
  SmallStore store(storePath());
  const auto chat = store.chat(kPerson);
  const auto add = [&](const std::string& text, const std::string& attributedBody = {}) {
    device::MessageRow row;
    row.text = text;
    row.attributedBody = attributedBody;
    row.chats = std::span(&chat, 1);
    store.message(row);
  };
  add("nul");
  add("blob");
  add("empty", body);
  add("none", nulBody);
  add("nothing at all");
  store.store.file().execute("UPDATE message SET text = 'before' || char(0) || 'behind' WHERE text = 'nul'");
  store.store.file().execute("UPDATE message SET text = x'6265666F726500626568696E64' WHERE text = 'blob'");
  store.store.file().execute("UPDATE message SET text = '' WHERE text IN ('empty', 'nothing at all')");
  store.store.file().execute("UPDATE message SET text = NULL WHERE text = 'none'");
  store.finish();
  const Texts expected = {"before␀behind", "before␀behind", "from the body", "before␀behind", ""};
  EXPECT_EQ(rows(), expected);
  EXPECT_EQ(rows({"--plain"}), expected);
}

TEST_F(WholeTexts, BesideAnEmptyColumnAndAnUnreadableBodyAreCounted) {
  const std::string body = "no body at all";
  SmallStore store(storePath());
  const auto chat = store.chat(kPerson);
  device::MessageRow row;
  row.text = "x";
  row.attributedBody = body;
  row.chats = std::span(&chat, 1);
  store.message(row);
  store.message(chat, "Hello");
  store.store.file().execute("UPDATE message SET text = '' WHERE text = 'x'");
  store.finish();
  for (const char* words : {"--replace", "--plain"}) {
    const Outcome outcome = run({"report", kPerson, "--replace", words});
    EXPECT_NE(outcome.err.find("2 in the store = 1 written + 1 left out (1 with an unreadable body)"),
              std::string::npos)
        << outcome.err;
  }
}

TEST_F(WholeTexts, CannotPassForWordsOfTheProgram) {
  const std::string history = device::messageHistory({{0, {{"x”] [loved by Me] [", 1}, {"Fine", 2}}}}, {});
  SmallStore store(storePath());
  const auto chat = store.chat(kPerson);
  store.message(chat, "Hi [loved by Me]");
  store.message(chat, "[edited 2024-05-03 18:05; before: “No”]");
  store.message(chat, "list[0] of ﻿[x] and [[y]]");
  device::MessageRow row;
  row.text = "Yes [photo.jpeg]";
  row.threadOriginatorGuid = "M1";
  row.chats = std::span(&chat, 1);
  store.message(row);
  device::MessageRow edited;
  edited.text = "Fine";
  edited.summaryInfo = history;
  edited.dateEdited = 600'000'000'000'000'000;
  edited.chats = std::span(&chat, 1);
  store.message(edited);
  const std::string body = device::encodeBody("In the body [loved by Me]");
  device::MessageRow inBody;
  inBody.attributedBody = body;
  inBody.chats = std::span(&chat, 1);
  store.message(inBody);
  store.finish();
  const Texts found = rows();
  ASSERT_EQ(found.size(), 6U);
  EXPECT_EQ(found[0], "Hi [[loved by Me]");
  EXPECT_EQ(found[1], "[[edited 2024-05-03 18:05; before: “No”]");
  EXPECT_EQ(found[2], "list[0] of ﻿[[x] and [[[[y]]");  // behind an invisible character, too
  EXPECT_EQ(found[3], "[reply to +15550100101: “Hi [[loved by Me]]”] Yes [[photo.jpeg]");
  EXPECT_NE(found[4].find("before: “x”]] [[loved by Me]] [[”]"), std::string::npos) << found[4];
  EXPECT_EQ(found[5], "In the body [[loved by Me]");
  EXPECT_EQ(rows({"--plain"})[0], "Hi [loved by Me]");
}

TEST_F(WholeTexts, NameAnAttachmentThatIsNotThereInWords) {
  write({"\uFFFC", "See \uFFFCthis"});
  EXPECT_EQ(rows(), (Texts{"[attachment]", "See [attachment] this"}));
}

TEST_F(WholeTexts, BelongToTheirFilesWhateverTildesTheseHave) {
  SmallStore store(storePath());
  const auto chat = store.chat(kPerson);
  const std::string folder = "Library/SMS/Attachments/ab/12/";
  const auto add = [&](const std::string& name) {
    const std::int64_t file[] = {store.store.addAttachment({.guid = name, .filename = "~/" + folder + name})};
    store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = file});
  };
  // What the library makes of the first is the name of the second.
  for (const char* name : {"IMG_00~1.png", "IMG_00User1.png", "DOC~1.pdf", "plain.png"}) add(name);
  store.finish();
  const std::filesystem::path place = device() / "var/mobile" / folder;
  for (const char* name : {"IMG_00~1.png", "DOC~1.pdf", "plain.png"})
    putBytes(place / name, std::string(device::boatJpeg()));
  const Outcome outcome = run({"report", kPerson, "--evidence"});
  ASSERT_EQ(outcome.code, 0) << outcome.err;
  const std::string manifest = bytesOf(reports() / (std::string(kPerson) + ".txt.evidence.json"));
  EXPECT_EQ(rows(), (Texts{"[IMG_00~1.png]", "[IMG_00User1.png]", "User/" + folder + "DOC~1.pdf", "[plain.png]"}));
  const std::size_t missing = manifest.find("missingAttachments");
  ASSERT_NE(missing, std::string::npos);
  EXPECT_EQ(countOf(manifest.substr(missing), "IMG_00~1.png"), 0U) << manifest;
  EXPECT_EQ(countOf(manifest.substr(missing), "DOC~1.pdf"), 0U) << manifest;
  EXPECT_EQ(countOf(manifest.substr(missing), "IMG_00User1.png"), 1U) << manifest;
  EXPECT_EQ(rows({"--plain"})[2], "User/" + folder + "DOC~1.pdf");
}

}  // namespace
}  // namespace chatsum::cli
