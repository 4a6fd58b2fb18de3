// What tests of reading share: a platform of their own with a real Messages store and a real address book, and a read
// whose outcome is kept.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "libchatsum/ChatsumUtils/AddressBookIndex.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "tests/unit/MessageStore/SmallStores.h"

namespace chatsum::tests {

struct ReadOutcome {
  int completions = 0;
  Array records;
  bool hasAttachments = false;
  bool hasMultiMediaAttachments = false;

  [[nodiscard]] const Record& record(std::size_t place) const { return *records[place].asRecord(); }
  [[nodiscard]] const Value& at(std::size_t place, std::string_view key) const { return record(place)[key]; }
  /// The descriptions of the values of one key, in the order of the records.
  [[nodiscard]] std::vector<std::string> all(std::string_view key) const {
    std::vector<std::string> texts;
    for (const Value& value : records) texts.push_back((*value.asRecord())[key].description());
    return texts;
  }
};

class ReadingTest : public ::testing::Test {
 protected:
  static constexpr const char* kChat = "iMessage;-;+15550100123";
  static constexpr std::int64_t kNewest = 1;
  static constexpr std::int64_t kOldest = 0;

  ReadingTest() {
    // The index belongs to the process; a test must not see that of the one before it.
    addressBookIndexSlot::publish(std::make_shared<AddressBookIndex>());
  }

  /// The Messages store, made with one chat at the first call.
  SmallMessageStore& store() {
    if (!store_) {
      store_ = std::make_unique<SmallMessageStore>(fake.realPath(kMessagesPath));
      chat = store_->chat(kChat);
    }
    return *store_;
  }
  std::int64_t addMessage(const SmallMessage& row) {
    store();
    return store_->message(chat, row);
  }
  /// The address book, made at the first call.
  SmallAddressBook& addressBook() {
    if (!addressBook_) addressBook_ = std::make_unique<SmallAddressBook>(fake.realPath(kAddressBookPath));
    return *addressBook_;
  }

  ReadOutcome read(std::int64_t order = kOldest, const std::vector<std::string>& excludedGuids = {}) {
    return read(conversation, order, excludedGuids);
  }
  static ReadOutcome read(const platform::CKConversation& of, std::int64_t order,
                          const std::vector<std::string>& excludedGuids = {}) {
    ReadOutcome outcome;
    ChatsumUtils::allMessagesForConversation(of, excludedGuids, order, keepIn(outcome));
    return outcome;
  }
  static ChatsumUtils::MessagesCompletion keepIn(ReadOutcome& outcome) {
    return [&outcome](Array records, bool hasAttachments, bool hasMultiMediaAttachments) {
      ++outcome.completions;
      outcome.records = std::move(records);
      outcome.hasAttachments = hasAttachments;
      outcome.hasMultiMediaAttachments = hasMultiMediaAttachments;
    };
  }

  /// How often the database at a device path was opened.
  [[nodiscard]] std::ptrdiff_t opens(const std::string& path) const {
    const auto calls = fake.files.calls();
    return std::count(calls.begin(), calls.end(), "openDatabase " + path);
  }
  /// The log lines that hold the words.
  [[nodiscard]] std::vector<std::string> linesWith(std::string_view words) const {
    std::vector<std::string> found;
    for (const std::string& line : fake.log.lines()) {
      if (line.find(words) != std::string::npos) found.push_back(line);
    }
    return found;
  }
  [[nodiscard]] std::vector<std::string> errorLines() const { return linesWith(" Error => "); }

  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform installed{fake};
  platform::fake::FakeConversation conversation{{kChat}};
  std::int64_t chat = 0;

 private:
  std::unique_ptr<SmallMessageStore> store_;
  std::unique_ptr<SmallAddressBook> addressBook_;
};

}  // namespace chatsum::tests
