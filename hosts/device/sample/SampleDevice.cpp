#include "hosts/device/sample/SampleDevice.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <fstream>
#include <map>
#include <system_error>
#include <utility>
#include <vector>

#include "hosts/device/body/TypedStreamWriter.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/sample/ContactWriter.h"
#include "hosts/device/sample/DevicePaths.h"
#include "hosts/device/sample/MessageArchives.h"
#include "hosts/device/sample/SampleAttachments.h"
#include "hosts/device/sample/SampleCalls.h"
#include "hosts/device/sample/SampleScript.h"
#include "hosts/device/sample/SampleTime.h"
#include "hosts/device/sample/SeededRandom.h"
#include "hosts/device/sample/StoreWriter.h"
#include "platform/foundation/Utf8.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

namespace fs = std::filesystem;

namespace {

constexpr std::string_view kOwnAddress = "P:+15550100100";
constexpr std::string_view kSampleMark = "_ChatsumSample";
constexpr std::string_view kAttachmentMark = "\xef\xbf\xbc";  // U+FFFC, one for each attachment in the text
constexpr std::string_view kCardMark = "\xef\xbf\xbd";        // U+FFFD, the text of an app's card
constexpr std::string_view kBalloonsEffect = "com.apple.messages.effect.CKHappyBirthdayEffect";
constexpr std::string_view kLinkBundle = "com.apple.messages.URLBalloonProvider";
constexpr std::string_view kPollsBundle =
    "com.apple.messages.MSMessageExtensionBalloonPlugin:0000000000:com.example.polls";
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

// What was written before that moment came onto the device with a backup, after newer messages had arrived: its rows
// follow those of the newer ones.
constexpr std::string_view kRestoredBefore = "2021-03-01 00:00";

struct AttachedFile {
  std::string guid;
  std::string_view name;
  std::string path;  // below the folder of the attachments
};

// One line of the script with what a row needs to know.
struct Event {
  const SampleChat* chat;
  const SampleLine* line;
  std::int64_t chatRow;
  std::int64_t handleRow;  // 0 for the owner's own rows in a group
  std::int64_t date;       // nanoseconds since 2001
  std::string guid;
  std::string target;  // the guid of the line before, for a reaction or a reply
  std::vector<AttachedFile> files;
};

// What the device wrote down of a voice message.
std::string_view spokenIn(std::string_view file) {
  return file == "Audio Message.caf" ? "Happy birthday to you, dear Casey, and one more cake for all of us" : "";
}

int reactionType(std::string_view sentence) {
  if (sentence.starts_with("Liked")) return 2001;
  if (sentence.starts_with("Laughed")) return 2003;
  return 2000;
}

class SampleWriter {
 public:
  explicit SampleWriter(const fs::path& root) : root_(root) {}

  std::optional<std::string> write() {
    if (auto failure = writeContacts()) return failure;
    if (auto failure = writeCalls()) return failure;
    StoreWriter store(messageStorePath(root_), Generation::ios17);
    store.setOwnAddress(kOwnAddress);
    store.setProperty(kSampleMark, "1");
    addHandles(store);
    for (const auto& circle : {sampleFriends(), sampleGroups(), sampleLanguages(), sampleOthers()}) {
      chats_.insert(chats_.end(), circle.begin(), circle.end());
    }
    for (const SampleChat& chat : chats_) addChat(store, chat);
    putInOrderOfRows();
    for (const Event& event : events_) {
      if (auto failure = addEvent(store, event)) return failure;
    }
    return store.finish();
  }

  // Takes back the attachments of a device that could not be completed.
  void undo() const {
    for (const fs::path& path : written_) {
      std::error_code ignored;
      fs::remove(path, ignored);
    }
  }

 private:
  std::optional<std::string> writeContacts() {
    ContactWriter contacts(addressBookPath(root_));
    writeSampleContacts(contacts);
    auto failure = contacts.finish();
    if (!failure) written_.push_back(addressBookPath(root_));
    return failure;
  }

  std::optional<std::string> writeCalls() {
    const fs::path list = callListPath(root_), temporary = temporaryCallListPath(root_);
    CallWriter calls(list);
    writeSampleCalls(calls);
    if (auto failure = calls.finish()) return failure;
    written_.push_back(list);
    CallWriter temporaryCalls(temporary);
    writeTemporarySampleCalls(temporaryCalls);
    if (auto failure = temporaryCalls.finish()) return failure;
    written_.push_back(temporary);
    return std::nullopt;
  }

