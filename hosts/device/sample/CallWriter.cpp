#include "hosts/device/sample/CallWriter.h"

#include "hosts/device/sample/CallSchema.h"

namespace chatsum::device {
namespace {

constexpr std::int64_t kCallEntity = 2, kHandleEntity = 4, kFirstVersion = 1;

void bindOptional(const sqlite::Statement& statement, int parameter, std::string_view text) {
  if (text.empty()) {
    statement.bindNull(parameter);
  } else {
    statement.bind(parameter, text);
  }
}

void bindOptional(const sqlite::Statement& statement, int parameter, std::int64_t key) {
  if (key == 0) {
    statement.bindNull(parameter);
  } else {
    statement.bind(parameter, key);
  }
}

}  // namespace

CallWriter::CallWriter(const std::filesystem::path& path, CallGeneration generation, Placement placement)
    : file_(path, placement, callListTables(generation)), generation_(generation) {
  if (file_.failed()) return;
  const auto prepare = [this](sqlite::Statement& statement, const std::string& sql) {
    statement = sqlite::Statement(file_.connection(), sql);
    if (!statement) file_.noteFailure();
  };
  prepare(calls_, callInsertion(generation));
  if (!hasPeopleOfCalls(generation)) return;
  prepare(handles_, "INSERT INTO ZHANDLE (Z_ENT, Z_OPT, ZTYPE, ZVALUE) VALUES (?1, ?2, ?3, ?4)");
  prepare(people_, std::string("INSERT INTO ") + kPeopleOfCallsTable + " VALUES (?1, ?2)");
}

CallWriter::~CallWriter() = default;

bool CallWriter::run(const sqlite::Statement& statement) {
  const bool done = statement.step() == SQLITE_DONE;
  statement.reset();
  if (!done) file_.noteFailure();
  return done;
}

std::int64_t CallWriter::addHandle(std::string_view value) {
  constexpr std::int64_t kNumber = 2, kEmail = 3;
  if (file_.failed() || !handles_) return 0;
  handles_.bind(1, kHandleEntity);
  handles_.bind(2, kFirstVersion);
  handles_.bind(3, value.find('@') == std::string_view::npos ? kNumber : kEmail);
  handles_.bind(4, value);
  return run(handles_) ? sqlite3_last_insert_rowid(file_.connection()) : 0;
}

std::int64_t CallWriter::addCall(const CallRow& row) {
  if (file_.failed()) return 0;
  calls_.bind(cEntity, kCallEntity);
  calls_.bind(cVersion, kFirstVersion);
  calls_.bind(cDate, row.date);
  calls_.bind(cDuration, row.duration);
  if (!row.address.empty() && (row.isAddressBytes || !hasPeopleOfCalls(generation_))) {
    calls_.bindBlob(cAddress, row.address);
  } else {
    bindOptional(calls_, cAddress, row.address);
  }
  calls_.bind(cOriginated, std::int64_t{row.outgoing});
  calls_.bind(cAnswered, std::int64_t{row.answered});
  calls_.bind(cType, std::int64_t{row.type});
  calls_.bind(cCause, std::int64_t{row.disconnectedCause});
  calls_.bind(cRead, std::int64_t{1});
  bindOptional(calls_, cName, row.name);
  bindOptional(calls_, cPlace, row.place);
  bindOptional(calls_, cCountry, row.country);
  bindOptional(calls_, cUniqueId, row.uniqueId);
  // Binding what a generation has no place for answers an error that means nothing here.
  bindOptional(calls_, cProvider, row.provider);
  calls_.bind(cJunk, std::int64_t{row.junkConfidence});
  calls_.bind(cFiltered, std::int64_t{row.filteredReason});
  calls_.bind(cMessage, std::int64_t{row.hasMessage});
  calls_.bind(cEmergency, std::int64_t{row.emergency});
  bindOptional(calls_, cBlockedBy, row.blockedBy);
  bindOptional(calls_, cInitiator, row.initiator);
  if (!run(calls_)) return 0;
  const std::int64_t call = sqlite3_last_insert_rowid(file_.connection());
  for (const std::int64_t person : row.people) {
    if (!people_) break;
    people_.bind(1, call);
    people_.bind(2, person);
    run(people_);
  }
  return file_.failed() ? 0 : call;
}

std::optional<std::string> CallWriter::finish() {
  for (sqlite::Statement* statement : {&calls_, &handles_, &people_}) *statement = sqlite::Statement();
  return file_.finish(callListIndexes(generation_));
}

OldCallWriter::OldCallWriter(const std::filesystem::path& path, Placement placement)
    : file_(path, placement, oldCallListTables()) {
  if (file_.failed()) return;
  calls_ = sqlite::Statement(file_.connection(),
                             "INSERT INTO call (address, date, duration, flags, id, name, read, assisted) "
                             "VALUES (?1, ?2, ?3, ?4, -1, ?5, 1, 0)");
  if (!calls_) file_.noteFailure();
}

OldCallWriter::~OldCallWriter() = default;

std::int64_t OldCallWriter::addCall(const OldCallRow& row) {
  if (file_.failed()) return 0;
  bindOptional(calls_, 1, row.address);
  calls_.bind(2, row.date);
  calls_.bind(3, row.duration);
  calls_.bind(4, row.flags);
  bindOptional(calls_, 5, row.name);
  const bool done = calls_.step() == SQLITE_DONE;
  calls_.reset();
  if (!done) file_.noteFailure();
  return done ? sqlite3_last_insert_rowid(file_.connection()) : 0;
}

std::optional<std::string> OldCallWriter::finish() {
  calls_ = sqlite::Statement();
  return file_.finish("CREATE INDEX date_index ON call(date)");
}

}  // namespace chatsum::device
