// Files to look at, and waiting for what a thread finds in them.
#pragma once

#include <gtest/gtest.h>

#include <QTest>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <string_view>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::desktop::test {

/// Lets events come until it is so; a failure of the test when it never is.
inline void waitUntil(const std::function<bool()>& isSo, const char* what = "that") {
  constexpr int kLongest = 30000;  // milliseconds; only a broken test waits so long
  EXPECT_TRUE(QTest::qWaitFor(isSo, kLongest)) << what << " never came about";
}

class PreviewFiles {
 public:
  /// Writes the file and answers its path.
  QString put(const std::string& name, std::string_view bytes) const {
    const std::string path = folder_.path() + "/" + name;
    std::ofstream(path, std::ios::binary) << bytes;
    return QString::fromStdString(path);
  }
  [[nodiscard]] QString path(const std::string& name) const {
    return QString::fromStdString(folder_.path() + "/" + name);
  }
  [[nodiscard]] static std::string read(const QString& path) {
    std::ifstream file(path.toStdString(), std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
  }

 private:
  platform::fake::TemporaryFolder folder_;
};

}  // namespace chatsum::desktop::test
