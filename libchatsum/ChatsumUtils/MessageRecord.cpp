#include "libchatsum/ChatsumUtils/MessageRecord.h"

#include <algorithm>
#include <utility>

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

std::optional<MessageRecordAssembler::KeptRow> MessageRecordAssembler::keep(const MessageRow& row) {
  if (!row.text) return std::nullopt;
  KeptRow kept;
  if (row.guid) kept.guid_ = textOf(*row.guid);
  if (row.fileName) {
    kept.fileName_ = textOf(*row.fileName);
  } else {
    kept.text_ = textOf(*row.text);
  }
  kept.date_ = row.date;
  kept.isFromMe_ = row.isFromMe;
  if (row.isFromMe <= 0 && row.handle) kept.handle_ = handleFor(*row.handle);
  kept.hasAttachments_ = row.hasAttachments;
  return kept;
}

Record MessageRecordAssembler::record(KeptRow row) {
  // The values in the order of the record's keys.
  std::array<Value, 8> values;
  std::size_t count = 0;
  const bool hasGuid = !row.guid_.isNone();
  if (hasGuid) values[count++] = std::move(row.guid_);
  const std::size_t textPlace = count++;
  values[count++] = Date{static_cast<double>(secondsFromStoredDate(row.date_.value_or(0)))};
  values[count++] = row.isFromMe_;

  const bool isOwn = row.isFromMe_ > 0;
  const bool hasName = isOwn || row.handle_;
  bool hasLabel = false;
  if (isOwn) {
    values[count++] = ownName();
  } else if (row.handle_) {
    Value label = nameSender(*row.handle_);
    values[count++] = row.handle_->second.name;
    hasLabel = !label.isNone();
    if (hasLabel) values[count++] = std::move(label);
  }

  values[count++] = row.hasAttachments_;
  hasAttachments_ = hasAttachments_ || row.hasAttachments_ > 0;

  const bool hasFile = !row.fileName_.isNone();
  if (hasFile) {
    values[count] = attachmentPath(row.fileName_.asString()->str());
    values[textPlace] = values[count];
    ++count;
  } else {
    values[textPlace] = std::move(row.text_);
  }
  return Record(shapeFor(hasGuid, hasName, hasLabel, hasFile), values.data());
}

const Value& MessageRecordAssembler::ownName() {
  if (!ownName_) {
    const auto& system = platform::current();
    const std::string name = system.messages.ownerFullName().value_or("");
    ownName_ = Value(name.empty() ? system.mainBundle.localizedString("Me") : name);
  }
  return *ownName_;
}

MessageRecordAssembler::Handles::value_type* MessageRecordAssembler::handleFor(std::string_view text) {
  if (!lastHandle_ || lastHandle_->first != text) {
    auto place = handles_.find(text);
    if (place == handles_.end()) place = handles_.emplace(std::string(text), Handle()).first;
    lastHandle_ = &*place;
  }
  return lastHandle_;
}

Value MessageRecordAssembler::nameSender(Handles::value_type& sender) {
  const std::string& text = sender.first;
  Handle& handle = sender.second;
  const auto setName = [&](std::string_view name) {
    const String* const last = handle.name.asString();
    if (!last || last->view() != name) handle.name = String(name);
  };
  const Value captured = handle.entry;
  auto record = static_cast<platform::ABRecordID>(captured.integerValue());
  if (record < 1) {
    record = ChatsumUtils::addressBookRecordForPhoneNumber(text, addressBook_);
    if (record > 0) handle.entry = record;
  }
  const platform::CKEntityRef recipient = record < 1 ? nullptr : matchingRecipient(record, handle, captured);
  setName(recipient ? recipient->name() : textOf(text).str());
  return record < 1 ? Value() : labelFor(record, text, handle);
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

Value MessageRecordAssembler::attachmentPath(std::string path) {
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
