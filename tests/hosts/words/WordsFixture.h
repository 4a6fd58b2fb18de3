// A device of a test's own whose messages are read through the library, as reports read them.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/conversations/ConversationList.h"
#include "hosts/device/report/ConversationReading.h"
#include "hosts/device/sample/ContactWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/StoreWriter.h"
#include "hosts/device/session/DeviceSession.h"
#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device::testing {

inline constexpr std::int64_t kSecond = 1'000'000'000;
/// 2024-05-03T18:05:00Z in nanoseconds since 2001.
inline constexpr std::int64_t kFriday = 736'452'300 * kSecond;

/// A store with one conversation of Maya and one group of Maya and Daniel, to be filled by the test; then read.
class WordsFixture {
 public:
  explicit WordsFixture(Generation generation = Generation::ios18) {
    ContactWriter contacts(addressBookPath(root()));
    contacts.addContact({.first = "Maya",
                         .last = "Lindqvist",
                         .phones = {{"_$!<Mobile>!$_", "+15550100142"}},
                         .emails = {{"_$!<Home>!$_", "maya@example.com"}}});
    contacts.addContact({.first = "Daniel", .last = "Okafor", .phones = {{"_$!<Mobile>!$_", "+15550100175"}}});
    contacts.addContact({.first = "Ann \"A\"", .last = "Two\nLines", .phones = {{"", "+15550100120"}}});
    EXPECT_EQ(contacts.finish(), std::nullopt);
    writer.emplace(messageStorePath(root()), generation);
    maya = writer->addHandle({.id = "+15550100142"});
    daniel = writer->addHandle({.id = "+15550100175"});
    stranger = writer->addHandle({.id = "+15550100199"});
    chat = writer->addChat({.guid = "maya", .identifier = "+15550100142", .handles = {{maya}}});
    const std::int64_t members[] = {maya, daniel};
    group = writer->addChat({.guid = "group", .identifier = "chat1", .group = true, .handles = members});
  }

  /// A message of Maya's conversation, a minute after the one before, unless it says otherwise. Answers its ROWID.
  std::int64_t add(MessageRow row) {
    if (row.guid.empty())
      row.guid = guids_.emplace_back(std::make_unique<std::string>("M" + std::to_string(next_)))->c_str();
    if (row.date == 0) row.date = kFriday + 60 * kSecond * next_;
    if (row.handle == 0 && !row.fromMe) row.handle = maya;
    if (row.chats.empty() && !isAdrift) row.chats = std::span(&chat, 1);
    ++next_;
    return writer->addMessage(row);
  }
  std::int64_t addToGroup(MessageRow row) {
    row.chats = std::span(&group, 1);
    row.roomName = "chat1";
    return add(row);
  }
  /// The guid of the message that `add` made last.
  [[nodiscard]] std::string lastGuid() const { return "M" + std::to_string(next_ - 1); }
  std::int64_t addFile(const std::string& name, bool isThere = true) {
    const std::string guid = "A" + std::to_string(++files_),
                      path = "~/Library/SMS/Attachments/ab/12/" + guid + "/" + name;
    return writer->addAttachment(
        {.guid = guid, .filename = isThere ? std::string_view(path) : "", .transferName = name});
  }
  /// Runs SQL on the store while it is being written.
  void execute(const std::string& sql) { writer->file().execute(sql); }

  /// Completes the store.
  void finish() {
    const auto problem = writer->finish();
    writer.reset();
    ASSERT_EQ(problem, std::nullopt);
  }

  std::unique_ptr<DeviceSession> open(bool plain = false, const std::optional<std::string>& owner = std::nullopt) {
    if (writer) finish();
    DeviceSession::Options options;
    options.source = root().string();
    options.home = folder_.path() + "/home";
    options.plain = plain;
    options.ownerName = owner;
    auto session = DeviceSession::open(options);
    EXPECT_TRUE(session) << session.problem().sentence;
    return std::move(session.value());
  }

  /// Reads a conversation by its chat's guid. The balance of every reading has to hold.
  Reading read(const std::string& guid = "maya", const ReadingOptions& options = {}, bool plain = false,
               const std::optional<std::string>& owner = std::nullopt) {
    const auto session = open(plain, owner);
    const auto store = session->connect();
    const auto list = ConversationList::read(store.value(), session->findPerson());
    EXPECT_TRUE(list);
    const auto places = list.value().find(guid);
    EXPECT_EQ(places.size(), 1U);
    return readOf(*session, list.value().conversations()[places.at(0)], options);
  }
  static Reading readOf(DeviceSession& session, const Conversation& conversation, const ReadingOptions& options = {}) {
    auto reading = readConversation(session, conversation, options);
    if (!reading) {
      ADD_FAILURE() << reading.problem().sentence;
      return {};
    }
    EXPECT_TRUE(reading.value().balance.holds()) << reading.value().balance.sentence();
    return std::move(reading.value());
  }
  /// The texts of the records in their order.
  std::vector<std::string> texts(const std::string& guid = "maya", const ReadingOptions& options = {}) {
    return textsOf(read(guid, options));
  }
  /// The only text there is.
  std::string text() {
    const auto all = texts();
    EXPECT_EQ(all.size(), 1U);
    return all.empty() ? "" : all.front();
  }
  static std::vector<std::string> textsOf(const Reading& reading) {
    std::vector<std::string> texts;
    for (const Value& record : reading.records) texts.push_back((*record.asRecord())["Text"].asString()->str());
    return texts;
  }

  [[nodiscard]] std::filesystem::path root() const { return std::filesystem::path(folder_.path()) / "device"; }

  std::optional<StoreWriter> writer;
  std::int64_t maya = 0, daniel = 0, stranger = 0, chat = 0, group = 0;
  bool isAdrift = false;  ///< messages are added to no chat

 private:
  platform::fake::TemporaryFolder folder_;
  std::vector<std::unique_ptr<std::string>> guids_;
  int next_ = 1, files_ = 0;
};

using Texts = std::vector<std::string>;

}  // namespace chatsum::device::testing
