#include "libchatsum/ChatsumUtils/MessageRecord.h"

#include <algorithm>
#include <utility>

#include "libchatsum/ChatsumUtils/AddressBookIndex.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/foundation/PathComponents.h"
#include "platform/foundation/Utf8.h"
#include "platform/interfaces/Platform.h"

namespace chatsum {
namespace {

String textOf(std::string_view bytes) { return utf8::isValid(bytes) ? String(bytes) : String(utf8::repaired(bytes)); }

}  // namespace

std::int64_t secondsFromStoredDate(std::int64_t stored) {
  constexpr std::int64_t kNineDigitsEnd = 1'000'000'000;
  if (stored <= kNineDigitsEnd) return stored;
  // Ten digits and more: of a nanosecond count with 18 digits the first nine are the whole seconds.
  while (stored >= kNineDigitsEnd) stored /= 10;
  return stored + kSecondsFrom1970To2001;
}

MessageRecordAssembler::MessageRecordAssembler(const platform::CKConversation& conversation,
                                               const platform::ABAddressBookRef& addressBook)
    : conversation_(conversation), addressBook_(addressBook) {}

std::optional<Record> MessageRecordAssembler::record(const MessageRow& row) {
  if (!row.text) return std::nullopt;

  // The values in the order of the record's keys.
  std::array<Value, 8> values;
  std::size_t count = 0;
  if (row.guid) values[count++] = textOf(*row.guid);
  const std::size_t textPlace = count++;
  values[count++] = Date{static_cast<double>(secondsFromStoredDate(row.date))};
  values[count++] = row.isFromMe;

  bool hasName = false, hasLabel = false;
  if (row.isFromMe > 0) {
    values[count++] = ownName();
    hasName = true;
  } else if (row.handle) {
    const Handle& handle = handleFor(*row.handle);
    values[count++] = handle.name;
    hasName = true;
    hasLabel = !handle.label.isNone();
    if (hasLabel) values[count++] = handle.label;
  }

  values[count++] = row.hasAttachments;
  hasAttachments_ = hasAttachments_ || row.hasAttachments > 0;

  if (row.fileName) {
    values[count] = attachmentPath(*row.fileName);
    values[textPlace] = values[count];
    ++count;
  } else {
    values[textPlace] = textOf(*row.text);
  }
  return Record(shapeFor(row.guid.has_value(), hasName, hasLabel, row.fileName.has_value()), values.data());
}

const Value& MessageRecordAssembler::ownName() {
  if (!ownName_) {
    const auto& system = platform::current();
    const std::string name = system.messages.ownerFullName().value_or("");
    ownName_ = Value(name.empty() ? system.mainBundle.localizedString("Me") : name);
  }
  return *ownName_;
}

MessageRecordAssembler::Handle& MessageRecordAssembler::handleFor(std::string_view text) {
  if (!lastHandle_ || lastHandle_->first != text) {
    auto place = handles_.find(text);
    if (place == handles_.end()) place = handles_.emplace(std::string(text), Handle()).first;
    lastHandle_ = &*place;
  }
  auto& [key, handle] = *lastHandle_;
  // Everything that names a handle follows from its entry and the address book: in the same state, the same answer.
  // The state is taken before the look-up, so that an index published in its course is looked up at the next row.
  const std::uint64_t generation = addressBookIndexSlot::generation();
  if (handle.isAnswered && handle.entry == handle.entryBefore && handle.generation == generation) {
    handle.entry = handle.entryAfter;
    return handle;
  }
  handle.entryBefore = handle.entry;
  resolve(key, handle);
  handle.entryAfter = handle.entry;
  handle.generation = generation;
  handle.isAnswered = true;
  return handle;
}

void MessageRecordAssembler::resolve(const std::string& text, Handle& handle) {
  const Value captured = handle.entry;
  auto record = static_cast<platform::ABRecordID>(captured.integerValue());
  if (record < 1) {
    record = ChatsumUtils::addressBookRecordForPhoneNumber(text, addressBook_);
    if (record > 0) handle.entry = record;
  }
  if (record < 1) {
    handle.name = textOf(text);
    handle.label = Value();
    return;
  }
  const platform::CKEntityRef recipient = matchingRecipient(record, handle, captured);
  handle.name = recipient ? Value(recipient->name()) : Value(textOf(text));
  handle.label = labelFor(record, text, handle);
}

platform::CKEntityRef MessageRecordAssembler::matchingRecipient(platform::ABRecordID record, Handle& handle,
                                                                Value captured) {
  if (!recipients_) recipients_ = conversation_.recipients();
  // The one other person of a conversation needs no test.
  if (recipients_->size() < 2) return recipients_->empty() ? nullptr : recipients_->front();
  for (const platform::CKEntityRef& entity : *recipients_) {
    const platform::IMHandle known = entity->handle();
    if (known.person && *known.person && (*known.person)->recordID == record) return entity;
    if (const auto person = entity->abRecord()) {
      if (*person && (*person)->recordID() == record) return entity;
      continue;
    }
    if (!known.cnContactIdentifier) continue;
    if (captured.isNone()) {
      if (const auto identifier = ChatsumUtils::contactStore()->contactIdentifierFromPersonID(record)) {
        captured = Value(*identifier);
        handle.entry = captured;
      }
    }
    // A captured record identifier is no contact identifier and equals none.
    const String* identifier = captured.asString();
    if (identifier && *known.cnContactIdentifier && identifier->view() == **known.cnContactIdentifier) return entity;
  }
  return nullptr;
}

Value MessageRecordAssembler::labelFor(platform::ABRecordID record, const std::string& text, Handle& handle) {
  Value& label = handle.labels[record];
  if (label.isNone()) {
    const platform::ABRecordRef person = addressBook_ ? addressBook_->personWithRecordID(record) : nullptr;
    label = Value(ChatsumUtils::label(person, text));
  }
  return label;
}

Value MessageRecordAssembler::attachmentPath(std::string_view fileName) {
  std::string path(textOf(fileName).view());
  if (path.starts_with('~')) {
    for (std::size_t at = path.find('~'); at != std::string::npos; at = path.find('~', at)) path.replace(at, 1, "User");
  }
  if (!hasMultiMediaAttachments_) {
    const auto& types = platform::current().uniformTypes;
    const std::string extension = path::extension(path);
    const std::string type = types.identifierForExtension(extension);
    hasMultiMediaAttachments_ =
        !types.conforms(type, platform::kUTTypeImage) && !types.conforms(type, platform::kUTTypePDF);
    logging::trace(std::string("hasMultiMediaAttachments: ") + (hasMultiMediaAttachments_ ? "1" : "0") +
                   " for fileExtension: " + extension);
  }
  return Value(path);
}

const Ref<Shape>& MessageRecordAssembler::shapeFor(bool guid, bool name, bool label, bool attachment) {
  Ref<Shape>& shape = shapes_[(guid ? 1U : 0U) | (name ? 2U : 0U) | (label ? 4U : 0U) | (attachment ? 8U : 0U)];
  if (!shape) {
    std::vector<String> keys;
    if (guid) keys.emplace_back("guid");
    for (const char* key : {"Text", "Date", "is_from_me"}) keys.emplace_back(key);
    if (name) keys.emplace_back("Name");
    if (label) keys.emplace_back("label");
    keys.emplace_back("cache_has_attachments");
    if (attachment) keys.emplace_back("attachment_location");
    shape = Ref<Shape>::adopt(new Shape(std::move(keys)));
  }
  return shape;
}

}  // namespace chatsum