  void addHandles(StoreWriter& store) {
    for (const SampleHandle& handle : sampleHandles()) {
      handles_[{handle.id, handle.service}] = store.addHandle({handle.id, handle.service, handle.personCentricId});
    }
  }

  std::int64_t handleRow(std::string_view id, std::string_view service) const {
    const auto found = handles_.find({id, service});
    return found == handles_.end() ? 0 : found->second;
  }

  void addChat(StoreWriter& store, const SampleChat& chat) {
    std::vector<std::int64_t> members;
    for (std::string_view member : chat.members) {
      if (member != chat.leaver) members.push_back(handleRow(member, chat.service));
    }
    const std::int64_t row =
        store.addChat({chat.guid, chat.identifier, chat.service, chat.group, chat.displayName, members});
    for (const SampleScene& scene : chat.scenes) addScene(chat, scene, row);
  }

  void addScene(const SampleChat& chat, const SampleScene& scene, std::int64_t chatRow) {
    std::int64_t date = secondsSince2001(scene.start) * kNanosecondsPerSecond;
    for (const SampleLine& line : scene.lines) {
      if ((line.traits & kSameMoment) == 0) {
        // Nobody writes on the full minute.
        const auto passed = line.minutes * 60 + 5 + static_cast<std::int64_t>(random_.below(40));
        date += passed * kNanosecondsPerSecond + static_cast<std::int64_t>(random_.below(1000)) * 1'000'000;
      }
      Event event{&chat, &line, chatRow, 0, date, random_.guid(), {}, {}};
      if (line.from > 0) {
        event.handleRow = handleRow(chat.members[static_cast<std::size_t>(line.from - 1)], chat.service);
      } else if (!chat.group) {
        event.handleRow = handleRow(chat.members.front(), chat.service);
      }
      if ((line.traits & (kReaction | kReply)) != 0 && !events_.empty()) event.target = events_.back().guid;
      for (std::string_view name : line.files) event.files.push_back(placeFile(name));
      events_.push_back(std::move(event));
    }
  }

  AttachedFile placeFile(std::string_view name) {
    const unsigned number = fileCount_++;
    const std::string guid = random_.guid();
    const std::string folder = fmt::format("{:02x}/{:02}", (0xab + 37 * number) % 256, (1 + 5 * number) % 16);
    return {guid, name, fmt::format("{}/{}/{}", folder, guid, name)};
  }

  void putInOrderOfRows() {
    const std::int64_t border = secondsSince2001(kRestoredBefore) * kNanosecondsPerSecond;
    std::stable_sort(events_.begin(), events_.end(), [border](const Event& left, const Event& right) {
      return std::pair(left.date < border, left.date) < std::pair(right.date < border, right.date);
    });
  }

  std::optional<std::string> addEvent(StoreWriter& store, const Event& event) {
    std::vector<std::int64_t> attachments;
    for (const AttachedFile& file : event.files) {
      if (auto failure = addFile(store, event, file, attachments)) return failure;
    }
    const SampleLine& line = *event.line;
    std::string text;
    std::vector<BodyRun> runs;
    for (const AttachedFile& file : event.files) {
      text += kAttachmentMark;
      runs.push_back({1, static_cast<std::int64_t>(runs.size()), file.guid, std::string(spokenIn(file.name))});
    }
    text += line.text;
    if (!line.text.empty())
      runs.push_back({utf8::utf16Length(line.text), static_cast<std::int64_t>(runs.size()), {}, {}});
    const std::string body = encodeBody(text, runs);

    MessageRow row;
    row.guid = event.guid;
    row.date = event.date;
    row.handle = event.handleRow;
    row.fromMe = line.from == 0;
    row.service = event.chat->service;
    row.chats = std::span(&event.chatRow, 1);
    row.attachments = attachments;
    if (event.chat->group) row.roomName = event.chat->identifier;
    if ((line.traits & kMemberLeft) != 0) {
      row.itemType = 3;
    } else if ((line.traits & kRenamed) != 0) {
      row.itemType = 2;
      row.groupTitle = line.text;
    } else if ((line.traits & kNoContent) == 0) {
      if ((line.traits & kBodyOnly) == 0) row.text = text;
      row.attributedBody = body;
    }
    if ((line.traits & kNotSent) != 0) row.error = 22;
    const std::string target = "p:0/" + event.target;
    if ((line.traits & kReaction) != 0) {
      row.associatedMessageGuid = target;
      row.associatedMessageType = reactionType(line.text);
    }
    if ((line.traits & kReply) != 0) row.threadOriginatorGuid = event.target;
    if ((line.traits & kBalloons) != 0) row.effect = kBalloonsEffect;
    addUnusual(store, line, row);
    return std::nullopt;
  }

