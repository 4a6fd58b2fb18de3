#include "tests/support/MacBookWriter.h"

#include <fmt/format.h>

namespace chatsum::test {
namespace {

std::string tables(const MacBookShape& shape) {
  const char* const flags =
      shape.hasFlags ? ", ZDISPLAYFLAGS INTEGER, ZCONTAINERWHERECONTACTISME INTEGER, ZPREFERREDFORLINKNAME INTEGER"
                     : "";
  std::string sql = fmt::format(R"sql(
CREATE TABLE ZABCDRECORD (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZCREATIONDATE TIMESTAMP,
  ZMODIFICATIONDATE TIMESTAMP, ZBIRTHDAY TIMESTAMP, ZFIRSTNAME VARCHAR, ZLASTNAME VARCHAR, ZMIDDLENAME VARCHAR,
  ZMAIDENNAME VARCHAR, ZNICKNAME VARCHAR, ZTITLE VARCHAR, ZSUFFIX VARCHAR, ZORGANIZATION VARCHAR,
  ZDEPARTMENT VARCHAR, ZJOBTITLE VARCHAR, ZNAME VARCHAR, ZUNIQUEID VARCHAR, ZLINKID VARCHAR{0});
CREATE TABLE ZABCDPHONENUMBER (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZIOSLEGACYIDENTIFIER INTEGER,
  ZISPRIMARY INTEGER, ZISPRIVATE INTEGER, ZORDERINGINDEX INTEGER, ZOWNER INTEGER, Z{1}_OWNER INTEGER,
  ZAREACODE VARCHAR, ZCOUNTRYCODE VARCHAR, ZEXTENSION VARCHAR, ZFULLNUMBER VARCHAR, ZLABEL VARCHAR,
  ZLASTFOURDIGITS VARCHAR, ZLOCALNUMBER VARCHAR, ZUNIQUEID VARCHAR);
CREATE TABLE ZABCDEMAILADDRESS (Z_PK INTEGER PRIMARY KEY, Z_ENT INTEGER, Z_OPT INTEGER, ZIOSLEGACYIDENTIFIER INTEGER,
  ZISPRIMARY INTEGER, ZISPRIVATE INTEGER, ZORDERINGINDEX INTEGER, ZOWNER INTEGER, Z{1}_OWNER INTEGER,
  ZADDRESS VARCHAR, ZADDRESSNORMALIZED VARCHAR, ZLABEL VARCHAR, ZUNIQUEID VARCHAR);
)sql",
                                flags, shape.contactEntity);
  if (!shape.namesEntities) return sql;
  sql += "CREATE TABLE Z_PRIMARYKEY (Z_ENT INTEGER PRIMARY KEY, Z_NAME VARCHAR, Z_SUPER INTEGER, Z_MAX INTEGER);";
  return sql + fmt::format(
                   "INSERT INTO Z_PRIMARYKEY VALUES (1, 'ABCDAddressingGrammar', 0, 0), ({}, 'ABCDContact', 17, 0), "
                   "({}, 'ABCDGroup', 17, 0);",
                   shape.contactEntity, shape.contactEntity + 1);
}

/// As a value in a statement.
std::string quoted(const std::string& text) {
  if (text.empty()) return "NULL";
  std::string hex;
  for (const char c : text) hex += fmt::format("{:02X}", static_cast<unsigned char>(c));
  return "CAST(X'" + hex + "' AS TEXT)";
}

}  // namespace

MacBookWriter::MacBookWriter(const std::filesystem::path& path, MacBookShape shape)
    : shape_(shape), file_(path, shape.placement, tables(shape)) {}

std::int64_t MacBookWriter::add(const MacBookCard& card) {
  ++records_;
  execute(fmt::format(
      "INSERT INTO ZABCDRECORD (Z_PK, Z_ENT, ZFIRSTNAME, ZLASTNAME, ZMIDDLENAME, ZNICKNAME, ZTITLE, ZORGANIZATION, "
      "ZUNIQUEID, ZLINKID) VALUES ({}, {}, {}, {}, {}, {}, {}, {}, {}, {})",
      records_, shape_.contactEntity, quoted(card.first), quoted(card.last), quoted(card.middle), quoted(card.nickname),
      quoted(card.title), quoted(card.organization), quoted(card.identifier), quoted(card.link)));
  if (shape_.hasFlags) {
    execute(fmt::format(
        "UPDATE ZABCDRECORD SET ZDISPLAYFLAGS = {}, ZCONTAINERWHERECONTACTISME = {}, ZPREFERREDFORLINKNAME = {} "
        "WHERE Z_PK = {}",
        card.isShownAsOrganization ? 1 : 0, card.isOwn ? "1" : "NULL", card.givesName ? 1 : 0, records_));
  }
  // The rows stand the other way round, so that only their ordering index tells the order.
  for (std::size_t i = card.phones.size(); i-- > 0;) {
    execute(
        fmt::format("INSERT INTO ZABCDPHONENUMBER (Z_PK, Z_ENT, ZORDERINGINDEX, ZOWNER, ZLABEL, ZFULLNUMBER) VALUES "
                    "({}, 30, {}, {}, {}, {})",
                    ++values_, i, records_, quoted(card.phones[i].label), quoted(card.phones[i].text)));
  }
  for (std::size_t i = card.emails.size(); i-- > 0;) {
    execute(fmt::format(
        "INSERT INTO ZABCDEMAILADDRESS (Z_PK, Z_ENT, ZORDERINGINDEX, ZOWNER, ZLABEL, ZADDRESS, ZADDRESSNORMALIZED) "
        "VALUES ({}, 31, {}, {}, {}, {}, lower({}))",
        ++values_, i, records_, quoted(card.emails[i].label), quoted(card.emails[i].text),
        quoted(card.emails[i].text)));
  }
  return records_;
}

void MacBookWriter::addGroup(const std::string& name) {
  execute(fmt::format("INSERT INTO ZABCDRECORD (Z_PK, Z_ENT, ZNAME) VALUES ({}, {}, {})", ++records_,
                      shape_.contactEntity + 1, quoted(name)));
}

std::filesystem::path macBookPath(const std::filesystem::path& home, const std::string& account) {
  const auto folder = home / "Library/Application Support/AddressBook";
  return (account.empty() ? folder : folder / "Sources" / account) / "AddressBook-v22.abcddb";
}

}  // namespace chatsum::test
