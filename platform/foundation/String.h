// An immutable counted string of UTF-8 bytes: one word, shared by every record that holds the same name.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include "platform/foundation/RefCounted.h"

namespace chatsum {

/// The bytes of a String, allocated together with their header.
class StringBody final : public RefCounted {
 public:
  static StringBody* make(std::string_view text);
  static void destroy(StringBody* body);
  [[nodiscard]] std::string_view view() const { return {reinterpret_cast<const char*>(this + 1), size_}; }

 private:
  explicit StringBody(std::uint32_t size) : size_(size) {}
  std::uint32_t size_;
};

/// Never nil: a default-made one is the empty string. Holds at most 4 GiB - 1 bytes; longer text is cut there.
class String {
 public:
  String() = default;
  String(std::string_view text) : body_(text.empty() ? Ref<StringBody>() : Ref<StringBody>::adopt(StringBody::make(text))) {}
  String(const std::string& text) : String(std::string_view(text)) {}
  String(const char* text) : String(std::string_view(text)) {}

  [[nodiscard]] std::string_view view() const { return body_ ? body_->view() : std::string_view(); }
  [[nodiscard]] std::string str() const { return std::string(view()); }
  [[nodiscard]] bool empty() const { return !body_; }
  /// The address that stands for this string when references are compared.
  [[nodiscard]] const void* identity() const { return body_.get(); }

  bool operator==(const String& other) const { return body_ == other.body_ || view() == other.view(); }

 private:
  Ref<StringBody> body_;
};

}  // namespace chatsum
