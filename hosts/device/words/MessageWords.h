// Says what a message is, in words: what was written, and in square brackets what else there is to it. It has a
// connection of its own, so that asking does not disturb the statement that serves the rows. One per connection that
// serves rows; one thread at a time.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "hosts/device/stores/MessageView.h"
#include "hosts/device/words/MessageFiles.h"
#include "hosts/device/words/ReadingFacts.h"
#include "hosts/device/words/StoreLookUps.h"
#include "hosts/device/words/StoredMessage.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

/// Rows that were served without a text, by reason, but for reactions; may be read from any thread.
struct SilentRows {
  std::atomic<std::uint64_t> withoutContent = 0;  ///< nothing at all is there to be said
  std::atomic<std::uint64_t> unreadableBody = 0;  ///< a body in which no text was found
};

class MessageWords {
 public:
  /// `counters` counts the bodies that are read; may be null.
  MessageWords(sqlite::Connection store, std::shared_ptr<const ReadingFacts> facts,
               std::shared_ptr<BodyCounters> counters);

  /// The text of the rows of a message (ROWID); none when it has none, which is counted. Every message with attachments
  /// has one, but for reactions. Valid until the next question.
  [[nodiscard]] std::optional<std::string_view> textOf(std::int64_t message);

  /// The rows of a message that has attachments: none stands for one with its words, a number for the attachment of
  /// that ROWID. Empty when one row with the words is all there is. Valid until the next question.
  [[nodiscard]] const std::vector<std::optional<std::int64_t>>& rowsOf(std::int64_t message);

  /// The attachments of the message last asked for.
  [[nodiscard]] const std::vector<MessageFile>& files() const { return files_; }

  [[nodiscard]] const ReadingFacts& facts() const { return *facts_; }
  [[nodiscard]] const SilentRows& silent() const { return silent_; }

 private:
  enum class Silence { kWithoutContent, kUnreadableBody, kReaction };

  void compose(std::int64_t message);
  void composeMessage(std::int64_t message);
  void composeEvent();
  void readBody();
  void addReply(std::string& line);
  void addSubject(std::string& line);
  void addText(std::string& line, const std::string& text);
  void addCard(std::string& line, const std::string& text);
  void addTranscription(std::string& line);
  void addHistory(std::string& line, const std::string& text, bool hasText);
  void addSending(std::string& line);
  void addReactions(std::string& line, std::int64_t message, const std::string& text);
  void addWhereabouts(std::string& line, std::int64_t message);
  /// What a reply says of the message it answers.
  [[nodiscard]] const std::string& originOf(std::int64_t message);
  [[nodiscard]] std::string quoteOf(std::int64_t message);
  [[nodiscard]] std::string eventOf(const StoredMessage& stored) const;
  void countBody(const StoredMessage::Words& words);

  sqlite::Connection store_;
  std::shared_ptr<const ReadingFacts> facts_;
  std::shared_ptr<BodyCounters> counters_;
  MessageGuids guids_;
  MessageFiles attachments_;
  StoredMessage stored_, quoted_;
  SilentRows silent_;
  std::unordered_map<std::int64_t, std::string> origins_;  // a thread has one for all its replies

  // Of the message that was last asked for.
  std::optional<std::int64_t> current_;
  std::string line_;
  bool hasText_ = false, saysMore_ = false;
  Silence silence_ = Silence::kWithoutContent;
  std::vector<MessageFile> files_;
  std::vector<std::string> transcriptions_;
  std::vector<std::optional<std::int64_t>> rows_;
};

}  // namespace chatsum::device
