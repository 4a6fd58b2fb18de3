// What the tests of the report engine share: a platform of their own, the engine, and what a request led to.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <optional>
#include <string>
#include <vector>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "platform/fake/FakePlatform.h"
#include "tests/support/LogLine.h"

namespace chatsum::test {

inline const std::string kFolder = "/var/mobile/Library/Preferences/Chatsum";

/// What the callbacks of one request were told.
struct Outcome {
  bool result = true;
  std::vector<std::string> successes;
  std::vector<Error> failures;
};

class ReportEngineTest : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
  CSReportsGenerator& engine = CSReportsGenerator::sharedInstance();

  static std::string inFolder(const std::string& name) { return kFolder + "/" + name; }

  Outcome generate(const Record& request) {
    Outcome outcome;
    outcome.result = engine.generateReport(
        request, [&](const std::string& path) { outcome.successes.push_back(path); },
        [&](const Error& error) { outcome.failures.push_back(error); });
    return outcome;
  }

  /// The sorted names in a folder, none for a folder that is not there.
  std::vector<std::string> names(const std::string& folder = kFolder) {
    auto found = fake.realFiles.list(folder).value_or(std::vector<std::string>());
    std::sort(found.begin(), found.end());
    return found;
  }

  /// An empty reports folder, so that a log holds the report's own lines only.
  void makeFolder() { ASSERT_FALSE(fake.realFiles.createDirectory(kFolder)) << "the folder of the test"; }
};

/// An error of the engine's own: no domain, a code, and its text under the key of underlying errors only.
inline void expectReportError(const Error& error, int code, const std::string& text) {
  EXPECT_EQ(error.domain, std::nullopt);
  EXPECT_EQ(error.code, code);
  EXPECT_EQ(error.userInfo, (Record{{"NSUnderlyingErrorKey", text}}));
}

}  // namespace chatsum::test
