// What the tests of the report folders share.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {

class ReportFoldersTest : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  const std::string reports = "/var/mobile/Library/Preferences/Chatsum";

  void makeFolder(const std::string& path) {
    ASSERT_FALSE(fake.realFiles.createDirectory(path)) << "the folder of the test: " << path;
  }
};

}  // namespace chatsum::test
