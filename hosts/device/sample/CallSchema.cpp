#include "hosts/device/sample/CallSchema.h"

#include <string_view>

namespace chatsum::device {
namespace {

using enum CallGeneration;

struct Column {
  std::string_view name, type;
  CallGeneration since = ios9;
  int parameter = 0;  // of the insertion; 0: left NULL
};

// In the order of a device's own table.
constexpr Column kColumns[] = {
    {"Z_ENT", "INTEGER", ios9, cEntity},
    {"Z_OPT", "INTEGER", ios9, cVersion},
    {"ZANSWERED", "INTEGER", ios9, cAnswered},
    {"ZAUTOANSWEREDREASON", "INTEGER", ios17},
    {"ZCALL_CATEGORY", "INTEGER", ios10},
    {"ZCALLDIRECTORYIDENTITYTYPE", "INTEGER", ios13},
    {"ZCALLTYPE", "INTEGER", ios9, cType},
    {"ZCOMMUNICATIONTRUSTSCORE", "INTEGER", ios17},
    {"ZDIDENABLETRANSLATION", "INTEGER", ios27},
    {"ZDISCONNECTED_CAUSE", "INTEGER", ios9, cCause},
    {"ZFACE_TIME_DATA", "INTEGER"},
    {"ZFILTERED_OUT_REASON", "INTEGER", ios17, cFiltered},
    {"ZHANDLE_TYPE", "INTEGER", ios10},
    {"ZHASMESSAGE", "INTEGER", ios17, cMessage},
    {"ZJUNKCONFIDENCE", "INTEGER", ios17, cJunk},
    {"ZNUMBER_AVAILABILITY", "INTEGER"},
    {"ZORIGINATED", "INTEGER", ios9, cOriginated},
    {"ZORIGINATINGUITYPE", "INTEGER", ios17},
    {"ZREAD", "INTEGER", ios9, cRead},
    {"ZSCREENSHARINGTYPE", "INTEGER", ios17},
    {"ZUSEDEMERGENCYVIDEOSTREAMING", "INTEGER", ios27},
    {"ZVERIFICATIONSTATUS", "INTEGER", ios13},
    {"ZWASEMERGENCYCALL", "INTEGER", ios17, cEmergency},
    {"ZINITIATOR", "INTEGER", ios17, cInitiator},
    {"ZDATE", "TIMESTAMP", ios9, cDate},
    {"ZDURATION", "FLOAT", ios9, cDuration},
    {"ZBLOCKEDBYEXTENSION", "VARCHAR", ios17, cBlockedBy},
    {"ZDEVICE_ID", "VARCHAR"},
    {"ZISO_COUNTRY_CODE", "VARCHAR", ios9, cCountry},
    {"ZJUNKIDENTIFICATIONCATEGORY", "VARCHAR", ios17},
    {"ZLOCATION", "VARCHAR", ios9, cPlace},
    {"ZNAME", "VARCHAR", ios9, cName},
    {"ZORIGINATINGDEVICENAME", "VARCHAR", ios17},
    {"ZSERVICE_PROVIDER", "VARCHAR", ios10, cProvider},
    {"ZUNIQUE_ID", "VARCHAR", ios9, cUniqueId},
    {"ZCONVERSATIONID", "BLOB", ios17},
    {"ZLOCALPARTICIPANTUUID", "BLOB", ios13},
    {"ZOUTGOINGLOCALPARTICIPANTUUID", "BLOB", ios13},
    {"ZPARTICIPANTGROUPUUID", "BLOB", ios13},
    {"ZREMINDERUUID", "BLOB", ios17},
    {"ZIMAGEURL", "VARCHAR", ios17},
};

}  // namespace

std::string callListTables(CallGeneration generation) {
  std::string sql =
      "CREATE TABLE ZCALLDBPROPERTIES (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTIMER_ALL FLOAT, "
      "ZTIMER_INCOMING FLOAT, ZTIMER_LAST FLOAT, ZTIMER_LIFETIME FLOAT, ZTIMER_OUTGOING FLOAT);"
      "CREATE TABLE ZCALLRECORD (Z_PK INTEGER PRIMARY KEY";
  for (const Column& column : kColumns) {
    if (column.since <= generation) sql.append(", ").append(column.name).append(" ").append(column.type);
  }
  sql += hasPeopleOfCalls(generation) ? ", ZADDRESS VARCHAR);" : ", ZADDRESS BLOB);";
  sql +=
      "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);"
      "CREATE TABLE Z_METADATA (Z_VERSION INTEGER PRIMARY KEY, Z_UUID VARCHAR(255), Z_PLIST BLOB);";
  if (!hasPeopleOfCalls(generation)) {
    return sql + "INSERT INTO Z_PRIMARYKEY VALUES (1, 'CallDBProperties', 0, 1), (2, 'CallRecord', 0, 0)";
  }
  const std::string join = kPeopleOfCallsTable;
  const std::string handle = generation >= ios17 ? "Z_4" : "Z_3";
  sql +=
      "CREATE TABLE ZHANDLE (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZTYPE INTEGER, "
      "ZNORMALIZEDVALUE VARCHAR, ZVALUE VARCHAR);"
      "CREATE TABLE " +
      join + " (Z_2REMOTEPARTICIPANTCALLS INTEGER, " + handle +
      "REMOTEPARTICIPANTHANDLES INTEGER, PRIMARY KEY (Z_2REMOTEPARTICIPANTCALLS, " + handle +
      "REMOTEPARTICIPANTHANDLES));"
      "CREATE TABLE Z_MODELCACHE (Z_CONTENT BLOB);";
  if (generation < ios17) {
    return sql +
           "INSERT INTO Z_PRIMARYKEY VALUES (1, 'CallDBProperties', 0, 1), (2, 'CallRecord', 0, 0), (3, 'Handle', 0, "
           "0)";
  }
  return sql +
         "INSERT INTO Z_PRIMARYKEY VALUES (1, 'CallDBProperties', 0, 1), (2, 'CallRecord', 0, 0), "
         "(3, 'EmergencyMediaItem', 0, 0), (4, 'Handle', 0, 0)";
}

std::string callListIndexes(CallGeneration generation) {
  if (generation == ios9) return "CREATE INDEX ZCALLRECORD_ZDATE_INDEX ON ZCALLRECORD (ZDATE)";
  return "CREATE INDEX Z_CallRecord_date ON ZCALLRECORD (ZDATE COLLATE BINARY ASC)";
}

std::string callInsertion(CallGeneration generation) {
  std::string columns = "ZADDRESS", values = "?" + std::to_string(cAddress);
  for (const Column& column : kColumns) {
    if (column.parameter == 0 || column.since > generation) continue;
    columns.append(", ").append(column.name);
    values.append(", ?").append(std::to_string(column.parameter));
  }
  return "INSERT INTO ZCALLRECORD (" + columns + ") VALUES (" + values + ")";
}

std::string oldCallListTables() {
  return "CREATE TABLE _SqliteDatabaseProperties (key TEXT, value TEXT, UNIQUE(key));"
         "CREATE TABLE call (ROWID INTEGER PRIMARY KEY AUTOINCREMENT, address TEXT, date INTEGER, duration INTEGER, "
         "flags INTEGER, id INTEGER, name TEXT, country_code TEXT, network_code TEXT, read INTEGER, assisted INTEGER, "
         "face_time_data BLOB, originalAddress TEXT)";
}

}  // namespace chatsum::device
