#include "hosts/device/words/StoredMessage.h"

#include <array>
#include <utility>

#include "hosts/device/stores/StoreColumns.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

// In the order of the enumeration.
constexpr std::array<std::string_view, 22> kColumns = {"text",
                                                       "attributedBody",
                                                       "handle_id",
                                                       "is_from_me",
                                                       "item_type",
                                                       "group_action_type",
                                                       "other_handle",
                                                       "group_title",
                                                       "share_status",
                                                       "associated_message_type",
                                                       "associated_message_emoji",
                                                       "thread_originator_guid",
                                                       "expressive_send_style_id",
                                                       "balloon_bundle_id",
                                                       "payload_data",
                                                       "message_summary_info",
                                                       "date_edited",
                                                       "date_retracted",
                                                       "error",
                                                       "subject",
                                                       "schedule_type",
                                                       "schedule_state"};

std::string rowSql(const sqlite::Connection& store) {
  StoreColumns columns(store.get());
  std::string sql;
  for (const std::string_view column : kColumns) {
    sql += sql.empty() ? "SELECT " : ", ";
    sql += columns.has("message", column) ? column : "NULL";
  }
  return sql + " FROM main.message WHERE ROWID = ?1";
}

}  // namespace

StoredMessage::StoredMessage(const sqlite::Connection& store) : row_(store.get(), rowSql(store)) {}

bool StoredMessage::goTo(std::int64_t row) {
  isThere_ = false;
  if (!row_) return false;
  row_.reset();
  row_.bind(1, row);
  isThere_ = row_.step() == SQLITE_ROW;
  return isThere_;
}

StoredMessage::Words StoredMessage::words() const {
  Words words;
  if (!isThere_) return words;
  words.text = utf8::repaired(row_.text(kText));
  const std::string_view blob = row_.blob(kBody);
  if (!words.text.empty() || blob.empty()) {
    words.isThere = !row_.isNull(kText);
    return words;
  }
  words.isFromBody = true;
  words.body = decodeBody(blob);
  words.isThere = words.body.status != BodyStatus::kUndecodable;
  words.text = std::exchange(words.body.text, {});
  return words;
}

}  // namespace chatsum::device
