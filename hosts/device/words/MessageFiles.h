// The attachments of messages: which of them people sent, what they are called, and why some are not there. Belongs to
// one connection and its thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

enum class FileKind {
  kShown,    ///< a file that gets a row of its own
  kMissing,  ///< one that is not on the device, told in the message's words
  kSticker,
  kPreview,  ///< a picture of a link preview or an app card, which nobody sent
};

struct MessageFile {
  std::int64_t row = 0;  ///< ROWID of the attachment
  FileKind kind = FileKind::kShown;
  std::string guid;
  std::string name;  ///< fit to stand in a line; empty when there is none
  bool isAudio = false;
  bool isKeptElsewhere = false;  ///< of a missing one: it lies with the service, else it never came
};

class MessageFiles {
 public:
  explicit MessageFiles(const sqlite::Connection& store);

  /// The attachments of a message (ROWID), in the order of the store.
  [[nodiscard]] std::vector<MessageFile> of(std::int64_t message) const;
  /// In brackets, as it stands in the message's words: "[photo.jpeg]", "[attachment photo.heic: not on this device,
  /// never downloaded]". Empty for previews.
  [[nodiscard]] static std::string inWords(const MessageFile& file);

 private:
  sqlite::Statement files_;
};

}  // namespace chatsum::device
