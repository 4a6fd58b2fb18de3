// A small Messages store of a test's own, written row by row and read through plain connections.
#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <optional>
#include <string>

#include "hosts/device/sample/StoreWriter.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device::testing {

class StoreFixture {
 public:
  explicit StoreFixture(Generation generation = Generation::ios17) { writer.emplace(path(), generation); }

  [[nodiscard]] std::filesystem::path path() const { return std::filesystem::path(folder_.path()) / "sms.db"; }

  /// A chat of one person and the messages' dates, in nanoseconds since 2001 unless `asIs`.
  std::int64_t chat(const std::string& service, const std::string& handle) {
    const std::int64_t row = handleRow(service, handle);
    return writer->addChat(
        {.guid = service + ";-;" + handle, .identifier = handle, .service = service, .handles = {{row}}});
  }
  std::int64_t handleRow(const std::string& service, const std::string& handle) {
    return writer->addHandle({.id = handle, .service = service});
  }
  void message(std::initializer_list<std::int64_t> chats, std::int64_t date, std::int64_t handle = 0) {
    const std::string guid = "M" + std::to_string(++messages_);
    writer->addMessage({.guid = guid,
                        .text = "text " + guid,
                        .date = date,
                        .dateAsIs = true,
                        .handle = handle,
                        .chats = std::span<const std::int64_t>(chats.begin(), chats.size())});
  }

  /// Completes the store; connections may be made from here on.
  void finish() {
    const auto problem = writer->finish();
    writer.reset();
    ASSERT_FALSE(problem.has_value()) << *problem;
  }
  [[nodiscard]] sqlite::Connection connect() const {
    sqlite3* handle = nullptr;
    EXPECT_EQ(sqlite3_open_v2(path().c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    return sqlite::Connection(handle);
  }

  std::optional<StoreWriter> writer;

 private:
  platform::fake::TemporaryFolder folder_;
  int messages_ = 0;
};

inline constexpr std::int64_t kSecond = 1'000'000'000;
/// 2020-01-06T10:40:00Z in nanoseconds since 2001.
inline constexpr std::int64_t kMonday = 600'000'000 * kSecond;
inline constexpr double kMondaySince1970 = 1578307200;

}  // namespace chatsum::device::testing
