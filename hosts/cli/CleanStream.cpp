#include "hosts/cli/CleanStream.h"

#include "hosts/cli/DisplayText.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::cli {

std::streamsize CleanStream::Buffer::xsputn(const char* bytes, std::streamsize count) {
  begun_.append(bytes, static_cast<std::size_t>(count));
  const std::size_t whole = utf8::lengthWithoutPartialTail(begun_);
  const std::string clean = harmless(std::string_view(begun_).substr(0, whole));
  begun_.erase(0, whole);
  if (!clean.empty()) isAtLineStart = clean.back() == '\n';
  target_ << clean;
  return target_ ? count : 0;
}

CleanStream::Buffer::int_type CleanStream::Buffer::overflow(int_type character) {
  if (traits_type::eq_int_type(character, traits_type::eof())) return traits_type::not_eof(character);
  const char byte = traits_type::to_char_type(character);
  return xsputn(&byte, 1) == 1 ? character : traits_type::eof();
}

int CleanStream::Buffer::sync() { return target_.flush() ? 0 : -1; }

}  // namespace chatsum::cli