  // What is more than a text: edits, previews, cards.
  void addUnusual(StoreWriter& store, const SampleLine& line, MessageRow row) {
    constexpr std::int64_t kLater = 90;
    const auto since2001 = static_cast<double>(row.date / kNanosecondsPerSecond);
    std::string history, payload;
    if ((line.traits & kEdited) != 0) {
      history = messageHistory({{0, {{line.extra, since2001}, {line.text, since2001 + kLater}}}}, {});
    } else if ((line.traits & kUnsent) != 0) {
      history = messageHistory({}, {0});
      row.text = row.attributedBody = std::nullopt;
    }
    if (!history.empty()) {
      row.summaryInfo = history;
      row.dateEdited = row.date + kLater * kNanosecondsPerSecond;
    }
    if ((line.traits & kLink) != 0) {
      payload = linkPreview(line.text, line.extra);
      row.balloonBundle = kLinkBundle;
    } else if ((line.traits & kCard) != 0) {
      payload = appCard(line.extra, line.text, "");
      row.balloonBundle = kPollsBundle;
      row.text = kCardMark;
      row.attributedBody = std::nullopt;
    }
    row.payload = payload;
    store.addMessage(row);
  }

  std::optional<std::string> addFile(StoreWriter& store, const Event& event, const AttachedFile& file,
                                     std::vector<std::int64_t>& rows) {
    const SampleAttachment content = sampleAttachment(file.name);
    const std::string filename = "~/Library/SMS/Attachments/" + file.path;
    AttachmentRow row;
    row.guid = file.guid;
    if (content.downloaded) row.filename = filename;
    row.transferName = file.name;
    row.uti = content.uti;
    row.mimeType = content.mimeType;
    row.totalBytes = content.bytes ? static_cast<std::int64_t>(content.bytes->size()) : 148'213;
    row.createdDate = event.date / kNanosecondsPerSecond;
    row.outgoing = event.line->from == 0;
    rows.push_back(store.addAttachment(row));
    if (!content.bytes) return std::nullopt;

    const fs::path path = messageStorePath(root_).parent_path() / "Attachments" / file.path;
    std::error_code error;
    fs::create_directories(path.parent_path(), error);
    std::ofstream stream(path, std::ios::binary | std::ios::trunc);
    written_.push_back(path);
    stream << *content.bytes;
    stream.close();
    if (!stream) return say("The file {0} could not be written: is there room and a right to write?", path.string());
    return std::nullopt;
  }

  fs::path root_;
  SeededRandom random_{20010101};
  std::map<std::pair<std::string_view, std::string_view>, std::int64_t> handles_;
  std::vector<SampleChat> chats_;
  std::vector<Event> events_;
  std::vector<fs::path> written_;
  unsigned fileCount_ = 0;
};

// Whether the store is a sample of ours. It is read without a trace: it may be somebody's evidence.
bool isSample(const fs::path& store) {
  sqlite3* handle = nullptr;
  std::string name = "file:";
  for (char character : store.string()) {
    if (character == '?' || character == '#' || character == '%') {
      name += fmt::format("%{:02X}", static_cast<unsigned>(character));
    } else {
      name += character;
    }
  }
  name += "?immutable=1";
  const int result = sqlite3_open_v2(name.c_str(), &handle, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
  const sqlite::Connection connection(handle);
  if (result != SQLITE_OK) return false;
  const sqlite::Statement statement(handle, "SELECT 1 FROM _SqliteDatabaseProperties WHERE key = ?");
  if (!statement) return false;
  statement.bind(1, kSampleMark);
  return statement.step() == SQLITE_ROW;
}

}  // namespace

std::optional<std::string> writeSampleDevice(const fs::path& root) {
  if (holdsDevice(root) && !isSample(messageStorePath(root))) return holdsDeviceSentence(root);
  SampleWriter writer(root);
  if (auto failure = writer.write()) {
    writer.undo();
    return failure;
  }
  linkUserFolder(root);
  return std::nullopt;
}

}  // namespace chatsum::device
