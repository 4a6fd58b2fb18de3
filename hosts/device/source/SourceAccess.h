// What opening a source may ask of the person at the screen. The functions are called on the thread that opens.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "hosts/device/stores/ReadDigests.h"

namespace chatsum::device {

struct SourceAccess {
  /// The password of an encrypted backup, UTF-8; none when nobody gives one. Asked at most once, and only when needed.
  std::function<std::optional<std::string>()> password;
  /// How much of the password's work is done, 0 to 1, told about ten times a second; false stops it.
  std::function<bool(double done)> progress;
  /// Where to note what is read of the source's lists and stores; null: nowhere.
  std::shared_ptr<ReadDigests> digests = {};
};

}  // namespace chatsum::device
