#include "hosts/device/sample/SeededDevice.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <system_error>
#include <vector>

#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/sample/ContactWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/SeededRandom.h"
#include "hosts/device/sample/SeededText.h"
#include "hosts/device/sample/StoreWriter.h"

namespace chatsum::device {

namespace fs = std::filesystem;

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;
constexpr std::int64_t kStart = 410'227'200 * kNanosecondsPerSecond;  // 2014-01-01T00:00:00Z since 2001
constexpr std::int64_t kEnd = 725'760'000 * kNanosecondsPerSecond;    // 2024-01-01T00:00:00Z since 2001

// Rows come in rounds of newer messages and, at the end of each, a few of the restored ones.
constexpr std::int64_t kRound = 120;

constexpr std::string_view kMainPersonChat = "iMessage;-;+15550100001";
constexpr std::string_view kMainGroupChat = "iMessage;+;chat100000000000000001";
constexpr std::string_view kAttachmentMark = "\xef\xbf\xbc";  // U+FFFC

struct FileKind {
  std::string_view extension, uti, mimeType;
};
constexpr FileKind kFileKinds[] = {
    {"jpeg", "public.jpeg", "image/jpeg"},
    {"HEIC", "public.heic", "image/heic"},
    {"jpg", "public.jpeg", "image/jpeg"},
    {"png", "public.png", "image/png"},
    {"mov", "com.apple.quicktime-movie", "video/quicktime"},
    {"pdf", "com.adobe.pdf", "application/pdf"},
    {"caf", "com.apple.coreaudio-format", "audio/x-caf"},
};

// The seven digits of a person's number behind +1555, from 0100001 on.
std::int64_t digitsOf(std::int64_t person) { return 100'001 + person; }

std::string handleOf(std::int64_t person) { return fmt::format("+1555{:07}", digitsOf(person)); }

// Numbers stand in address books as people type them.
std::string typedNumber(std::int64_t person, std::uint64_t habit) {
  const std::int64_t exchange = digitsOf(person) / 10'000;
  const std::int64_t line = digitsOf(person) % 10'000;
  if (habit < 4) return fmt::format("+1 (555) {:03}-{:04}", exchange, line);
  if (habit < 7) return handleOf(person);
  if (habit < 9) return fmt::format("+1 555-{:03}-{:04}", exchange, line);
  return fmt::format("(555) {:03}-{:04}", exchange, line);
}

struct Conversation {
  std::int64_t chat = 0;
  bool group = false;
  std::string_view service;
  std::string roomName;
  std::vector<std::int64_t> handles;
};

class SeededWriter {
 public:
  SeededWriter(const fs::path& root, const SeededDeviceOptions& options)
      : root_(root), options_(options), random_(options.seed) {
    options_.messages = std::max<std::int64_t>(options.messages, 0);
    options_.conversations = std::max<std::int64_t>(options.conversations, 1);
    members_ = std::max<std::int64_t>(options.groupHandles, 1);
  }

  std::optional<std::string> write() {
    if (auto failure = writeContacts()) return failure;
    StoreWriter store(messageStorePath(root_), options_.generation, options_.placement);
    addConversations(store);
    addMessages(store);
    auto failure = store.finish();
    if (failure) {
      for (std::string_view suffix : {"", "-wal", "-shm"}) {
        std::error_code ignored;
        fs::path left = addressBookPath(root_);
        left += suffix;
        fs::remove(left, ignored);
      }
    }
    return failure;
  }

 private:
  std::optional<std::string> writeContacts() {
    ContactWriter contacts(addressBookPath(root_), options_.placement);
    for (std::int64_t person = 0; person < options_.contacts; ++person) {
      const SeededName name = makeName(random_);
      const std::string number = typedNumber(person, random_.below(10));
      const std::string email = fmt::format("person{}@example.com", person + 1);
      ContactCard card;
      card.first = name.first;
      card.last = name.last;
      card.phones = {{random_.below(3) == 0 ? "_$!<Home>!$_" : "_$!<Mobile>!$_", number}};
      if (random_.below(4) == 0) card.emails = {{"_$!<Work>!$_", email}};
      contacts.addContact(card);
    }
    return contacts.finish();
  }

  std::int64_t handle(StoreWriter& store, std::int64_t person, std::string_view service) {
    auto& known = service == "SMS" ? smsHandles_ : handles_;
    if (known.size() <= static_cast<std::size_t>(person)) known.resize(static_cast<std::size_t>(person) + 1);
    std::int64_t& row = known[static_cast<std::size_t>(person)];
    if (row == 0) row = store.addHandle({handleOf(person), service});
    return row;
  }

  void addConversations(StoreWriter& store) {
    for (std::int64_t index = 0; index < options_.conversations; ++index) {
      Conversation conversation;
      // Behind the big one every fourth is a group and every fifth goes by text message.
      conversation.group = index == 0 ? members_ > 1 : index % 4 == 3;
      conversation.service = index > 0 && index % 5 == 2 ? "SMS" : "iMessage";
      const std::int64_t firstPerson = index == 0 ? 0 : members_ + index - 1;
      const std::int64_t people = index == 0 ? members_ : conversation.group ? 3 + index % 4 : 1;
      for (std::int64_t person = firstPerson; person < firstPerson + people; ++person) {
        conversation.handles.push_back(handle(store, person, conversation.service));
      }
      const std::string identifier =
          conversation.group ? fmt::format("chat{}", 100'000'000'000'000'001 + index) : handleOf(firstPerson);
      const std::string guid =
          fmt::format("{};{};{}", conversation.service, conversation.group ? '+' : '-', identifier);
      std::string displayName;
      if (conversation.group && (index == 0 || random_.below(2) == 0)) {
        displayName = fmt::format("{} & friends", makeName(random_).first);
      }
      if (conversation.group) conversation.roomName = identifier;
      conversation.chat = store.addChat(
          {guid, identifier, conversation.service, conversation.group, displayName, conversation.handles});
      conversations_.push_back(std::move(conversation));
    }
  }

  void addMessages(StoreWriter& store) {
    const std::int64_t total = options_.messages;
    const auto restored =
        static_cast<std::int64_t>(std::clamp(options_.outOfOrderShare, 0.0, 1.0) * static_cast<double>(total));
    std::int64_t nextOld = 0;
    std::int64_t nextNew = restored;
    for (std::int64_t start = 0; start < total && !store.file().failed(); start += kRound) {
      const std::int64_t end = std::min(start + kRound, total);
      // As many restored rows by the end of the round as their share asks for.
      const auto oldByEnd = static_cast<std::int64_t>(static_cast<double>(restored) *
                                                      (static_cast<double>(end) / static_cast<double>(total)));
      const std::int64_t oldHere = (end == total ? restored : oldByEnd) - nextOld;
      for (std::int64_t row = start; row < end - oldHere; ++row) addMessage(store, dateOf(nextNew++, lastNew_));
      for (std::int64_t row = 0; row < oldHere; ++row) addMessage(store, dateOf(nextOld++, lastOld_));
    }
  }

  // The date of the message that is number `place` in time; now and then the one of the message before it.
  std::int64_t dateOf(std::int64_t place, std::int64_t& last) {
    const std::int64_t step = std::max<std::int64_t>((kEnd - kStart) / options_.messages, 1);
    const auto jitter = static_cast<std::int64_t>(random_.below(static_cast<std::uint64_t>(step)));
    if (last == 0 || random_.below(50) != 0) last = kStart + place * step + jitter;
    return last;
  }

  const Conversation& pickConversation() {
    if (conversations_.size() == 1 || random_.chance(options_.mainShare)) return conversations_.front();
    return conversations_[1 + random_.below(conversations_.size() - 1)];
  }

  void addMessage(StoreWriter& store, std::int64_t date) {
    const Conversation& conversation = pickConversation();
    const std::string guid = random_.guid();
    const bool fromMe = random_.below(100) < 45;
    MessageRow row;
    row.guid = guid;
    row.date = date;
    row.fromMe = fromMe;
    row.service = conversation.service;
    row.roomName = conversation.roomName;
    row.chats = std::span(&conversation.chat, 1);
    if (!conversation.group) {
      row.handle = conversation.handles.front();
    } else if (!fromMe) {
      row.handle = conversation.handles[random_.below(conversation.handles.size())];
    }

    makeMessageText(random_, text_);
    attachments_.clear();
    if (random_.chance(options_.attachmentShare)) addAttachments(store, date, fromMe);
    row.attachments = attachments_;
    const bool bodyOnly = random_.chance(options_.bodyOnlyShare);
    std::string body;
    if (bodyOnly || options_.bodies) {
      body = encodeBody(text_);
      row.attributedBody = body;
    }
    if (!bodyOnly) row.text = text_;
    store.addMessage(row);
  }

  // One to three, announced in the text by one mark each; two thirds come without further words.
  void addAttachments(StoreWriter& store, std::int64_t date, bool fromMe) {
    const std::uint64_t count = random_.below(10) == 0 ? 2 + random_.below(2) : 1;
    std::string marks;
    for (std::uint64_t index = 0; index < count; ++index) {
      const FileKind& kind = kFileKinds[random_.below(std::size(kFileKinds))];
      const std::string guid = random_.guid();
      const std::string name = fmt::format("IMG_{:04}.{}", random_.below(10'000), kind.extension);
      const std::string filename = fmt::format("~/Library/SMS/Attachments/{:02x}/{:02}/{}/{}", random_.below(256),
                                               random_.below(16), guid, name);
      AttachmentRow row;
      row.guid = guid;
      row.filename = filename;
      row.transferName = name;
      row.uti = kind.uti;
      row.mimeType = kind.mimeType;
      row.totalBytes = static_cast<std::int64_t>(20'000 + random_.below(4'000'000));
      row.createdDate = date / kNanosecondsPerSecond;
      row.outgoing = fromMe;
      attachments_.push_back(store.addAttachment(row));
      marks += kAttachmentMark;
    }
    text_ = random_.below(3) == 0 ? marks + text_ : marks;
  }

  fs::path root_;
  SeededDeviceOptions options_;
  SeededRandom random_;
  std::int64_t members_ = 1;
  std::vector<std::int64_t> handles_, smsHandles_;  // rows by person, 0 for none yet
  std::vector<Conversation> conversations_;
  std::int64_t lastNew_ = 0, lastOld_ = 0;
  std::string text_;
  std::vector<std::int64_t> attachments_;
};

}  // namespace

std::string_view seededMainChat(const SeededDeviceOptions& options) {
  return options.groupHandles > 1 ? kMainGroupChat : kMainPersonChat;
}

std::optional<std::string> writeSeededDevice(const fs::path& root, const SeededDeviceOptions& options) {
  if (holdsDevice(root)) return holdsDeviceSentence(root);
  if (auto failure = SeededWriter(root, options).write()) return failure;
  linkUserFolder(root);
  return std::nullopt;
}

}  // namespace chatsum::device
