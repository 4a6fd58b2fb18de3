#include "hosts/device/sample/StoreWriter.h"

#include <algorithm>

namespace chatsum::device {

namespace {

constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

// The columns that a row here fills, all others keep the defaults of the schema. The enumerations number them.
constexpr std::string_view kHandle[] = {"id", "country", "service", "person_centric_id"};
enum HandleColumn : std::size_t { hId, hCountry, hService, hPersonCentricId };

constexpr std::string_view kChat[] = {"guid",      "style",         "state",        "chat_identifier", "service_name",
                                      "room_name", "account_login", "display_name", "group_id"};
enum ChatColumn : std::size_t { cGuid, cStyle, cState, cIdentifier, cService, cRoom, cAccount, cDisplayName, cGroupId };

constexpr std::string_view kMessage[] = {"guid",
                                         "text",
                                         "handle_id",
                                         "attributedBody",
                                         "service",
                                         "account",
                                         "error",
                                         "date",
                                         "date_read",
                                         "date_delivered",
                                         "is_delivered",
                                         "is_finished",
                                         "is_from_me",
                                         "is_read",
                                         "is_sent",
                                         "cache_has_attachments",
                                         "cache_roomnames",
                                         "item_type",
                                         "other_handle",
                                         "group_title",
                                         "group_action_type",
                                         "associated_message_guid",
                                         "associated_message_type",
                                         "destination_caller_id",
                                         "thread_originator_guid",
                                         "thread_originator_part",
                                         "part_count",
                                         "version",
                                         "associated_message_emoji",
                                         "subject",
                                         "expressive_send_style_id",
                                         "balloon_bundle_id",
                                         "payload_data",
                                         "message_summary_info",
                                         "date_edited",
                                         "date_retracted",
                                         "share_status",
                                         "schedule_type",
                                         "schedule_state"};
enum MessageColumn : std::size_t {
  mGuid,
  mText,
  mHandle,
  mBody,
  mService,
  mAccount,
  mError,
  mDate,
  mDateRead,
  mDateDelivered,
  mDelivered,
  mFinished,
  mFromMe,
  mRead,
  mSent,
  mHasAttachments,
  mRoomNames,
  mItemType,
  mOtherHandle,
  mGroupTitle,
  mGroupAction,
  mTarget,
  mTargetType,
  mOwnAddress,
  mThread,
  mThreadPart,
  mParts,
  mVersion,
  mEmoji,
  mSubject,
  mEffect,
  mBundle,
  mPayload,
  mSummary,
  mEdited,
  mRetracted,
  mShareStatus,
  mScheduleType,
  mScheduleState
};

constexpr std::string_view kAttachment[] = {"guid",        "created_date",    "filename",      "uti",
                                            "mime_type",   "transfer_state",  "is_outgoing",   "transfer_name",
                                            "total_bytes", "hide_attachment", "original_guid", "is_sticker"};
enum AttachmentColumn : std::size_t {
  aGuid,
  aCreated,
  aFilename,
  aUti,
  aMimeType,
  aState,
  aOutgoing,
  aName,
  aBytes,
  aHidden,
  aOriginalGuid,
  aSticker
};

constexpr std::string_view kChatHandle[] = {"chat_id", "handle_id"};
constexpr std::string_view kChatMessage[] = {"chat_id", "message_id", "message_date"};
constexpr std::string_view kMessageAttachment[] = {"message_id", "attachment_id"};

constexpr int kStyleOnePerson = 45;
constexpr int kStyleGroup = 43;
constexpr int kTransferFinished = 5;

}  // namespace

StoreWriter::Insert::Insert(sqlite3* connection, std::string_view table, std::span<const std::string_view> wanted,
                            Generation generation) {
  std::vector<std::string_view> present = columnsOf(table, generation);
  if (present.empty()) present.assign(wanted.begin(), wanted.end());  // a table that never changed
  std::string names;
  std::string marks;
  int parameter = 0;
  for (std::size_t column = 0; column < wanted.size(); ++column) {
    if (std::find(present.begin(), present.end(), wanted[column]) == present.end()) continue;
    parameters_[column] = ++parameter;
    names += (names.empty() ? "" : ", ") + std::string(wanted[column]);
    marks += marks.empty() ? "?" : ", ?";
  }
  statement_ =
      sqlite::Statement(connection, "INSERT INTO " + std::string(table) + " (" + names + ") VALUES (" + marks + ")");
}

void StoreWriter::Insert::text(std::size_t column, std::string_view value) {
  // A view without bytes may hold no address, which SQLite would take for NULL.
  if (parameters_[column]) statement_.bind(parameters_[column], value.empty() ? std::string_view("") : value);
}

void StoreWriter::Insert::optionalText(std::size_t column, std::string_view value) {
  if (!value.empty()) text(column, value);
}

void StoreWriter::Insert::blob(std::size_t column, std::string_view value) {
  if (parameters_[column]) statement_.bindBlob(parameters_[column], value.empty() ? std::string_view("") : value);
}

void StoreWriter::Insert::integer(std::size_t column, std::int64_t value) {
  if (parameters_[column]) statement_.bind(parameters_[column], value);
}

bool StoreWriter::Insert::run() {
  const bool done = statement_.step() == SQLITE_DONE;
  statement_.reset();
  sqlite3_clear_bindings(statement_.get());
  return done;
}

StoreWriter::StoreWriter(const std::filesystem::path& path, Generation generation, Placement placement)
    : file_(path, placement, messageStoreTables(generation)), generation_(generation) {
  if (file_.failed()) return;
  sqlite3* connection = file_.connection();
  handles_ = Insert(connection, "handle", kHandle, generation);
  chats_ = Insert(connection, "chat", kChat, generation);
  messages_ = Insert(connection, "message", kMessage, generation);
  attachments_ = Insert(connection, "attachment", kAttachment, generation);
  chatHandles_ = Insert(connection, "chat_handle_join", kChatHandle, generation);
  chatMessages_ = Insert(connection, "chat_message_join", kChatMessage, generation);
  messageAttachments_ = Insert(connection, "message_attachment_join", kMessageAttachment, generation);
  for (const Insert* insert :
       {&handles_, &chats_, &messages_, &attachments_, &chatHandles_, &chatMessages_, &messageAttachments_}) {
    if (!*insert) file_.noteFailure();
  }
}

StoreWriter::~StoreWriter() = default;

std::int64_t StoreWriter::run(Insert& insert) {
  if (insert.run()) return sqlite3_last_insert_rowid(file_.connection());
  file_.noteFailure();
  return 0;
}

void StoreWriter::join(Insert& insert, std::int64_t first, std::int64_t second) {
  insert.integer(0, first);
  insert.integer(1, second);
  run(insert);
}

std::int64_t StoreWriter::addHandle(const HandleRow& row) {
  if (file_.failed()) return 0;
  handles_.text(hId, row.id);
  handles_.text(hCountry, "us");
  handles_.text(hService, row.service);
  handles_.optionalText(hPersonCentricId, row.personCentricId);
  return run(handles_);
}

std::int64_t StoreWriter::addChat(const ChatRow& row) {
  if (file_.failed()) return 0;
  chats_.text(cGuid, row.guid);
  chats_.integer(cStyle, row.group ? kStyleGroup : kStyleOnePerson);
  chats_.integer(cState, 3);
  chats_.text(cIdentifier, row.identifier);
  chats_.text(cService, row.service);
  if (row.group) chats_.text(cRoom, row.identifier);
  chats_.text(cAccount, ownAddress_);
  chats_.optionalText(cDisplayName, row.displayName);
  chats_.text(cGroupId, row.guid);
  const std::int64_t chat = run(chats_);
  if (chat == 0) return 0;
  for (std::int64_t handle : row.handles) join(chatHandles_, chat, handle);
  return file_.failed() ? 0 : chat;
}

std::int64_t StoreWriter::addAttachment(const AttachmentRow& row) {
  if (file_.failed()) return 0;
  attachments_.text(aGuid, row.guid);
  attachments_.integer(aCreated, row.createdDate);
  attachments_.optionalText(aFilename, row.filename);
  attachments_.optionalText(aUti, row.uti);
  attachments_.optionalText(aMimeType, row.mimeType);
  attachments_.integer(aState, row.filename.empty() ? 0 : kTransferFinished);
  attachments_.integer(aOutgoing, row.outgoing);
  attachments_.optionalText(aName, row.transferName);
  attachments_.integer(aBytes, row.totalBytes);
  attachments_.integer(aHidden, row.hidden);
  attachments_.text(aOriginalGuid, row.guid);
  attachments_.integer(aSticker, row.sticker);
  return run(attachments_);
}

std::int64_t StoreWriter::addMessage(const MessageRow& row) {
  if (file_.failed()) return 0;
  const bool asSeconds = !row.dateAsIs && !hasNanosecondDates(generation_);
  const std::int64_t date = asSeconds ? row.date / kNanosecondsPerSecond : row.date;
  const std::int64_t moment = asSeconds ? 1 : kNanosecondsPerSecond;

  messages_.text(mGuid, row.guid);
  if (row.text) messages_.text(mText, *row.text);
  if (row.attributedBody) messages_.blob(mBody, *row.attributedBody);
  messages_.integer(mHandle, row.handle);
  messages_.text(mService, row.service);
  messages_.text(mAccount, ownAddress_);
  messages_.integer(mError, row.error);
  messages_.integer(mDate, date);
  messages_.integer(mDateRead, row.fromMe ? 0 : date + 60 * moment);
  messages_.integer(mDateDelivered, row.fromMe && row.error == 0 ? date + moment : 0);
  messages_.integer(mDelivered, row.fromMe && row.error == 0);
  messages_.integer(mFinished, 1);
  messages_.integer(mFromMe, row.fromMe);
  messages_.integer(mRead, !row.fromMe);
  messages_.integer(mSent, row.fromMe && row.error == 0);
  messages_.integer(mHasAttachments, !row.attachments.empty());
  messages_.optionalText(mRoomNames, row.roomName);
  messages_.integer(mItemType, row.itemType);
  messages_.integer(mOtherHandle, row.otherHandle);
  messages_.optionalText(mGroupTitle, row.groupTitle);
  messages_.integer(mGroupAction, row.groupActionType);
  messages_.optionalText(mTarget, row.associatedMessageGuid);
  messages_.integer(mTargetType, row.associatedMessageType);
  messages_.text(mOwnAddress, std::string_view(ownAddress_).substr(ownAddress_.find(':') + 1));
  messages_.optionalText(mThread, row.threadOriginatorGuid);
  if (!row.threadOriginatorGuid.empty()) messages_.text(mThreadPart, "0:0:1");
  messages_.integer(mParts, std::max<std::int64_t>(1, static_cast<std::int64_t>(row.attachments.size())));
  messages_.integer(mVersion, 10);
  messages_.optionalText(mEmoji, row.reactionEmoji);
  messages_.optionalText(mSubject, row.subject);
  messages_.optionalText(mEffect, row.effect);
  messages_.optionalText(mBundle, row.balloonBundle);
  if (!row.payload.empty()) messages_.blob(mPayload, row.payload);
  if (!row.summaryInfo.empty()) messages_.blob(mSummary, row.summaryInfo);
  messages_.integer(mEdited, row.dateEdited);
  messages_.integer(mRetracted, row.dateRetracted);
  messages_.integer(mShareStatus, row.shareStatus);
  messages_.integer(mScheduleType, row.scheduleType);
  messages_.integer(mScheduleState, row.scheduleState);
  const std::int64_t message = run(messages_);
  if (message == 0) return 0;

  for (std::int64_t chat : row.chats) {
    chatMessages_.integer(2, date);
    join(chatMessages_, chat, message);
  }
  for (std::int64_t attachment : row.attachments) join(messageAttachments_, message, attachment);
  return file_.failed() ? 0 : message;
}

void StoreWriter::setOwnAddress(std::string_view address) { ownAddress_ = address; }

void StoreWriter::setProperty(std::string_view key, std::string_view value) {
  if (file_.failed()) return;
  sqlite::Statement statement(file_.connection(),
                              "INSERT OR REPLACE INTO _SqliteDatabaseProperties (key, value) VALUES (?, ?)");
  statement.bind(1, key);
  statement.bind(2, value);
  if (statement.step() != SQLITE_DONE) file_.noteFailure();
}

std::optional<std::string> StoreWriter::finish() {
  // The file closes only when no statement holds the connection.
  for (Insert* insert :
       {&handles_, &chats_, &messages_, &attachments_, &chatHandles_, &chatMessages_, &messageAttachments_}) {
    *insert = Insert();
  }
  return file_.finish(messageStoreIndexes(generation_));
}

}  // namespace chatsum::device
