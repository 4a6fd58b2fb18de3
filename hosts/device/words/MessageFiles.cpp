#include "hosts/device/words/MessageFiles.h"

#include <string_view>

#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/ShownWords.h"
#include "hosts/device/words/StoreLookUps.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kPreviewEnd = ".pluginPayloadAttachment";
constexpr std::string_view kVoiceType = "com.apple.coreaudio-format";

enum Column { kRow, kFilename, kName, kGuid, kSticker, kHidden, kDescription, kSyncState, kType };

std::string_view lastComponent(std::string_view path) {
  while (path.ends_with('/')) path.remove_suffix(1);
  return path.substr(path.rfind('/') + 1);
}

std::string filesSql(const sqlite::Connection& store) {
  StoreColumns columns(store.get());
  const auto own = [&](const char* column) {
    return columns.has("attachment", column) ? ", a." + std::string(column) : std::string(", NULL");
  };
  std::string join = "main.message_attachment_join";
  if (!hasIndexOn(store, "message_attachment_join", "message_id") &&
      store.execute("CREATE TEMP TABLE IF NOT EXISTS chatsum_files AS SELECT message_id, attachment_id FROM "
                    "main.message_attachment_join;"
                    "CREATE INDEX IF NOT EXISTS temp.chatsum_files_by_message ON chatsum_files (message_id)")) {
    join = "temp.chatsum_files";
  }
  const std::string attachment =
      columns.has("attachment") ? " LEFT JOIN main.attachment a ON a.ROWID = mj.attachment_id" : "";
  return "SELECT mj.attachment_id" + own("filename") + own("transfer_name") + own("guid") + own("is_sticker") +
         own("hide_attachment") + own("emoji_image_short_description") + own("ck_sync_state") + own("uti") + " FROM " +
         join + " mj" + attachment + " WHERE mj.message_id = ?1";
}

MessageFile fileOf(const sqlite::Statement& row) {
  MessageFile file;
  file.row = row.integer(kRow);
  file.guid = row.text(kGuid);
  const std::string_view filename = row.text(kFilename);
  file.name = nameInWords(row.text(kName).empty() ? lastComponent(filename) : row.text(kName));
  file.isAudio = row.text(kType) == kVoiceType || file.name.ends_with(".caf");
  if (row.integer(kHidden) != 0 || lastComponent(filename).ends_with(kPreviewEnd) ||
      row.text(kName).ends_with(kPreviewEnd)) {
    file.kind = FileKind::kPreview;
  } else if (row.integer(kSticker) != 0) {
    file.kind = FileKind::kSticker;
    file.name = nameInWords(row.text(kDescription));
  } else if (filename.empty()) {
    file.kind = FileKind::kMissing;
    file.isKeptElsewhere = row.integer(kSyncState) != 0;
  }
  return file;
}

}  // namespace

MessageFiles::MessageFiles(const sqlite::Connection& store) {
  const std::string sql = filesSql(store);
  files_ = sqlite::Statement(store.get(), sql + " ORDER BY mj.ROWID");
  if (!files_) files_ = sqlite::Statement(store.get(), sql);  // a table without row numbers
}

std::vector<MessageFile> MessageFiles::of(std::int64_t message) const {
  std::vector<MessageFile> files;
  if (!files_) return files;
  files_.reset();
  files_.bind(1, message);
  while (files_.step() == SQLITE_ROW) files.push_back(fileOf(files_));
  files_.reset();
  return files;
}

std::string MessageFiles::inWords(const MessageFile& file) {
  const std::string& name = file.name;
  switch (file.kind) {
    case FileKind::kShown:
      return name.empty() ? say("[attachment]") : "[" + name + "]";
    case FileKind::kMissing:
      if (name.empty()) {
        return file.isKeptElsewhere ? say("[attachment: not on this device, kept in iCloud]")
                                    : say("[attachment: not on this device, never downloaded]");
      }
      return file.isKeptElsewhere ? say("[attachment {0}: not on this device, kept in iCloud]", name)
                                  : say("[attachment {0}: not on this device, never downloaded]", name);
    case FileKind::kSticker:
      return name.empty() ? say("[sticker]") : say("[sticker: {0}]", name);
    case FileKind::kPreview:
      break;
  }
  return "";
}

}  // namespace chatsum::device
