#include "hosts/device/body/TypedStreamWriter.h"

#include <algorithm>
#include <map>
#include <tuple>
#include <utility>

#include "hosts/device/body/StreamCursor.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kHeader("\x04\x0Bstreamtyped\x81\xE8\x03", 16);
constexpr std::string_view kPartAttribute = "__kIMMessagePartAttributeName";
constexpr std::string_view kFileAttribute = "__kIMFileTransferGUIDAttributeName";
constexpr std::string_view kTranscriptionAttribute = "IMAudioTranscription";

struct ArchivedClass {
  std::string_view name;
  std::int64_t version;
};
using ClassChain = std::vector<ArchivedClass>;

// Each class with its superclasses.
const ClassChain kAttributedString = {{"NSAttributedString", 0}, {"NSObject", 0}};
const ClassChain kMutableAttributedString = {
    {"NSMutableAttributedString", 0}, {"NSAttributedString", 0}, {"NSObject", 0}};
const ClassChain kString = {{"NSString", 1}, {"NSObject", 0}};
const ClassChain kMutableString = {{"NSMutableString", 1}, {"NSString", 1}, {"NSObject", 0}};
const ClassChain kDictionary = {{"NSDictionary", 0}, {"NSObject", 0}};
const ClassChain kNumber = {{"NSNumber", 0}, {"NSValue", 0}, {"NSObject", 0}};

// Keeps the stream's two tables: what was written once is referred to by its number afterwards.
class Writer {
 public:
  std::string write(std::string_view text, const std::vector<BodyRun>& runs) {
    const bool changeable =
        std::any_of(runs.begin(), runs.end(), [](const BodyRun& run) { return run.fileGuid.has_value(); });
    out_.reserve(256 + text.size());
    out_.append(kHeader);
    sharedString("@");
    beginObject(changeable ? kMutableAttributedString : kAttributedString);
    sharedString("@");
    newString(changeable ? kMutableString : kString, text);
    for (const BodyRun& run : runs) writeRun(run);
    head(kHeadEnd);
    return std::move(out_);
  }

 private:
  using Attributes = std::tuple<std::int64_t, std::optional<std::string>, std::string>;

  void head(std::uint8_t byte) { out_.push_back(static_cast<char>(byte)); }

  void raw(std::uint64_t value, unsigned width) {
    for (unsigned i = 0; i < width; ++i) head(static_cast<std::uint8_t>(value >> (8 * i)));
  }

  void signedNumber(std::int64_t value) {
    if (value >= -kReferenceBase && value <= INT8_MAX) {
      head(static_cast<std::uint8_t>(value));
    } else if (value >= INT16_MIN && value <= INT16_MAX) {
      head(kHeadInteger16);
      raw(static_cast<std::uint64_t>(value), 2);
    } else if (value >= INT32_MIN && value <= INT32_MAX) {
      head(kHeadInteger32);
      raw(static_cast<std::uint64_t>(value), 4);
    } else {
      head(kHeadInteger64);
      raw(static_cast<std::uint64_t>(value), 8);
    }
  }

  void unsignedNumber(std::uint64_t value) {
    if (value <= INT8_MAX) {
      head(static_cast<std::uint8_t>(value));
    } else if (value <= UINT16_MAX) {
      head(kHeadInteger16);
      raw(value, 2);
    } else if (value <= UINT32_MAX) {
      head(kHeadInteger32);
      raw(value, 4);
    } else {
      head(kHeadInteger64);
      raw(value, 8);
    }
  }

  void reference(std::int64_t index) { signedNumber(index - kReferenceBase); }

  void sharedString(std::string_view bytes) {
    const auto number = static_cast<std::int64_t>(sharedStrings_.size());
    const auto [entry, isNew] = sharedStrings_.try_emplace(std::string(bytes), number);
    if (!isNew) return reference(entry->second);
    head(kHeadNew);
    unsignedNumber(bytes.size());
    out_.append(bytes);
  }

  void writeClass(const ClassChain& chain) {
    for (const ArchivedClass& link : chain) {
      const auto [entry, isNew] = classes_.try_emplace(link.name, objectCount_);
      if (!isNew) return reference(entry->second);  // its superclasses were written with it
      ++objectCount_;
      head(kHeadNew);
      sharedString(link.name);
      signedNumber(link.version);
    }
    head(kHeadNil);
  }

  // Answers the object's number.
  std::int64_t beginObject(const ClassChain& chain) {
    head(kHeadNew);
    const std::int64_t number = objectCount_++;
    writeClass(chain);
    return number;
  }

  std::int64_t newString(const ClassChain& chain, std::string_view text) {
    const std::int64_t number = beginObject(chain);
    sharedString("+");
    unsignedNumber(text.size());
    out_.append(text);
    head(kHeadEnd);
    return number;
  }

  void string(std::string_view text) {
    if (const auto known = strings_.find(text); known != strings_.end()) return reference(known->second);
    const std::int64_t number = newString(kString, text);
    strings_.emplace(std::string(text), number);
  }

  void number(std::int64_t value) {
    beginObject(kNumber);
    sharedString("*");
    if (intEncodingObject_ >= 0) {
      reference(intEncodingObject_);
    } else {
      head(kHeadNew);
      intEncodingObject_ = objectCount_++;
      sharedString("i");
    }
    sharedString("i");
    signedNumber(value);
    head(kHeadEnd);
  }

  void attribute(std::string_view key, std::string_view value) {
    sharedString("@");
    string(key);
    sharedString("@");
    string(value);
  }

  void writeRun(const BodyRun& run) {
    const auto next = static_cast<std::int64_t>(runNumbers_.size()) + 1;
    const auto [entry, isNew] =
        runNumbers_.try_emplace(Attributes{run.partNumber, run.fileGuid, run.transcription}, next);
    sharedString("iI");
    signedNumber(entry->second);
    unsignedNumber(run.utf16Length);
    if (!isNew) return;  // equal attributes share a number, and their dictionary follows its first use only
    sharedString("@");
    beginObject(kDictionary);
    sharedString("i");
    signedNumber(1 + (run.fileGuid ? 1 : 0) + (run.transcription.empty() ? 0 : 1));
    if (run.fileGuid) attribute(kFileAttribute, *run.fileGuid);
    if (!run.transcription.empty()) attribute(kTranscriptionAttribute, run.transcription);
    sharedString("@");
    string(kPartAttribute);
    sharedString("@");
    number(run.partNumber);
    head(kHeadEnd);
  }

  std::string out_;
  std::map<std::string, std::int64_t, std::less<>> sharedStrings_;
  std::map<std::string_view, std::int64_t> classes_;
  std::map<std::string, std::int64_t, std::less<>> strings_;
  std::map<Attributes, std::int64_t> runNumbers_;
  std::int64_t objectCount_ = 0;
  std::int64_t intEncodingObject_ = -1;
};

}  // namespace

std::string encodeBody(std::string_view text, const std::vector<BodyRun>& runs) {
  if (runs.empty() && !text.empty())
    return Writer().write(text, {BodyRun{utf8::utf16Length(text), 0, std::nullopt, {}}});
  return Writer().write(text, runs);
}

}  // namespace chatsum::device
