#include "hosts/device/body/TypedStream.h"

#include <algorithm>
#include <optional>

#include "hosts/device/body/KeyedArchive.h"
#include "hosts/device/body/StreamReader.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kStringClass = "NSString";
constexpr std::string_view kMutableStringClass = "NSMutableString";
constexpr std::string_view kFirstBytesEncoding("\x84\x01\x2B", 3);
constexpr std::string_view kEndOfStringAndNextGroup("\x86\x84", 2);
constexpr int kLongestClassChain = 64;
// The encoding follows the class within a few bytes. Farther away the same bytes may be the text itself.
constexpr std::size_t kSearchWindow = 64;

// Moves over a shared string of any content; a reference may point anywhere because the tables are lost.
bool skipSharedString(StreamCursor& cursor, std::optional<std::string_view>& spelledOut) {
  std::uint8_t head = 0;
  std::uint64_t number = 0;
  std::string_view bytes;
  spelledOut.reset();
  if (!cursor.peek(head) || head == kHeadNil) return false;
  if (head != kHeadNew) return cursor.readReference(number);
  if (!cursor.take(head) || !cursor.readUnsigned(number) || !cursor.take(number, bytes)) return false;
  spelledOut = bytes;
  return true;
}

// From behind a string class's name: its version and superclasses, then the encoding of its bytes.
bool skipToLength(StreamCursor& cursor) {
  std::int64_t version = 0;
  std::optional<std::string_view> spelledOut;
  if (!cursor.readSigned(version)) return false;
  for (int chain = 0;; ++chain) {
    std::uint8_t head = 0;
    if (chain == kLongestClassChain || !cursor.peek(head)) return false;
    if (head == kHeadNew) {
      if (!cursor.take(head) || !skipSharedString(cursor, spelledOut) || !cursor.readSigned(version)) return false;
      continue;
    }
    std::uint64_t reference = 0;
    const bool ended = head == kHeadNil ? cursor.take(head) : cursor.readReference(reference);
    if (!ended) return false;
    break;
  }
  if (!skipSharedString(cursor, spelledOut)) return false;
  return !spelledOut || spelledOut->size() == 1;
}

// The bytes of the text in a stream that cannot be read from its start.
std::optional<std::string_view> salvage(std::string_view blob, StreamCursor cursor) {
  const std::size_t plain = blob.find(kStringClass);
  const std::size_t changeable = blob.find(kMutableStringClass);
  if (plain == std::string_view::npos && changeable == std::string_view::npos) return std::nullopt;
  const std::size_t behindName =
      changeable < plain ? changeable + kMutableStringClass.size() : plain + kStringClass.size();
  cursor.setPosition(behindName);
  if (!skipToLength(cursor)) {
    const std::size_t encoding = blob.substr(behindName, kSearchWindow).find(kFirstBytesEncoding);
    if (encoding == std::string_view::npos) return std::nullopt;
    cursor.setPosition(behindName + encoding + kFirstBytesEncoding.size());
  }
  std::uint64_t length = 0;
  if (!cursor.readUnsigned(length)) return std::nullopt;
  std::string_view text = blob.substr(cursor.position());
  if (length <= text.size()) {
    text = text.substr(0, static_cast<std::size_t>(length));
  } else {
    // Not before: a text can contain these two bytes.
    text = text.substr(0, text.find(kEndOfStringAndNextGroup));
  }
  return text.substr(0, utf8::lengthWithoutPartialTail(text));
}

BodyText finished(std::string_view bytes, BodyStatus status) {
  BodyText body;
  body.text.reserve(bytes.size());
  body.replacedSequences = utf8::appendRepaired(body.text, bytes);
  body.status = status;
  return body;
}

}  // namespace

BodyText decodeBody(std::string_view blob) {
  if (blob.substr(0, kBinaryPropertyListStart.size()) == kBinaryPropertyListStart) {
    auto archived = readKeyedArchive(blob);
    if (!archived) return {};
    return {std::move(archived->text), BodyStatus::kDecoded, archived->replacedSequences};
  }
  const auto cursor = openStream(blob);
  if (!cursor) return {};
  if (const auto text = StreamReader(*cursor, blob.size()).readText()) return finished(*text, BodyStatus::kDecoded);
  if (const auto text = salvage(blob, *cursor)) return finished(*text, BodyStatus::kRecovered);
  return {};
}

}  // namespace chatsum::device
