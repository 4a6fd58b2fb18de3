// Who is behind the handles of a Messages store, as the lines that say what messages are name them. Any thread.
#pragma once

#include <cstdint>
#include <mutex>
#include <string>
#include <unordered_map>

#include "hosts/device/conversations/Conversation.h"
#include "platform/sqlite/Connection.h"

namespace chatsum::device {

struct Person {
  std::string name;      ///< fit to stand in a line
  std::int64_t key = 0;  ///< equal for all handles of one person; that of the owner is 0
};

class People {
 public:
  static constexpr std::int64_t kOwnerKey = 0;

  /// Reads the handles; each is looked up in the address book when it is first asked for. `owner` is the name of the
  /// device's owner. `findPerson` must outlive this.
  People(const sqlite::Connection& store, const FindPerson& findPerson, const std::string& owner);

  /// The person behind a ROWID of the table of handles; "somebody" when there is no such handle.
  [[nodiscard]] const Person& behind(std::int64_t handle) const;
  [[nodiscard]] const Person& owner() const { return owner_; }
  /// The owner for rows that the owner sent.
  [[nodiscard]] const Person& sender(bool isFromMe, std::int64_t handle) const {
    return isFromMe ? owner_ : behind(handle);
  }

 private:
  [[nodiscard]] Person find(std::int64_t handle) const;

  const FindPerson& findPerson_;
  Person owner_;
  std::unordered_map<std::int64_t, std::string> handles_;
  mutable std::mutex mutex_;
  mutable std::unordered_map<std::int64_t, Person> people_;
  mutable std::unordered_map<std::string, std::int64_t> keys_;
};

}  // namespace chatsum::device
