// Address books of a Mac of a test's own, and what becomes of them.
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "hosts/device/contacts/DeviceContacts.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "platform/fake/TemporaryFolder.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"
#include "tests/support/MacBookWriter.h"

namespace chatsum::device::testing {

/// The people in an address book of a device.
class People {
 public:
  explicit People(const StoreLocation& location) {
    auto snapshot = StoreSnapshot::take(location);
    if (!snapshot) {
      ADD_FAILURE() << snapshot.problem().sentence;
      return;
    }
    snapshot_ = std::make_unique<StoreSnapshot>(std::move(snapshot.value()));
    contacts_ = std::make_unique<DeviceContacts>(
        std::make_shared<const platform::system::ContactBook>([this] { return connect(); }, "US"));
  }
  [[nodiscard]] ResolvedHandle resolve(const std::string& handle) const { return contacts_->resolve(handle); }
  [[nodiscard]] std::string name(const std::string& handle) const { return resolve(handle).name; }
  [[nodiscard]] std::string ownName() const { return contacts_->ownName(); }
  [[nodiscard]] std::string problem() const { return contacts_->problem(); }
  /// The first column of each row.
  [[nodiscard]] std::vector<std::string> rows(const std::string& sql) const {
    const sqlite::Connection connection = connect();
    const sqlite::Statement statement(connection.get(), sql);
    std::vector<std::string> texts;
    while (statement && statement.step() == SQLITE_ROW) texts.emplace_back(statement.text(0));
    return texts;
  }

 private:
  [[nodiscard]] sqlite::Connection connect() const {
    sqlite3* handle = nullptr;
    EXPECT_EQ(snapshot_->open(&handle), SQLITE_OK);
    return sqlite::Connection(handle);
  }

  std::unique_ptr<StoreSnapshot> snapshot_;
  std::unique_ptr<DeviceContacts> contacts_;
};

inline void finish(test::MacBookWriter& book) {
  const auto problem = book.finish();
  ASSERT_FALSE(problem.has_value()) << *problem;
}

}  // namespace chatsum::device::testing
