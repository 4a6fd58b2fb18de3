#include "hosts/device/calls/CallList.h"

#include <algorithm>

#include "hosts/device/calls/CallRecords.h"
#include "hosts/device/sample/ContactWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "tests/hosts/calls/CallFixture.h"

namespace chatsum::device {
namespace {

namespace fs = std::filesystem;
using testing::kNoon;
using testing::kNoonSince1970;

/// A device that has call lists and nothing else but what a test adds.
class CallListTest : public testing::CallFixture {
 protected:
  [[nodiscard]] fs::path device() const { return fs::path(folder_.path()) / "device"; }

  void writeMain(const std::vector<CallRow>& rows) const { write(callListPath(device()), rows); }
  static void write(const fs::path& file, const std::vector<CallRow>& rows) {
    CallWriter writer(file);
    for (const CallRow& row : rows) writer.addCall(row);
    finish(writer);
  }

  [[nodiscard]] std::unique_ptr<DeviceSession> open() const {
    DeviceSession::Options options;
    options.source = device().string();
    options.home = folder_.path() + "/home";
    options.needsMessages = false;
    auto session = DeviceSession::open(options);
    if (session) return std::move(session.value());
    ADD_FAILURE() << session.problem().sentence;
    return nullptr;
  }
  [[nodiscard]] CallList list(const CallListOptions& options = {}) const {
    const auto session = open();
    auto list = readCalls(*session, options);
    if (list) return std::move(list.value());
    ADD_FAILURE() << list.problem().sentence;
    return {};
  }
  [[nodiscard]] std::string refusal() const {
    const auto session = open();
    const auto list = readCalls(*session, {});
    return list ? "" : list.problem().sentence;
  }
};

std::vector<std::string> whoOf(const CallList& list) {
  std::vector<std::string> who;
  for (const Call& call : list.calls) who.push_back(call.people.empty() ? "" : call.people.front().address);
  return who;
}
using Who = std::vector<std::string>;

bool hasNote(const CallList& list, const std::string& part) {
  return std::any_of(list.notes.begin(), list.notes.end(),
                     [&](const std::string& note) { return note.find(part) != std::string::npos; });
}

TEST_F(CallListTest, PutsTheListsTogetherNewestFirst) {
  writeMain({{.date = kNoon, .address = "5550101", .uniqueId = "A"},
             {.date = kNoon + 20, .address = "5550102", .uniqueId = "B"}});
  write(temporaryCallListPath(device()), {{.date = kNoon + 20, .address = "5550102", .uniqueId = "B"},
                                          {.date = kNoon + 30, .address = "5550103", .uniqueId = "C"}});
  OldCallWriter old(oldCallListPath(device()));
  old.addCall({.date = static_cast<std::int64_t>(kNoonSince1970), .address = "5550101"});
  old.addCall({.date = 1'380'000'000, .address = "5550104"});
  ASSERT_EQ(old.finish(), std::nullopt);

  const CallList all = list();
  EXPECT_EQ(whoOf(all), (Who{"5550103", "5550102", "5550101", "5550104"}));
  EXPECT_EQ(all.balance.sentence(),
            "Calls: 6 in the lists (2 in the main one, 2 in the temporary one, 2 in the old one) = 4 written + 2 left "
            "out (2 found twice).");
  EXPECT_TRUE(hasNote(all, "from 2013-09-24 to 2024-01-15")) << all.notes.front();
  EXPECT_EQ(whoOf(list({.newestFirst = false})), (Who{"5550104", "5550101", "5550102", "5550103"}));
}

TEST_F(CallListTest, ReadsASourceThatHasOnlyTheOldListOrOnlyTheTemporaryOne) {
  {
    OldCallWriter old(oldCallListPath(device()));
    old.addCall({.date = 1'380'000'000, .address = "5550104"});
    ASSERT_EQ(old.finish(), std::nullopt);
  }
  EXPECT_EQ(whoOf(list()), Who{"5550104"});
  fs::remove_all(device());
  write(temporaryCallListPath(device()), {{.date = kNoon, .address = "5550103"}});
  EXPECT_EQ(whoOf(list()), Who{"5550103"});
}

TEST_F(CallListTest, SaysThatThereIsNoList) {
  fs::create_directories(device() / "var/mobile/Library/SMS");
  std::ofstream(messageStorePath(device())) << "no store";
  EXPECT_NE(refusal().find("There is no call list below"), std::string::npos) << refusal();
}

TEST_F(CallListTest, LeavesOutWhatIsNotAskedForAndCountsEachCallOnce) {
  writeMain({{.date = kNoon, .address = "5550101"},
             {.date = kNoon + 86'400, .address = "5550101"},
             {.date = kNoon, .address = "5550102"},
             {.date = kNoon, .address = "5550101", .type = 8, .provider = "com.apple.FaceTime"},
             {.date = kNoon, .address = "5550101", .type = 0, .provider = "com.example.chatter"},
             {.address = "5550101"},
             {.address = "5550102"}});
  CallListOptions options{.app = CallApp::kPhone, .person = "555-0101"};
  options.range.until = Date{kNoonSince1970 + 1};
  const CallList wanted = list(options);
  EXPECT_EQ(whoOf(wanted), Who{"5550101"});
  EXPECT_EQ(wanted.balance.sentence(),
            "Calls: 7 in the list = 1 written + 6 left out (2 of other apps, 2 with other people, 1 outside the times, "
            "1 without a date).");
  EXPECT_EQ(list({.app = CallApp::kFaceTime}).calls.size(), 1U);
  EXPECT_EQ(list().calls.size(), 7U);
  EXPECT_EQ(list().calls.back().date, std::nullopt);
  EXPECT_TRUE(hasNote(list(), "2 calls have no date"));
  EXPECT_TRUE(hasNote(list({.person = "Nobody"}), "is with 'Nobody'"));
}

TEST_F(CallListTest, TakesBothEndsOfTheTimesIn) {
  writeMain({{.date = kNoon, .address = "5550101"},
             {.date = kNoon + 60, .address = "5550102"},
             {.date = kNoon + 120.5, .address = "5550103"},
             {.date = kNoon + 121, .address = "5550104"}});
  CallListOptions options{.newestFirst = false};
  options.range.since = Date{kNoonSince1970 + 60};
  options.range.until = Date{kNoonSince1970 + 120.5};
  EXPECT_EQ(whoOf(list(options)), (Who{"5550102", "5550103"}));
}

TEST_F(CallListTest, NamesPeopleFromTheAddressBook) {
  writeMain({{.date = kNoon, .address = "5550100142"}, {.date = kNoon + 1, .address = "+15550100126"}});
  ContactWriter contacts(addressBookPath(device()));
  contacts.addContact({.first = "Maya", .last = "Lindqvist", .phones = {{"", "+1 (555) 010-0142"}}});
  ASSERT_EQ(contacts.finish(), std::nullopt);
  EXPECT_EQ(peopleInWords(list().calls.back()), "Maya Lindqvist (5550100142)");
  EXPECT_EQ(whoOf(list({.person = "maya lindqvist"})), Who{"5550100142"});
}

TEST_F(CallListTest, TellsOfAListBesideTheMainOneThatCannotBeRead) {
  writeMain({{.date = kNoon, .address = "5550101"}});
  std::ofstream(temporaryCallListPath(device())) << "this is no database at all, but long enough to be looked at";
  const CallList read = list();
  EXPECT_EQ(read.calls.size(), 1U);
  EXPECT_TRUE(hasNote(read, "A list beside the main one is left out: '"));
}

TEST_F(CallListTest, FailsWhenTheMainListCannotBeRead) {
  writeMain({});
  std::ofstream(callListPath(device())) << "this is no database at all, but long enough to be looked at";
  write(temporaryCallListPath(device()), {{.date = kNoon, .address = "5550103"}});
  EXPECT_NE(refusal().find("CallHistory.storedata"), std::string::npos) << refusal();
}

TEST_F(CallListTest, TellsOfWhatIsEncryptedOrGone) {
  const std::string bytes = "\x91\x05\xFF\x00\x17";
  CallWriter writer(callListPath(device()));
  writer.addCall({.date = kNoon, .address = bytes, .isAddressBytes = true});
  writer.addCall({.date = kNoon, .people = {7, 8}});
  finish(writer);
  const CallList read = list();
  EXPECT_TRUE(hasNote(read, "1 call has an encrypted number or name"));
  EXPECT_TRUE(hasNote(read, "1 call has people that the store names no more"));
}

TEST_F(CallListTest, LeavesTheSourceAlone) {
  {
    CallWriter writer(callListPath(device()), CallGeneration::ios17, Placement::wal);
    writer.addCall({.date = kNoon, .address = "5550101"});
    finish(writer);
  }
  const auto stateOf = [&] {
    std::map<std::string, std::string> files;
    for (const auto& entry : fs::recursive_directory_iterator(device())) {
      if (entry.is_regular_file()) files[entry.path().string()] = testing::bytesOf(entry.path());
    }
    return files;
  };
  const auto before = stateOf();
  EXPECT_EQ(list().calls.size(), 1U);
  EXPECT_EQ(stateOf(), before);
}

TEST_F(CallListTest, MakesRecordsOfCalls) {
  writeMain({{.date = kNoon + 0.75, .duration = 75.5, .address = "+15550100142", .outgoing = true, .name = "Maya"},
             {.address = "a.jpg@b.png", .name = "x"},
             {.address = "someone@example.pdf"}});
  const auto session = open();
  session->startLibrary();
  const auto read = readCalls(*session, {});
  ASSERT_TRUE(read);
  const Array records = recordsOf(read.value().calls);
  ASSERT_EQ(records.size(), 3U);
  const Record& first = *records[0].asRecord();
  EXPECT_EQ(first["Name"].description(), "Maya (+15550100142)");
  EXPECT_EQ(first["Text"].description(), "Outgoing phone call, connected, 0:01:15");
  ASSERT_NE(first["Date"].asDate(), nullptr);
  EXPECT_EQ(*first["Date"].asDate(), Date{kNoonSince1970});
  EXPECT_EQ(first["Address"].description(), "+15550100142");
  EXPECT_EQ(first["Duration"].description(), "0:01:15");
  EXPECT_EQ(first["Direction"].description(), "outgoing");
  EXPECT_EQ(first["Status"].description(), "connected");
  EXPECT_EQ(first["Service"].description(), "phone");
  EXPECT_EQ(first["Medium"].description(), "audio");
  for (std::size_t key = 0; key < first.size(); ++key) {
    const auto& keys = callsContent(CallApp::kPhone).keys;
    EXPECT_NE(std::find(keys.begin(), keys.end(), first.keyAt(key)), keys.end()) << first.keyAt(key);
  }
  // What ends like a picture's name would be drawn as that picture.
  EXPECT_EQ((*records[1].asRecord())["Address"].description(), "a.jpg@b.png ");
  EXPECT_TRUE((*records[1].asRecord())["Date"].isNone());
  EXPECT_EQ((*records[2].asRecord())["Name"].description(), "someone@example.pdf ");
}

TEST(CallRecords, AreAskedForAsAReportOfTheirApp) {
  const Record phone = makeRequest({}, "a.txt", {}, callsContent(CallApp::kPhone));
  EXPECT_EQ(phone["APP_TYPE"].integerValue(), 1);
  EXPECT_EQ(phone["COLUMNS"].asArray()->description(), Array({"Name", "Call", "Date"}).description());
  const ReportLayout layout{.format = ReportFormat::kCsv, .keys = {"Date", "Text", "Duration"}};
  const Record faceTime = makeRequest(layout, "a.csv", {}, callsContent(CallApp::kFaceTime));
  EXPECT_EQ(faceTime["APP_TYPE"].integerValue(), 2);
  EXPECT_EQ(faceTime["COLUMNS"].asArray()->description(), Array({"Date", "Call", "Duration"}).description());
  EXPECT_FALSE(checkLayout(layout, callsContent(CallApp::kPhone)).has_value());
  EXPECT_TRUE(checkLayout(layout).has_value());
  EXPECT_TRUE(checkLayout({.keys = {"guid"}}, callsContent(CallApp::kPhone)).has_value());
}

}  // namespace
}  // namespace chatsum::device
