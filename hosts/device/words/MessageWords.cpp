#include "hosts/device/words/MessageWords.h"

#include <algorithm>
#include <utility>

#include "hosts/device/body/BodyStretches.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/words/AppCards.h"
#include "hosts/device/words/Effects.h"
#include "hosts/device/words/MarkedText.h"
#include "hosts/device/words/MessageHistory.h"
#include "hosts/device/words/ShownWords.h"
#include "hosts/device/words/SystemEvents.h"

namespace chatsum::device {
namespace {

using M = StoredMessage;

constexpr std::size_t kLongestQuote = 60, kLongestSubject = 300, kLongestVersion = 20'000, kMostVersions = 20;
constexpr std::size_t kMostDeletedParts = 20;
constexpr std::int64_t kScheduled = 2;
constexpr std::string_view kFileMark = "\xEF\xBF\xBC";

bool isShown(const MessageFile& file) { return file.kind == FileKind::kShown; }
bool isPreview(const MessageFile& file) { return file.kind == FileKind::kPreview; }

std::size_t countMarks(std::string_view text) {
  std::size_t count = 0;
  for (std::size_t at = text.find(kFileMark); at != std::string_view::npos; at = text.find(kFileMark, at + 1)) ++count;
  return count;
}

std::string beforeInWords(const std::vector<std::string>& earlier) {
  std::string words;
  for (std::size_t i = 0; i < earlier.size() && i < kMostVersions; ++i) {
    words += (i == 0 ? "" : "; ") + quoted(earlier[i], kLongestVersion);
  }
  if (words.empty()) return words;
  if (earlier.size() > kMostVersions) words += "; " + say("and {0} more", earlier.size() - kMostVersions);
  return "; " + say("before: {0}", words);
}

/// The present text of a message whose text stands only in its history.
std::string lastVersions(const MessageHistory& history) {
  std::string text;
  for (const MessageHistory::Part& part : history.edited) {
    const bool isUnsent = std::binary_search(history.unsent.begin(), history.unsent.end(), part.number);
    if (!isUnsent && !part.versions.empty()) addPiece(text, part.versions.back());
  }
  return text;
}

std::int64_t nanoseconds(double since2001) {
  constexpr double kPerSecond = 1e9, kMost = 9e9;
  return since2001 > 0 && since2001 < kMost ? static_cast<std::int64_t>(since2001 * kPerSecond) : 0;
}

std::string editedInWords(std::int64_t stored) {
  const std::string minute = minuteOfStored(stored);
  return minute.empty() ? say("edited") : say("edited {0}", minute);
}

std::string deletedPartInWords(std::int64_t stored) {
  const std::string minute = minuteOfStored(stored);
  return minute.empty() ? say("deleted part") : say("deleted part {0}", minute);
}

std::string deletedInWords(std::int64_t stored) {
  const std::string minute = minuteOfStored(stored);
  return minute.empty() ? say("deleted") : say("deleted {0}", minute);
}

}  // namespace

MessageWords::MessageWords(sqlite::Connection store, std::shared_ptr<const ReadingFacts> facts,
                           std::shared_ptr<BodyCounters> counters)
    : store_(std::move(store)),
      facts_(std::move(facts)),
      counters_(counters ? std::move(counters) : std::make_shared<BodyCounters>()),
      guids_(store_),
      attachments_(store_),
      stored_(store_),
      quoted_(store_) {}

std::optional<std::string_view> MessageWords::textOf(std::int64_t message) {
  if (current_ != message) compose(message);
  if (hasText_) return line_;
  if (silence_ == Silence::kWithoutContent) ++silent_.withoutContent;
  if (silence_ == Silence::kUnreadableBody) ++silent_.unreadableBody;
  return std::nullopt;
}

const std::vector<std::optional<std::int64_t>>& MessageWords::rowsOf(std::int64_t message) {
  if (current_ != message) compose(message);
  return rows_;
}

void MessageWords::compose(std::int64_t message) {
  current_ = std::nullopt;  // stays so when memory runs out on the way
  line_.clear();
  rows_.clear();
  files_.clear();
  transcriptions_.clear();
  hasText_ = saysMore_ = false;
  silence_ = Silence::kWithoutContent;
  const bool isThere = stored_.goTo(message);
  if (facts_->withFiles.contains(message)) files_ = attachments_.of(message);
  if (facts_->reactions.fateOf(message) != Reactions::Fate::kNone) {
    silence_ = Silence::kReaction;
  } else if (isThere) {
    if (stored_.integer(M::kItemType) != 0) {
      composeEvent();
      addWhereabouts(line_, message);
      addReactions(line_, message, "");
    } else {
      composeMessage(message);
    }
    if (std::any_of(files_.begin(), files_.end(), isShown)) {
      if (saysMore_) rows_.emplace_back(std::nullopt);
      for (const MessageFile& file : files_) {
        if (isShown(file)) rows_.emplace_back(file.row);
      }
    }
  }
  current_ = message;
}

void MessageWords::composeEvent() {
  line_ = eventOf(stored_);
  addPiece(line_, typedText(stored_.words().text));
  replaceNuls(line_);
  hasText_ = saysMore_ = true;
}

std::string MessageWords::eventOf(const StoredMessage& stored) const {
  const std::int64_t actor = stored.integer(M::kHandle), other = stored.integer(M::kOtherHandle);
  SystemEvent event;
  event.itemType = stored.integer(M::kItemType);
  event.action = stored.integer(M::kGroupAction);
  if (other > 0) event.other = facts_->people.behind(other).name;
  event.isOtherTheActor = other > 0 && other == actor;
  event.title = stored.text(M::kGroupTitle);
  event.shareStatus = stored.integer(M::kShareStatus);
  return eventInWords(event);
}

void MessageWords::countBody(const StoredMessage::Words& words) {
  if (words.isFromBody) counters_->add(words.body);
}

void MessageWords::composeMessage(std::int64_t message) {
  StoredMessage::Words words = stored_.words();
  countBody(words);
  const bool isCard = !stored_.text(M::kBundle).empty();
  if (words.text.empty() && !stored_.blob(M::kSummary).empty()) {
    words.text = lastVersions(readHistory(stored_.blob(M::kSummary)));
    words.isThere = words.isThere || !words.text.empty();
  }
  std::string text = isCard ? withoutCardMarks(words.text) : words.text;
  readBody();

  std::string before, behind;
  addReply(before);
  addSubject(before);
  if (isCard) addCard(behind, text);
  addTranscription(behind);
  addHistory(behind, text, words.isThere);
  addSending(behind);
  if (!words.isThere && behind.empty() && isReactionType(stored_.integer(M::kReactionType))) {
    behind = loneReactionInWords(stored_.integer(M::kReactionType), stored_.text(M::kReactionEmoji));
  }
  addReactions(behind, message, text);
  addWhereabouts(behind, message);

  const bool needsTelling = countMarks(text) > files_.size() ||
                            std::any_of(files_.begin(), files_.end(),
                                        [](const MessageFile& file) { return !isShown(file) && !isPreview(file); });
  const bool hasOwnWords = holdsWords(text);
  saysMore_ = hasOwnWords || needsTelling || !before.empty() || !behind.empty();
  hasText_ = words.isThere || saysMore_ || !files_.empty();
  if (before.empty() && behind.empty() && files_.empty() && !needsTelling) {
    line_ = typedText(text);  // as it was written
  } else if (saysMore_) {
    line_ = std::move(before);
    addText(line_, text);
    addPiece(line_, behind);
  } else if (std::none_of(files_.begin(), files_.end(), isShown) && !files_.empty()) {
    line_ = say("[link preview]");  // nothing is left of it but its picture
  }
  replaceNuls(line_);
  if (!hasText_ && words.isFromBody) silence_ = Silence::kUnreadableBody;
}

// The files in the order of the text, and what was said in those that are spoken.
void MessageWords::readBody() {
  const bool isSpoken = std::any_of(files_.begin(), files_.end(), [](const auto& file) { return file.isAudio; });
  if (files_.size() < 2 && !isSpoken) return;
  std::vector<std::string> guids;
  for (BodyStretch& stretch : decodeStretches(stored_.blob(M::kBody))) {
    if (!stretch.transcription.empty()) transcriptions_.push_back(std::move(stretch.transcription));
    if (!stretch.fileGuid.empty()) guids.push_back(std::move(stretch.fileGuid));
  }
  files_ = inOrderOfMarks(std::move(files_), guids);
}

void MessageWords::addReply(std::string& line) {
  const std::string_view thread = stored_.text(M::kThread);
  if (thread.empty()) return;
  const auto target = guids_.find(thread);
  addPiece(line, target ? originOf(*target) : say("[reply to a message that is not there]"));
}

const std::string& MessageWords::originOf(std::int64_t message) {
  const auto known = origins_.find(message);
  if (known != origins_.end()) return known->second;
  quoted_.goTo(message);
  const People& people = facts_->people;
  const std::string name = people.sender(quoted_.integer(M::kFromMe) != 0, quoted_.integer(M::kHandle)).name;
  const std::string quote = quoteOf(message);
  std::string words = quote.empty() ? say("[reply to {0}]", name) : say("[reply to {0}: {1}]", name, quote);
  return origins_.emplace(message, std::move(words)).first->second;
}

std::string MessageWords::quoteOf(std::int64_t message) {
  if (quoted_.integer(M::kItemType) != 0) return eventOf(quoted_);
  const StoredMessage::Words words = quoted_.words();
  std::string text = withoutCardMarks(words.text);
  if (text.find(kFileMark) != std::string::npos || (text.empty() && facts_->withFiles.contains(message))) {
    std::vector<MessageFile> files = attachments_.of(message);
    const std::string line = withFileNames(text.empty() ? std::string(kFileMark) : text, files, typedInBrackets);
    if (!line.empty()) return quotedDoubled(line, kLongestQuote);
  } else if (holdsWords(text)) {
    return quoted(text, kLongestQuote);
  }
  const std::string_view bundle = quoted_.text(M::kBundle);
  return bundle.empty() ? "" : cardInWords(bundle, quoted_.blob(M::kPayload), "");
}

void MessageWords::addSubject(std::string& line) {
  const std::string_view subject = stored_.text(M::kSubject);
  if (holdsWords(subject)) addPiece(line, say("[subject: {0}]", quoted(subject, kLongestSubject)));
}

void MessageWords::addText(std::string& line, const std::string& text) {
  addPiece(line, withFileNames(text, files_, typedText));
}

void MessageWords::addCard(std::string& line, const std::string& text) {
  const std::string_view bundle = stored_.text(M::kBundle);
  addPiece(line, cardInWords(bundle, stored_.blob(M::kPayload), text));
}

void MessageWords::addTranscription(std::string& line) {
  for (const std::string& spoken : transcriptions_) addPiece(line, say("[said: {0}]", quoted(spoken, kLongestVersion)));
}

void MessageWords::addHistory(std::string& line, const std::string& text, bool hasText) {
  const std::int64_t edited = stored_.integer(M::kEdited), retracted = stored_.integer(M::kRetracted);
  if (edited == 0 && retracted == 0 && (hasText || stored_.blob(M::kSummary).empty())) return;
  const MessageHistory history = readHistory(stored_.blob(M::kSummary));
  const std::string before = beforeInWords(earlierTexts(history, text));
  const bool isUnsent = !history.unsent.empty() || retracted != 0;
  if (isUnsent && !holdsWords(text) && files_.empty())
    return addPiece(line, "[" + say("unsent message") + before + "]");
  if (!history.edited.empty() || (edited != 0 && !isUnsent)) {
    addPiece(line, "[" + editedInWords(edited != 0 ? edited : nanoseconds(history.lastEdit)) + before + "]");
  }
  if (isUnsent) {
    const std::size_t parts = std::max<std::size_t>(1, history.unsent.size());
    addPiece(line, sayCounted(parts, "[a part was unsent]", "[{0} parts were unsent]"));
  }
}

void MessageWords::addSending(std::string& line) {
  addPiece(line, effectInWords(stored_.text(M::kEffect)));
  if (stored_.integer(M::kScheduleType) == kScheduled && stored_.integer(M::kScheduleState) != 0) {
    addPiece(line, say("[scheduled]"));
  }
  const std::int64_t error = stored_.integer(M::kError);
  if (error == 0) return;
  addPiece(line, stored_.integer(M::kFromMe) != 0 ? say("[not sent, error {0}]", error) : say("[error {0}]", error));
}

void MessageWords::addReactions(std::string& line, std::int64_t message, const std::string& text) {
  const auto reactions = facts_->reactions.on(message);
  if (reactions.empty()) return;
  const MessagePieces pieces = piecesOf(text, files_.size());
  addPiece(line, reactionsInWords(reactions, [&](std::int64_t part) -> std::string {
             if (part < 0 || pieces.count < 2 || static_cast<std::size_t>(part) >= pieces.count) return "";
             const auto file = pieces.files[static_cast<std::size_t>(part)];
             return file ? files_[*file].name : "";
           }));
}

void MessageWords::addWhereabouts(std::string& line, std::int64_t message) {
  const auto parts = facts_->deletedParts.find(message);
  for (std::size_t i = 0; parts != facts_->deletedParts.end() && i < parts->second.size() && i < kMostDeletedParts;
       ++i) {
    const ReadingFacts::DeletedPart& part = parts->second[i];
    addPiece(line, "[" + deletedPartInWords(part.date) +
                       (holdsWords(part.text) ? ": " + quoted(part.text, kLongestVersion) : "") + "]");
  }
  const auto deleted = facts_->deleted.find(message);
  if (deleted != facts_->deleted.end()) addPiece(line, "[" + deletedInWords(deleted->second) + "]");
  const auto& orphans = facts_->orphans;
  if (std::binary_search(orphans.begin(), orphans.end(), message)) addPiece(line, say("[in no conversation]"));
}

}  // namespace chatsum::device
