// How opening a store reports what is wrong: one plain sentence for the person at the screen.
// Value types, no threads of their own.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace chatsum::device {

/// One sentence that says what is wrong with a store and what to do. It names the file and ends without a line break.
struct StoreProblem {
  std::string sentence;
};

/// A value, or the problem that kept it from coming to be.
template <class T>
class StoreResult {
 public:
  StoreResult(T value) : content_(std::move(value)) {}                 // NOLINT(google-explicit-constructor)
  StoreResult(StoreProblem problem) : content_(std::move(problem)) {}  // NOLINT(google-explicit-constructor)

  explicit operator bool() const { return std::holds_alternative<T>(content_); }
  /// Only when it converts to true.
  [[nodiscard]] T& value() { return *std::get_if<T>(&content_); }
  [[nodiscard]] const T& value() const { return *std::get_if<T>(&content_); }
  /// Only when it converts to false.
  [[nodiscard]] const StoreProblem& problem() const { return *std::get_if<StoreProblem>(&content_); }

 private:
  std::variant<T, StoreProblem> content_;
};

}  // namespace chatsum::device
