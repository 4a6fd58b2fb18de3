#include "hosts/device/conversations/FoldedText.h"

#include <unicode/bytestream.h>
#include <unicode/normalizer2.h>

#include <algorithm>

#include "platform/foundation/Utf8.h"

namespace chatsum::device {

std::string foldedCase(std::string_view text) {
  std::string folded;
  const bool isAscii =
      std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (isAscii) {
    for (const char c : text) folded += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return folded;
  }
  const std::string valid = utf8::repaired(text);
  UErrorCode status = U_ZERO_ERROR;
  const icu::Normalizer2* normalizer = icu::Normalizer2::getNFKCCasefoldInstance(status);
  if (U_FAILURE(status)) return valid;
  icu::StringByteSink<std::string> sink(&folded);
  normalizer->normalizeUTF8(0, icu::StringPiece(valid.data(), static_cast<std::int32_t>(valid.size())), sink, nullptr,
                            status);
  return U_SUCCESS(status) ? folded : valid;
}

}  // namespace chatsum::device
