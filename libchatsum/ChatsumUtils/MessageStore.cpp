// Reads conversations from the Messages database.

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "libchatsum/ChatsumUtils/DateOrder.h"
#include "libchatsum/ChatsumUtils/MessageRecord.h"
#include "libchatsum/ChatsumUtils/MessageRowsAhead.h"
#include "libchatsum/ChatsumUtils/SqlText.h"
#include "libchatsum/Logging/Logging.h"
#include "platform/interfaces/Platform.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum {
namespace {

constexpr const char* kStorePath = "/var/mobile/Library/SMS/sms.db";
constexpr const char* kCountOperation = "+[ChatsumUtils totalMessageCount:]";
constexpr const char* kReadOperation = "+[ChatsumUtils allMessagesForConversation:excludedGuids:order:completion:]";
constexpr std::int64_t kNewestFirst = 1;

/// guid='…' OR guid='…', empty without chats.
std::string chatFilter(const std::vector<std::string>& guids) {
  std::string filter;
  for (const std::string& guid : guids) {
    if (!filter.empty()) filter += " OR ";
    filter += "guid='" + sqlQuoted(guid) + "'";
  }
  return filter;
}

/// From the second GUID on the clause only wraps itself, and the statement that carries it is refused: hosts rely on
/// one GUID at most.
std::string exclusionClause(const std::vector<std::string>& guids) {
  std::string clause;
  for (std::size_t i = 0; i < guids.size(); ++i) {
    clause = i == 0 ? "WHERE message_guid not in ('" + sqlQuoted(guids[i]) + "'" : ", '" + clause + "'";
  }
  return clause.empty() ? clause : clause + ")";
}

std::string readStatement(const std::string& filter, bool newestFirst, const std::string& exclusion) {
  return "SELECT message_guid, text, date, is_from_me, id, cache_has_attachments, filename from (SELECT * FROM "
         "((SELECT "
         "m.ROWID as MESSAGE_ROWID, m.guid as message_guid, m.text, m.date, m.handle_id, m.is_from_me, "
         "m.cache_has_attachments FROM message m WHERE ROWID in (SELECT message_id FROM chat_message_join WHERE "
         "chat_id in "
         "(select ROWID FROM chat WHERE " +
         filter + ")) ORDER BY m.date " + (newestFirst ? "DESC" : "ASC") +
         ") LEFT JOIN handle h on handle_id=h.ROWID) LEFT JOIN message_attachment_join mj on "
         "MESSAGE_ROWID=mj.message_id) LEFT JOIN attachment a on a.ROWID=attachment_id " +
         exclusion;
}

void logPrepareError(const char* operation, int line, const sqlite::Connection& connection) {
  logging::error(operation, line, "Error while preparing statement. Error: '" + connection.lastError() + "'");
}

/// The connection to the store; empty when there is no store or it cannot be opened.
sqlite::Connection openStore() {
  auto& files = platform::current().files;
  if (!files.exists(kStorePath)) return {};
  sqlite3* handle = nullptr;
  const int opened = files.openDatabase(kStorePath, &handle);
  sqlite::Connection connection(handle);
  return opened == SQLITE_OK ? std::move(connection) : sqlite::Connection();
}

/// The records in the statement's order. They are made when the order of all rows is known: naming a sender leaves
/// traces that decide about the sender's next message.
Array readRecords(const sqlite::Connection& connection, const sqlite::Statement& statement,
                  MessageRecordAssembler& assembler, bool newestFirst) {
  constexpr int kStepLine = 709;
  DateOrder order(newestFirst);
  const bool isComplete = takeRowsAhead(statement, [&](const MessageRow& row) {
    if (auto kept = assembler.keep(row)) order.append(std::move(*kept));
  });
  if (!isComplete) {
    logging::error(kReadOperation, kStepLine, "Error while reading rows. Error: '" + connection.lastError() + "'");
  }
  std::vector<Value> records;
  records.reserve(order.size());
  order.takeRows([&](DateOrder::Row row) { records.emplace_back(assembler.record(std::move(row))); });
  return Array(std::move(records));
}

}  // namespace

std::int64_t ChatsumUtils::totalMessageCount(const platform::CKConversation& conversation) {
  constexpr int kPrepareLine = 242;
  const sqlite::Connection connection = openStore();
  if (!connection) return 0;
  const sqlite::Statement statement(connection.get(),
                                    "SELECT count (*) as count FROM message m WHERE ROWID in (SELECT message_id FROM "
                                    "chat_message_join WHERE chat_id in "
                                    "(select ROWID FROM chat WHERE " +
                                        chatFilter(conversation.chatGuids()) + "))");
  if (!statement) {
    logPrepareError(kCountOperation, kPrepareLine, connection);
    return 0;
  }
  return statement.step() == SQLITE_DONE ? 0 : sqlite3_column_int(statement.get(), 0);
}

void ChatsumUtils::allMessagesForConversation(const platform::CKConversation& conversation,
                                              const std::vector<std::string>& excludedGuids,
                                              const MessagesCompletion& completion) {
  allMessagesForConversation(conversation, excludedGuids, kNewestFirst, completion);
}

void ChatsumUtils::allMessagesForConversation(const platform::CKConversation& conversation,
                                              const std::vector<std::string>& excludedGuids, std::int64_t order,
                                              const MessagesCompletion& completion) {
  constexpr int kGettingLine = 549, kPrepareLine = 722;
  const std::vector<std::string> guids = conversation.chatGuids();
  logging::information(
      kReadOperation, kGettingLine,
      "Getting all messages for GUIDs => " + Array(std::vector<Value>(guids.begin(), guids.end())).description());
  const bool newestFirst = order == kNewestFirst;
  Array records;
  bool hasAttachments = false, hasMultiMediaAttachments = false;
  if (const sqlite::Connection connection = openStore()) {
    const std::string sql = readStatement(chatFilter(guids), newestFirst, exclusionClause(excludedGuids));
    logging::trace("********** sqlStatement => " + sql);
    const platform::ABAddressBookRef book = addressBook();
    if (const sqlite::Statement statement(connection.get(), sql); statement) {
      MessageRecordAssembler assembler(conversation, book);
      records = readRecords(connection, statement, assembler, newestFirst);
      hasAttachments = assembler.hasAttachments();
      hasMultiMediaAttachments = assembler.hasMultiMediaAttachments();
    } else {
      logPrepareError(kReadOperation, kPrepareLine, connection);
    }
  }
  if (completion) completion(std::move(records), hasAttachments, hasMultiMediaAttachments);
}

}  // namespace chatsum
