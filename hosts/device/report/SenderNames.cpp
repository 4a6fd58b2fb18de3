#include "hosts/device/report/SenderNames.h"

#include <optional>
#include <span>
#include <string_view>
#include <utility>

#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/LongerRecords.h"
#include "hosts/device/words/StoreLookUps.h"
#include "platform/interfaces/Platform.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

/// Whether rows tell of something that the owner did: such a row names nobody, where what others did names them.
class OwnEvents {
 public:
  explicit OwnEvents(const sqlite::Connection& store) {
    StoreColumns columns(store.get());
    if (!columns.has("message", "item_type") || !columns.has("message", "handle_id")) return;
    guids_.emplace(store);
    kind_ = sqlite::Statement(store.get(),
                              "SELECT 1 FROM main.message WHERE ROWID = ?1 AND item_type <> 0 AND "
                              "coalesce(handle_id, 0) <= 0");
  }

  [[nodiscard]] bool contain(std::string_view guid) const {
    const auto row = kind_ ? guids_->find(guid) : std::nullopt;
    if (!row) return false;
    kind_.reset();
    kind_.bind(1, *row);
    return kind_.step() == SQLITE_ROW;
  }

 private:
  std::optional<MessageGuids> guids_;
  sqlite::Statement kind_;
};

}  // namespace

void nameSenders(Array& records, const sqlite::Connection& store, const std::string& owner) {
  RecordField nameField("Name"), guidField("guid");
  LongerRecords longer({"Name"});
  std::optional<OwnEvents> events;
  Value unknown, own;
  for (std::size_t row = 0; row < records.size(); ++row) {
    const Record& record = *std::as_const(records)[row].asRecord();
    const Value* name = nameField.find(record);
    if (name && name->asString() && !name->asString()->empty()) continue;
    if (!events) {
      events.emplace(store);
      unknown = platform::current().mainBundle.localizedString("Unknown");
      own = owner;
    }
    const Value* guid = guidField.find(record);
    const bool isOwn = guid && guid->asString() && events->contain(guid->asString()->view());
    const Value& sender = isOwn ? own : unknown;
    Record named = name ? record : longer.with(record, std::span(&sender, 1));
    if (name) named.set("Name", sender);
    records.mutableItems()[row] = Value(std::move(named));
  }
}

}  // namespace chatsum::device
