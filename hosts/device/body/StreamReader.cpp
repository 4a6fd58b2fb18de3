#include "hosts/device/body/StreamReader.h"

namespace chatsum::device {
namespace {

constexpr int kDeepestNesting = 100;
constexpr int kLongestClassChain = 64;
constexpr std::size_t kBudgetPerByte = 16;
constexpr std::size_t kLeastBudget = 256;
constexpr std::size_t kMostRuns = 1000;  // more than any message has
constexpr std::size_t kMostAttributes = 64;
constexpr std::uint8_t kStreamVersion = 4;
constexpr std::string_view kLittleEndianName = "streamtyped";
constexpr std::string_view kBigEndianName = "typedstream";
constexpr std::string_view kRunTypes = "iI";  // a run's number and its length

// The root stands at depth 1, its string at depth 2.
constexpr int kRootDepth = 1;
constexpr int kRootStringDepth = 2;

bool isDigit(char c) { return c >= '0' && c <= '9'; }

}  // namespace

std::optional<StreamCursor> openStream(std::string_view blob) {
  StreamCursor cursor(blob);
  std::uint8_t version = 0;
  std::uint8_t nameLength = 0;
  std::string_view name;
  if (!cursor.take(version) || version != kStreamVersion) return std::nullopt;
  if (!cursor.take(nameLength) || nameLength != kLittleEndianName.size()) return std::nullopt;
  if (!cursor.take(nameLength, name)) return std::nullopt;
  if (name != kLittleEndianName && name != kBigEndianName) return std::nullopt;
  cursor.setBigEndian(name == kBigEndianName);
  return cursor;
}

StreamReader::StreamReader(StreamCursor cursor, std::size_t blobSize)
    : cursor_(cursor), budget_(kLeastBudget + kBudgetPerByte * blobSize) {
  sharedStrings_.reserve(8);
  objects_.reserve(8);
}

std::optional<std::string_view> StreamReader::readText() {
  std::int64_t systemVersion = 0;
  if (!cursor_.readSigned(systemVersion)) return std::nullopt;
  while (cursor_.remaining() > 0) {
    switch (readGroup({})) {
      case Step::kTextFound:
        return text_;
      case Step::kFailed:
        return std::nullopt;
      case Step::kDone:
        break;
    }
  }
  return std::nullopt;
}

std::vector<StreamReader::Run> StreamReader::readRuns() {
  keepsContents_ = true;
  (void)readText();  // comes to the end, or to a damage
  return std::move(runs_);
}

std::vector<StreamReader::Attribute> StreamReader::attributesOf(std::int64_t attributes) const {
  std::vector<Attribute> found;
  const auto dictionary = dictionaries_.find(attributes);
  const auto contents = dictionary == dictionaries_.end() ? contents_.end() : contents_.find(dictionary->second);
  if (contents == contents_.end()) return found;
  const auto contentOf = [this](std::size_t object) {
    const auto content = contents_.find(object);
    return content == contents_.end() ? nullptr : &content->second;
  };
  const std::vector<std::size_t>& items = contents->second.items;
  for (std::size_t i = 0; i + 1 < items.size() && found.size() < kMostAttributes; i += 2) {
    const Content* key = contentOf(items[i]);
    const Content* value = contentOf(items[i + 1]);
    if (key && value) found.push_back({key->text, value->text, value->number});
  }
  return found;
}

void StreamReader::keepNumber(Place place, std::int64_t value) {
  if (!keepsContents_ || place.object == kNoObject) return;
  if (place.depth == kRootDepth) rootNumbers_.push_back(value);
  contents_[place.object].number = value;
}

void StreamReader::keepItem(Place place) {
  if (!keepsContents_ || place.object == kNoObject) return;
  if (place.depth == kRootDepth) {
    // Behind the text, the root's objects are the attributes of the run before each.
    if (!runs_.empty()) dictionaries_.try_emplace(runs_.back().attributes, lastObject_);
    return;
  }
  contents_[place.object].items.push_back(lastObject_);
}

bool StreamReader::spend() { return budget_ != 0 && budget_-- != 0; }

bool StreamReader::readSharedString(std::optional<std::string_view>& text) {
  std::uint8_t head = 0;
  if (!cursor_.peek(head)) return false;
  if (head == kHeadNil) {
    text.reset();
    return cursor_.take(head);
  }
  if (head == kHeadNew) {
    std::uint64_t length = 0;
    std::string_view bytes;
    if (!cursor_.take(head) || !cursor_.readUnsigned(length) || !cursor_.take(length, bytes)) return false;
    sharedStrings_.push_back(bytes);
    text = bytes;
    return true;
  }
  std::uint64_t index = 0;
  if (!cursor_.readReference(index) || index >= sharedStrings_.size()) return false;
  text = sharedStrings_[static_cast<std::size_t>(index)];
  return true;
}

bool StreamReader::readClass(std::int32_t& classIndex) {
  classIndex = -1;
  std::int32_t below = -1;  // the class whose superclass is read next
  for (int chain = 0; chain <= kLongestClassChain; ++chain) {
    std::uint8_t head = 0;
    if (!cursor_.peek(head)) return false;
    if (head == kHeadNil) return cursor_.take(head);
    std::int32_t found = -1;
    if (head == kHeadNew) {
      std::optional<std::string_view> name;
      std::int64_t version = 0;
      if (!cursor_.take(head) || !readSharedString(name) || !name || !cursor_.readSigned(version)) return false;
      found = static_cast<std::int32_t>(objects_.size());
      objects_.push_back({Kind::kClass, -1, *name});
    } else {
      std::uint64_t index = 0;
      if (!cursor_.readReference(index) || index >= objects_.size()) return false;
      if (objects_[static_cast<std::size_t>(index)].kind != Kind::kClass) return false;
      found = static_cast<std::int32_t>(index);
    }
    if (below < 0) {
      classIndex = found;
    } else {
      objects_[static_cast<std::size_t>(below)].superclass = found;
    }
    if (head != kHeadNew) return true;
    below = found;
  }
  return false;
}

bool StreamReader::isKindOf(std::int32_t classIndex, std::string_view name, std::string_view mutableName) const {
  // Counting the steps also ends the walk when a hostile stream makes a class its own ancestor.
  for (int chain = 0; classIndex >= 0 && chain <= kLongestClassChain; ++chain) {
    const Entry& entry = objects_[static_cast<std::size_t>(classIndex)];
    if (entry.name == name || entry.name == mutableName) return true;
    classIndex = entry.superclass;
  }
  return false;
}

bool StreamReader::readCString() {
  std::uint8_t head = 0;
  if (!cursor_.peek(head)) return false;
  if (head == kHeadNil) return cursor_.take(head);
  if (head == kHeadNew) {
    std::optional<std::string_view> bytes;
    if (!cursor_.take(head)) return false;
    objects_.push_back({Kind::kCString, -1, {}});
    return readSharedString(bytes);
  }
  std::uint64_t index = 0;
  return cursor_.readReference(index) && index < objects_.size() &&
         objects_[static_cast<std::size_t>(index)].kind == Kind::kCString;
}

StreamReader::Step StreamReader::readObject(int depth) {
  if (depth > kDeepestNesting) return Step::kFailed;
  std::uint8_t head = 0;
  lastObject_ = kNoObject;
  if (!cursor_.peek(head)) return Step::kFailed;
  if (head == kHeadNil) return step(cursor_.take(head));
  if (head != kHeadNew) {
    std::uint64_t index = 0;
    if (!cursor_.readReference(index) || index >= objects_.size()) return Step::kFailed;
    lastObject_ = static_cast<std::size_t>(index);
    return step(objects_[lastObject_].kind == Kind::kObject);
  }
  if (!cursor_.take(head)) return Step::kFailed;
  const std::size_t number = objects_.size();
  objects_.push_back({Kind::kObject, -1, {}});  // an object is numbered before its class
  std::int32_t classIndex = -1;
  if (!readClass(classIndex)) return Step::kFailed;
  const bool isString = isKindOf(classIndex, "NSString", "NSMutableString");
  if (depth == kRootDepth && !isString && !isKindOf(classIndex, "NSAttributedString", "NSMutableAttributedString")) {
    return Step::kFailed;
  }
  while (cursor_.peek(head)) {
    if (head == kHeadEnd) {
      lastObject_ = number;
      return step(cursor_.take(head));
    }
    const Step read = readGroup({depth, isString && depth <= kRootStringDepth, number});
    if (read != Step::kDone) return read;
  }
  return Step::kFailed;
}

StreamReader::Step StreamReader::readGroup(Place place) {
  std::optional<std::string_view> types;
  if (!spend() || !readSharedString(types) || !types) return Step::kFailed;
  std::size_t at = 0;
  rootNumbers_.clear();
  while (at < types->size()) {
    const Step read = readValue(*types, at, place);
    if (read != Step::kDone) return read;
  }
  if (place.depth == kRootDepth && *types == kRunTypes && rootNumbers_.size() == 2 && runs_.size() < kMostRuns) {
    runs_.push_back({rootNumbers_[0], static_cast<std::uint64_t>(rootNumbers_[1])});
  }
  return Step::kDone;
}

StreamReader::Step StreamReader::readValue(std::string_view types, std::size_t& at, Place place) {
  if (!spend() || at >= types.size() || place.depth > kDeepestNesting) return Step::kFailed;
  switch (types[at++]) {
    case 'c':
    case 'C':
    case 'B':
      return step(cursor_.skip(1));
    case 's':
    case 'i':
    case 'l':
    case 'q':
      return step(readNumber(true, place));
    case 'S':
    case 'I':
    case 'L':
    case 'Q':
      return step(readNumber(false, place));
    case 'f':
      return step(readReal(4));
    case 'd':
      return step(readReal(8));
    case '@': {
      const Step read = readObject(place.depth + 1);
      if (read == Step::kDone) keepItem(place);
      return read;
    }
    case '#': {
      std::int32_t ignored = -1;
      return step(readClass(ignored));
    }
    case '*':
      return step(readCString());
    case '%':
    case ':': {
      std::optional<std::string_view> ignored;
      return step(readSharedString(ignored));
    }
    case '+':
      return readUnsharedBytes(place);
    case '[':
      return readArray(types, at, {place.depth + 1, false, place.object});
    case '{':
      return readStruct(types, at, {place.depth + 1, false, place.object});
    case '!':
      return Step::kDone;
    default:
      return Step::kFailed;
  }
}

bool StreamReader::readNumber(bool isSigned, Place place) {
  std::int64_t signedValue = 0;
  std::uint64_t unsignedValue = 0;
  if (!(isSigned ? cursor_.readSigned(signedValue) : cursor_.readUnsigned(unsignedValue))) return false;
  keepNumber(place, isSigned ? signedValue : static_cast<std::int64_t>(unsignedValue));
  return true;
}

bool StreamReader::readReal(unsigned width) {
  std::uint8_t head = 0;
  if (!cursor_.peek(head)) return false;
  if (head == kHeadReal) return cursor_.take(head) && cursor_.skip(width);
  return readNumber(true, {});
}

StreamReader::Step StreamReader::readUnsharedBytes(Place place) {
  std::uint8_t head = 0;
  if (!cursor_.peek(head)) return Step::kFailed;
  if (head == kHeadNil) return step(cursor_.take(head));
  std::uint64_t length = 0;
  std::string_view bytes;
  if (!cursor_.readUnsigned(length) || !cursor_.take(length, bytes)) return Step::kFailed;
  if (keepsContents_) {
    if (place.object != kNoObject) contents_[place.object].text = bytes;
    return Step::kDone;
  }
  if (!place.holdsText) return Step::kDone;
  text_ = bytes;
  return Step::kTextFound;
}

StreamReader::Step StreamReader::readArray(std::string_view types, std::size_t& at, Place place) {
  std::uint64_t count = 0;
  const std::size_t firstDigit = at;
  for (; at < types.size() && isDigit(types[at]); ++at) {
    count = count * 10 + static_cast<std::uint64_t>(types[at] - '0');
    if (count > cursor_.remaining() || !spend()) return Step::kFailed;
  }
  if (at == firstDigit || at >= types.size()) return Step::kFailed;
  const std::size_t element = at;
  if (!skipType(types, at) || at >= types.size() || types[at] != ']') return Step::kFailed;
  const std::size_t behind = at + 1;
  if (types[element] == 'c' || types[element] == 'C') {
    at = behind;
    return step(cursor_.skip(count));
  }
  for (; count > 0; --count) {
    const std::size_t before = cursor_.position();
    at = element;
    const Step read = readValue(types, at, place);
    if (read != Step::kDone) return read;
    if (cursor_.position() == before) break;  // elements without bytes: nothing more will come
  }
  at = behind;
  return Step::kDone;
}

StreamReader::Step StreamReader::readStruct(std::string_view types, std::size_t& at, Place place) {
  while (at < types.size() && types[at] != '=' && types[at] != '}') {
    if (!spend()) return Step::kFailed;
    ++at;
  }
  if (at < types.size() && types[at] == '=') ++at;
  while (at < types.size() && types[at] != '}') {
    const Step read = readValue(types, at, place);
    if (read != Step::kDone) return read;
  }
  if (at >= types.size()) return Step::kFailed;
  ++at;
  return Step::kDone;
}

// Moves over one whole type without reading a value; brackets of both kinds count as one nesting.
bool StreamReader::skipType(std::string_view types, std::size_t& at) {
  int open = 0;
  while (at < types.size()) {
    if (!spend()) return false;
    const char type = types[at];
    if (open == 0 && (type == ']' || type == '}')) return false;
    ++at;
    if (type == '[' || type == '{') ++open;
    if (type == ']' || type == '}') --open;
    if (open == 0) return true;
  }
  return false;
}

}  // namespace chatsum::device
