// Call lists of a test's own, written row by row and read through snapshots.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "hosts/device/calls/CallStore.h"
#include "hosts/device/sample/CallWriter.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device::testing {

/// 2024-01-15T12:00:00Z in seconds since 2001, and since 1970.
inline constexpr double kNoon = 727'012'800;
inline constexpr double kNoonSince1970 = 1'705'320'000;

class CallFixture : public ::testing::Test {
 protected:
  [[nodiscard]] std::filesystem::path path() const {
    return std::filesystem::path(folder_.path()) / "CallHistory.storedata";
  }

  static void finish(CallWriter& writer) {
    const auto problem = writer.finish();
    ASSERT_FALSE(problem.has_value()) << *problem;
  }

  /// Changes a list that is complete.
  void change(const std::string& sql) const {
    sqlite3* handle = nullptr;
    ASSERT_EQ(sqlite3_open_v2(path().c_str(), &handle, SQLITE_OPEN_READWRITE, nullptr), SQLITE_OK);
    const sqlite::Connection connection(handle);
    ASSERT_TRUE(connection.execute(sql)) << connection.lastError();
  }

  /// Writes a list of one call and answers how it is read.
  [[nodiscard]] Call onlyCall(CallRow row, CallGeneration generation = CallGeneration::ios17) const {
    if (row.date == 0) row.date = kNoon;
    CallWriter writer(path(), generation);
    writer.addCall(row);
    finish(writer);
    const std::vector<Call> calls = read().calls;
    EXPECT_EQ(calls.size(), 1U);
    return calls.empty() ? Call() : calls.front();
  }

  [[nodiscard]] StoredCalls read() const {
    const auto snapshot = StoreSnapshot::take(path().string());
    if (!snapshot) {
      ADD_FAILURE() << snapshot.problem().sentence;
      return {};
    }
    auto calls = readCallStore(snapshot.value());
    if (calls) return std::move(calls.value());
    ADD_FAILURE() << calls.problem().sentence;
    return {};
  }

  /// Why the list cannot be read; "" when it can.
  [[nodiscard]] std::string problem() const {
    const auto snapshot = StoreSnapshot::take(path().string());
    if (!snapshot) return snapshot.problem().sentence;
    const auto calls = readCallStore(snapshot.value());
    return calls ? "" : calls.problem().sentence;
  }

  platform::fake::TemporaryFolder folder_;
};

[[nodiscard]] inline std::vector<std::string> addressesOf(const Call& call) {
  std::vector<std::string> addresses;
  for (const CallPerson& person : call.people) addresses.push_back(person.address);
  return addresses;
}

[[nodiscard]] inline std::string bytesOf(const std::filesystem::path& file) {
  std::ifstream stream(file, std::ios::binary);
  return {std::istreambuf_iterator<char>(stream), std::istreambuf_iterator<char>()};
}

}  // namespace chatsum::device::testing
