// By which address and service each message of a reading came or went: keys "Address" and "Service" of its records. The
// library's statement has no place for them, so while it reads, a number stands for them in the column of the
// attachment flag, and gives way to the flag again when the records are there. One reading; one thread at a time.
#pragma once

#include <sqlite3.h>

#include <array>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/foundation/Value.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

inline constexpr const char* kAddressKey = "Address";
inline constexpr const char* kServiceKey = "Service";

class MessageOrigins {
 public:
  /// Reads the addresses of a Messages store.
  explicit MessageOrigins(const sqlite::Connection& store);

  /// Prepares a connection to serve the numbers. Answers the expression in SQL for `MessageView::Options::flag`, empty
  /// when SQLite refuses; its error message stands on the connection, which keeps `origins`.
  [[nodiscard]] static std::string install(sqlite3* connection, const std::shared_ptr<MessageOrigins>& origins);

  /// Puts the flags back and adds the keys to records that were read over such connections: the address of the handle
  /// that the message names, and the message's service. What a message does not have is not in its record.
  void apply(Array& records) const;

  /// The number that stands for a message's columns.
  [[nodiscard]] std::int64_t numberOf(std::int64_t handle, std::string_view service, int flag);

 private:
  struct Origin {
    std::int64_t handle = 0;
    std::string service;
    int flag = 0;
    std::array<Value, 2> shown;  // address and service, none where there is none
  };

  std::unordered_map<std::int64_t, Value> addresses_;
  std::vector<Origin> origins_;
  std::unordered_map<std::string, std::size_t> places_;
  std::size_t last_ = 0;  // of the message before: most are like it
};

}  // namespace chatsum::device
