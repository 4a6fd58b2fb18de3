#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/sample/ContactWriter.h"
#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

namespace fs = std::filesystem;
using testing::countOf;
using testing::everythingBelow;
using testing::linesOf;
using testing::Outcome;
using testing::SmallStore;

class Report : public testing::ProgramTest {
 protected:
  /// Ann writes twice, the owner answers.
  void writeSmall(device::Placement placement = device::Placement::mainFile) const {
    SmallStore store(storePath(), device::Generation::ios17, placement);
    const auto chat = store.chat("+15550100101");
    store.message(chat, "Hello, \"you\"");
    store.message(chat, "two\nlines", true);
    store.message(chat, "Bye");
    store.finish();
    device::ContactWriter contacts(addressBookPath());
    contacts.addContact({.first = "Ann", .last = "Lee", .phones = {{"_$!<Mobile>!$_", "(555) 010-0101"}}});
    ASSERT_FALSE(contacts.finish().has_value());
  }
};

constexpr const char* kText =
    "Ann Lee: Hello, \"you\" (Mon, 01-06-2020 05:40 AM)\n"
    "Me: two\nlines (Mon, 01-06-2020 05:41 AM)\n"
    "Ann Lee: Bye (Mon, 01-06-2020 05:42 AM)\n";
constexpr const char* kCsv =
    "Name,Text,Date\n"
    "Ann Lee,\"Hello, \"\"you\"\"\",\"Mon, 01-06-2020 05:40 AM\"\n"
    "Me,\"two\nlines\",\"Mon, 01-06-2020 05:41 AM\"\n"
    "Ann Lee,Bye,\"Mon, 01-06-2020 05:42 AM\"\n";

TEST_F(Report, IsTextInBothOrders) {
  writeSmall();
  EXPECT_EQ(report("Ann Lee"), kText);
  EXPECT_EQ(report("ann lee", {"--sort", "desc", "--name", "back"}),
            "Ann Lee: Bye (Mon, 01-06-2020 05:42 AM)\n"
            "Me: two\nlines (Mon, 01-06-2020 05:41 AM)\n"
            "Ann Lee: Hello, \"you\" (Mon, 01-06-2020 05:40 AM)\n");
}

TEST_F(Report, IsCsvInBothOrders) {
  writeSmall();
  EXPECT_EQ(report("+15550100101", {"--format", "csv"}), kCsv);
  EXPECT_EQ(report("+15550100101", {"--format", "csv", "--sort", "desc", "--name", "back"}),
            "Name,Text,Date\n"
            "Ann Lee,Bye,\"Mon, 01-06-2020 05:42 AM\"\n"
            "Me,\"two\nlines\",\"Mon, 01-06-2020 05:41 AM\"\n"
            "Ann Lee,\"Hello, \"\"you\"\"\",\"Mon, 01-06-2020 05:40 AM\"\n");
}

