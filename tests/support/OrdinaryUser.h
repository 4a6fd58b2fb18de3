// Root may read everything; tests of what may not be read give that up for a while.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

namespace chatsum::test {

/// Acts as a user without rights, while it lives. The process has one thread.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (isRoot_) {
      EXPECT_EQ(::seteuid(kNobody), 0);
    }
  }
  ~OrdinaryUser() {
    if (isRoot_) {
      EXPECT_EQ(::seteuid(0), 0);
    }
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

  static constexpr uid_t kNobody = 65534;

 private:
  bool isRoot_ = ::getuid() == 0;
};

}  // namespace chatsum::test
