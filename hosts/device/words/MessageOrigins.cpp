#include "hosts/device/words/MessageOrigins.h"

#include <exception>
#include <utility>

#include "hosts/device/stores/StoreColumns.h"
#include "hosts/device/words/LongerRecords.h"
#include "platform/foundation/Utf8.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {
namespace {

constexpr const char* kFlagKey = "cache_has_attachments";

using SharedOrigins = std::shared_ptr<MessageOrigins>;

/// As the library has texts: up to a NUL, valid UTF-8. None for an empty one.
Value shown(std::string_view text) {
  text = text.substr(0, text.find('\0'));
  return text.empty() ? Value() : Value(utf8::repaired(text));
}

// chatsum_origin(handle_id, service, cache_has_attachments)
void originFunction(sqlite3_context* context, int /*argumentCount*/, sqlite3_value** arguments) {
  auto& origins = **static_cast<SharedOrigins*>(sqlite3_user_data(context));
  try {
    const auto* service = reinterpret_cast<const char*>(sqlite3_value_text(arguments[1]));
    const auto length = static_cast<std::size_t>(sqlite3_value_bytes(arguments[1]));
    sqlite3_result_int64(context, origins.numberOf(sqlite3_value_int64(arguments[0]),
                                                   service ? std::string_view(service, length) : std::string_view(),
                                                   sqlite3_value_int(arguments[2])));
  } catch (const std::exception&) {
    sqlite3_result_error_nomem(context);
  }
}

void releaseOrigins(void* origins) { delete static_cast<SharedOrigins*>(origins); }

}  // namespace

MessageOrigins::MessageOrigins(const sqlite::Connection& store) {
  const sqlite::Statement rows(store.get(), "SELECT ROWID, id FROM handle WHERE id IS NOT NULL");
  while (rows && rows.step() == SQLITE_ROW) addresses_.emplace(rows.integer(0), shown(rows.text(1)));
}

std::string MessageOrigins::install(sqlite3* connection, const std::shared_ptr<MessageOrigins>& origins) {
  constexpr int kArguments = 3;
  if (sqlite3_create_function_v2(connection, "chatsum_origin", kArguments, SQLITE_UTF8 | SQLITE_INNOCUOUS,
                                 new SharedOrigins(origins), originFunction, nullptr, nullptr,
                                 releaseOrigins) != SQLITE_OK) {  // released by SQLite on failure, too
    return "";
  }
  StoreColumns columns(connection);
  const auto column = [&](const char* name) { return columns.has("message", name) ? std::string(name) : "NULL"; };
  return "chatsum_origin(" + column("handle_id") + ", " + column("service") + ", " + column(kFlagKey) + ")";
}

std::int64_t MessageOrigins::numberOf(std::int64_t handle, std::string_view service, int flag) {
  const auto isLike = [&](const Origin& origin) {
    return origin.handle == handle && origin.flag == flag && origin.service == service;
  };
  if (last_ < origins_.size() && isLike(origins_[last_])) return static_cast<std::int64_t>(last_);
  constexpr std::size_t kFew = 16;
  for (std::size_t i = 0; i < origins_.size() && i < kFew; ++i) {
    if (isLike(origins_[i])) return static_cast<std::int64_t>(last_ = i);
  }
  std::string key = std::to_string(handle) + " " + std::to_string(flag) + " ";
  key += service;
  const auto [place, isNew] = places_.try_emplace(std::move(key), origins_.size());
  if (isNew) {
    const auto address = addresses_.find(handle);
    origins_.push_back({handle,
                        std::string(service),
                        flag,
                        {address == addresses_.end() ? Value() : address->second, shown(service)}});
  }
  last_ = place->second;
  return static_cast<std::int64_t>(last_);
}

void MessageOrigins::apply(Array& records) const {
  RecordField flagField(kFlagKey);
  LongerRecords longer({kAddressKey, kServiceKey});
  for (Value& item : records.mutableItems()) {
    const Value* number = flagField.find(*item.asRecord());
    const auto place = number ? static_cast<std::size_t>(number->integerValue()) : origins_.size();
    if (place >= origins_.size()) continue;
    const Origin& origin = origins_[place];
    Record record = longer.with(*item.asRecord(), origin.shown);
    record.set(kFlagKey, origin.flag);
    item = Value(std::move(record));
  }
}

}  // namespace chatsum::device