TEST_F(Report, PrintsItsPathAloneAndClosesWithABalance) {
  writeSmall();
  const Outcome outcome = run({"report", "iMessage;-;+15550100101"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_EQ(outcome.out, (reports() / "Ann Lee.txt").string() + "\n");
  EXPECT_EQ(outcome.err, "Rows: 3 in the store = 3 written + 0 left out.\n");
}

TEST_F(Report, ReadsRowsThatStandOnlyInTheWal) {
  writeSmall(device::Placement::wal);
  const auto before = everythingBelow(device());
  EXPECT_EQ(report("Ann Lee"), kText);
  EXPECT_EQ(everythingBelow(device()), before);
  EXPECT_TRUE(everythingBelow(temporary()).empty());
}

TEST_F(Report, LeavesTheSourceUntouched) {
  writeSample();
  const auto before = everythingBelow(device());
  for (const char* format : {"text", "csv"}) {
    for (const char* order : {"asc", "desc"}) {
      report("Sunday Hikers", {"--format", format, "--sort", order, "--name", std::string(format) + order});
    }
  }
  EXPECT_EQ(everythingBelow(device()), before);
}

TEST_F(Report, IsNotReplacedUnlessAsked) {
  writeSmall();
  EXPECT_EQ(report("Ann Lee", {"--format", "csv"}), kCsv);
  expectFailure({"report", "Ann Lee", "--format", "csv"}, "--replace");
  EXPECT_EQ(report("Ann Lee", {"--format", "csv", "--replace"}), kCsv);  // not appended
  EXPECT_EQ(std::distance(fs::directory_iterator(reports()), fs::directory_iterator()), 1);
}

TEST_F(Report, GetsItsExtensionWhateverItsName) {
  writeSmall();
  EXPECT_EQ(run({"report", "Ann Lee", "--name", "Dr. Smith"}).out, (reports() / "Dr. Smith.txt").string() + "\n");
  EXPECT_EQ(run({"report", "Ann Lee", "--name", "a.csv"}).out, (reports() / "a.csv.txt").string() + "\n");
  EXPECT_EQ(run({"report", "Ann Lee", "--name", "b.txt"}).out, (reports() / "b.txt").string() + "\n");
  EXPECT_EQ(run({"report", "Ann Lee", "--name", "c", "--format", "csv"}).out, (reports() / "c.csv").string() + "\n");
}

TEST_F(Report, IsNamedAfterAConversationWithASlash) {
  writeSample();
  EXPECT_EQ(run({"report", "Tom/Jerry's trip"}).out, (reports() / "Tom-Jerry's trip.txt").string() + "\n");
}

TEST_F(Report, LeavesOutWhatIsExcluded) {
  writeSmall();
  EXPECT_EQ(report("Ann Lee", {"--exclude", "M1", "--exclude", "M3"}), "Me: two\nlines (Mon, 01-06-2020 05:41 AM)\n");
  const Outcome outcome = run({"report", "Ann Lee", "--exclude", "M1", "--exclude", "M9", "--name", "x"});
  EXPECT_NE(outcome.err.find("3 in the store = 2 written + 1 left out (1 excluded)"), std::string::npos) << outcome.err;
  EXPECT_NE(outcome.err.find("'M9'"), std::string::npos) << outcome.err;
}

TEST_F(Report, LeavesOutEveryRowOfAnExcludedMessage) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  const std::int64_t files[] = {
      store.store.addAttachment({.guid = "A1", .filename = "~/Library/SMS/Attachments/a.pdf"}),
      store.store.addAttachment({.guid = "A2", .filename = "~/Library/SMS/Attachments/b.pdf"})};
  store.message({.guid = {}, .text = "both", .chats = std::span(&chat, 1), .attachments = files});
  store.message(chat, "stays");
  store.finish();
  const Outcome outcome = run({"report", "+15550100101", "--exclude", "M1"});
  EXPECT_NE(outcome.err.find("3 in the store + 1 for words beside files = 1 written + 3 left out (3 excluded)"),
            std::string::npos)
      << outcome.err;
}

TEST_F(Report, CoversTheWantedTimes) {
  writeSmall();
  EXPECT_EQ(report("Ann Lee", {"--since", "2020-01-06T05:41", "--until", "2020-01-06T10:41:30Z"}),
            "Me: two\nlines (Mon, 01-06-2020 05:41 AM)\n");
  EXPECT_EQ(report("Ann Lee", {"--since", "2020-01-06", "--until", "2020-01-06", "--name", "day"}), kText);
  const Outcome outcome = run({"report", "Ann Lee", "--until", "2020-01-05", "--name", "none"});
  EXPECT_EQ(outcome.code, 0);
  EXPECT_NE(outcome.err.find("3 in the store = 0 written + 3 left out (3 outside the times)"), std::string::npos);
  EXPECT_EQ(fs::file_size(reports() / "none.txt"), 0U);
}

TEST_F(Report, ShowsTheKeysInTheFormatThatIsWanted) {
  writeSmall();
  EXPECT_EQ(linesOf(report("Ann Lee", {"--keys", "Date, Name", "--line-format", "[%@] <%@>"}))[0],
            "[Mon, 01-06-2020 05:40 AM] <Ann Lee>");
  EXPECT_EQ(linesOf(report("Ann Lee",
                           {"--format", "csv", "--keys", "guid,is_from_me,label", "--columns", "Id,\"Mine\",Kind"}))[1],
            "M1,0,mobile");
  EXPECT_EQ(linesOf(report("Ann Lee", {"--keys", "guid,is_from_me", "--name", "two"}))[1], "M2, 1");
}

TEST_F(Report, DeliversACopy) {
  writeSmall();
  const fs::path copy = root() / "copy.txt";
  EXPECT_EQ(report("Ann Lee", {"--output", copy.string()}), kText);
  EXPECT_EQ(testing::bytesOf(copy), kText);
  testing::putBytes(copy, "mine");
  expectFailure({"report", "Ann Lee", "--name", "other", "--output", copy.string()}, "--replace");
  EXPECT_EQ(testing::bytesOf(copy), "mine");
  report("Ann Lee", {"--output", copy.string(), "--replace"});
  EXPECT_EQ(testing::bytesOf(copy), kText);
}

TEST_F(Report, NamesTheOwner) {
  writeSmall();
  EXPECT_EQ(countOf(report("Ann Lee", {"--owner", "Casey Moor"}), "Casey Moor: two\nlines"), 1U);
}

TEST_F(Report, FollowsTheZoneOfTheEnvironment) {
  writeSmall();
  environment["TZ"] = "Asia/Tokyo";
  EXPECT_EQ(countOf(report("Ann Lee"), "(Mon, 01-06-2020 07:40 PM)"), 1U);
}

TEST_F(Report, FollowsTheLocaleOfTheEnvironment) {
  writeSmall();
  environment["LC_ALL"] = "de_DE.UTF-8";
  EXPECT_EQ(countOf(report("Ann Lee"), "(Mo., 01-06-2020 05:40 AM)"), 1U);
}

TEST_F(Report, LandsInTheUsersDataFolderByDefault) {
  writeSmall();
  const std::string source = device().string();
  const fs::path reportsBelow = "chatsum/com.apple.MobileSMS/Library/Preferences/Chatsum/Ann Lee.txt";
  EXPECT_EQ(runPlain({"--source", source, "report", "Ann Lee", "--format", "text"}).out,
            (root() / "user/.local/share" / reportsBelow).string() + "\n");
  environment["XDG_DATA_HOME"] = (root() / "data").string();
  EXPECT_EQ(runPlain({"--source", source, "report", "Ann Lee", "--format", "text"}).out,
            (root() / "data" / reportsBelow).string() + "\n");
}

TEST_F(Report, TakesQuotesInAddresses) {
  writeSample();
  EXPECT_EQ(countOf(report("o'brien@example.com"), "Siobhán O'Brien: Hello Casey, it's Siobhán from the archive."), 1U);
}

TEST_F(Report, NamesPeopleRightWhereOneAddressEndsLikeAnother) {
  writeSample();
  EXPECT_EQ(countOf(report("ann@example.com"), "ann@example.com: Hi! We sat next to each other"), 1U);
  EXPECT_EQ(countOf(report("joann@example.com"), "Jo Ann Becker: As always. And NO humming"), 1U);
}

TEST_F(Report, NamesTheOneWhoLeftTheGroup) {
  writeSample();
  EXPECT_GE(countOf(report("Sunday Hikers"), "\nTomasz Zielony: "), 1U);
}

TEST_F(Report, ReadsWhatStandsOnlyInTheBody) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  const std::string body = device::encodeBody("From the body 🌍");
  store.message({.guid = {}, .attributedBody = body, .chats = std::span(&chat, 1)});
  store.finish();
  EXPECT_EQ(countOf(report("+15550100101"), "From the body 🌍"), 1U);
}

