// What went wrong, as the operations of the library hand it to their callers.
#pragma once

#include <optional>
#include <string>

#include "platform/foundation/Value.h"

namespace chatsum {

/// The user-information key that holds the text of a report error.
inline constexpr const char* kUnderlyingErrorKey = "NSUnderlyingErrorKey";
/// The user-information key that holds the text of a platform error.
inline constexpr const char* kLocalizedDescriptionKey = "NSLocalizedDescription";

struct Error {
  std::optional<std::string> domain;  ///< none for the library's own errors
  int code = 0;
  Record userInfo;

  /// The text under kLocalizedDescriptionKey, else a sentence made of domain and code.
  [[nodiscard]] std::string localizedDescription() const;
  /// What "%@" prints for the error object.
  [[nodiscard]] std::string description() const;

  /// An error of the operating system (domain "NSPOSIXErrorDomain"): `number` as errno has it, `what` says what was
  /// tried, such as "The file “a.txt” could not be saved".
  [[nodiscard]] static Error posix(int number, const std::string& what);
};

}  // namespace chatsum