TEST_F(Report, TellsTrueDatesOfOldStoresAndFarOffMoments) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  const auto add = [&](const std::string& text, std::int64_t date) {
    store.message({.guid = {}, .text = text, .date = date, .dateAsIs = true, .chats = std::span(&chat, 1)});
  };
  add("seconds", 500'000'000);             // 2016-11-05
  add("early", 50'000'000'000'000'000);    // 2002-08-02, 17 digits
  add("late", 1'100'000'000'000'000'000);  // 2035-11-10, 19 digits
  add("before", -50'000'000'000'000'000);  // 1999-06-02
  add("usual", 600'000'000'000'000'000);   // 2020-01-06
  store.finish();
  environment["TZ"] = "UTC";
  EXPECT_EQ(report("+15550100101", {"--keys", "Text,Date", "--line-format", "%@ %@"}),
            "before Wed, 06-02-1999 07:06 AM\n"
            "early Fri, 08-02-2002 04:53 PM\n"
            "seconds Sat, 11-05-2016 12:53 AM\n"
            "usual Mon, 01-06-2020 10:40 AM\n"
            "late Sat, 11-10-2035 11:33 AM\n");
}

TEST_F(Report, SaysWhatItCannotShow) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  const std::int64_t picture[] = {
      store.store.addAttachment({.guid = "A1", .filename = "~/Library/SMS/Attachments/ab/IMG_1.jpeg"})};
  store.message({.guid = {}, .text = "\uFFFC", .chats = std::span(&chat, 1), .attachments = picture});
  store.message(chat, "me.jpg");
  store.message({.guid = {}, .text = "undated", .dateAsIs = true, .chats = std::span(&chat, 1)});
  store.finish();
  const Outcome outcome = run({"report", "+15550100101"});
  EXPECT_NE(outcome.err.find("1 row is a picture"), std::string::npos) << outcome.err;
  EXPECT_EQ(countOf(outcome.err, "picture"), 1U) << outcome.err;
  EXPECT_NE(outcome.err.find("1 row has no date"), std::string::npos) << outcome.err;
  const std::string written = testing::bytesOf(reports() / "+15550100101.txt");
  EXPECT_EQ(countOf(written, "undated ()"), 1U);
  EXPECT_EQ(countOf(written, "me.jpg"), 1U);
}

TEST_F(Report, HasARowForTheWordsBesideAnAttachment) {
  SmallStore store(storePath());
  const auto chat = store.chat("+15550100101");
  const std::int64_t file[] = {
      store.store.addAttachment({.guid = "A1", .filename = "~/Library/SMS/Attachments/a.pdf"})};
  const std::int64_t other[] = {
      store.store.addAttachment({.guid = "A2", .filename = "~/Library/SMS/Attachments/b.pdf"})};
  const std::int64_t missing[] = {store.store.addAttachment({.guid = "A3"})};
  store.message({.guid = {}, .text = "\uFFFCRead this", .chats = std::span(&chat, 1), .attachments = file});
  store.message({.guid = {}, .text = "\uFFFC \n", .chats = std::span(&chat, 1), .attachments = other});
  store.message({.guid = {}, .text = "\uFFFCNever loaded", .chats = std::span(&chat, 1), .attachments = missing});
  store.finish();
  const std::string written = report("+15550100101");
  for (const char* line :
       {": [a.pdf] Read this (", ": User/Library/SMS/Attachments/a.pdf (", ": User/Library/SMS/Attachments/b.pdf (",
        ": [attachment: not on this device, never downloaded] Never loaded ("}) {
    EXPECT_NE(written.find(line), std::string::npos) << line << "\n" << written;
  }
  const Outcome outcome = run({"report", "+15550100101", "--replace"});
  EXPECT_NE(outcome.err.find("3 in the store + 2 for words beside files = 4 written + 1 left out (1 file not on the "
                             "device, told in words)"),
            std::string::npos)
      << outcome.err;
}

// The library names chats in its statement, where this name ends too early: it finds no messages, and that shows.
TEST_F(Report, IsNotMadeWhenRowsAreMissing) {
  SmallStore store(storePath());
  const std::string guid("odd\0chat", 8);
  const auto chat = store.store.addChat({.guid = guid, .identifier = "chat1", .group = true});
  store.message(chat, "lost");
  store.finish();
  expectFailure({"report", "chat1"}, "1 rows were counted, 0 read");
}

TEST_F(Report, IsNotMadeWhereNothingCanBeWritten) {
  writeSmall();
  for (const char* format : {"text", "csv"}) {
    const Outcome outcome =
        runPlain({"--source", device().string(), "--home", "/dev/null/home", "report", "Ann Lee", "--format", format});
    EXPECT_EQ(outcome.code, 1) << format;
    EXPECT_EQ(outcome.out, "") << format;
    EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
    EXPECT_NE(outcome.err.find("/dev/null/home"), std::string::npos) << outcome.err;
  }
}

TEST_F(Report, IsNotMadeWhereTheReportsFolderIsAFile) {
  writeSmall();
  testing::putBytes(reports(), "in the way");
  expectFailure({"report", "Ann Lee"}, "Ann Lee.txt");
  expectFailure({"report", "Ann Lee", "--format", "csv"}, "Ann Lee.csv");
}

TEST_F(Report, LeavesNoHalfFileOnAFullDisk) {
  writeSeeded({.messages = 2000, .conversations = 1});
  ASSERT_EQ(run({"report", "+15550100001", "--format", "csv"}).code, 0);
  const auto before = everythingBelow(home());
  largestFile = 20'000;
  for (const char* format : {"text", "csv"}) {
    const Outcome outcome = run({"report", "+15550100001", "--format", format, "--replace"});
    EXPECT_EQ(outcome.code, 1) << format;
    EXPECT_EQ(outcome.out, "") << format;
    EXPECT_EQ(linesOf(outcome.err).size(), 1U) << outcome.err;
    EXPECT_EQ(everythingBelow(home()), before) << format;
  }
}

TEST_F(Report, IsNeverToldByTheNameThatItHasWhileItIsWritten) {
  writeSmall();
  for (const char* format : {"text", "csv", "pdf"}) {
    const Outcome outcome = run({"-v", "report", "Ann Lee", "--format", format, "--replace"});
    EXPECT_EQ(outcome.code, 0) << outcome.err;
    EXPECT_EQ(outcome.err.find(".chatsum-"), std::string::npos) << outcome.err;
    const std::string path = linesOf(outcome.out).at(0);
    EXPECT_NE(outcome.err.find(path), std::string::npos) << outcome.err;
  }
}

TEST_F(Report, IsRightForADeviceOfManyMessages) {
  const device::SeededDeviceOptions options{.messages = 20'000, .conversations = 3, .groupHandles = 12, .contacts = 20};
  writeSeeded(options);
  const std::string chat(device::seededMainChat(options));
  const std::string text = report(chat), back = report(chat, {"--sort", "desc", "--name", "back"});
  EXPECT_GT(linesOf(text).size(), 13'000U);
  EXPECT_EQ(linesOf(text).size(), linesOf(back).size());
  const std::string csv = report(chat, {"--format", "csv"});
  EXPECT_TRUE(csv.starts_with("Name,Text,Date\n"));
}

TEST_F(Report, ReadsStoresOfEveryGeneration) {
  for (const device::Generation generation : device::allGenerations()) {
    fs::remove_all(device());
    writeSeeded({.messages = 300, .conversations = 1, .generation = generation});
    const Outcome outcome = run({"report", "+15550100001", "--replace"});
    EXPECT_EQ(outcome.code, 0) << device::generationName(generation) << outcome.err;
    EXPECT_EQ(outcome.err.find("Rows: 0"), std::string::npos) << outcome.err;
  }
}

}  // namespace
}  // namespace chatsum::cli
