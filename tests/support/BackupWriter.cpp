#include "tests/support/BackupWriter.h"

#include <plist/plist.h>
#include <sqlite3.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <string_view>
#include <utility>

#include "tests/support/BackupCrypto.h"

namespace chatsum::test {
namespace {

namespace fs = std::filesystem;

constexpr std::uint32_t kManifestClass = 4;
constexpr std::int32_t kBackupDate = 757'414'800;  // seconds from 2001: 2025-01-01T09:00:00Z
constexpr std::int64_t kModified = 1'735'722'000;  // the same time from 1970
constexpr const char* kIdentifier = "00008110-000A1C2E3F4B5D6E";

std::string contentOf(const fs::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::string nameOf(const BackupEntry& entry) { return entry.domain + "-" + entry.path; }

std::string idOf(const BackupEntry& entry) { return hexOf(sha1Of(nameOf(entry))); }

/// A property list that is built up and written in one of the two forms.
class List {
 public:
  List() : root_(plist_new_dict()) {}
  ~List() { plist_free(root_); }
  List(const List&) = delete;
  List& operator=(const List&) = delete;

  [[nodiscard]] plist_t root() const { return root_; }
  void set(const char* key, plist_t value) const { plist_dict_set_item(root_, key, value); }
  void set(const char* key, const std::string& text) const { set(key, plist_new_string(text.c_str())); }
  void setData(const char* key, const std::string& bytes) const {
    set(key, plist_new_data(bytes.data(), bytes.size()));
  }

  [[nodiscard]] std::string bytes(bool isXml) const {
    char* made = nullptr;
    std::uint32_t length = 0;
    isXml ? plist_to_xml(root_, &made, &length) : plist_to_bin(root_, &made, &length);
    std::string bytes(made, length);
    isXml ? plist_to_xml_free(made) : plist_to_bin_free(made);
    return bytes;
  }

 private:
  plist_t root_;
};

/// The archived description of one file, as rows of Manifest.db have it.
std::string descriptionOf(const BackupEntry& entry, const std::string& key) {
  List archive;
  archive.set("$version", plist_new_uint(100000));
  archive.set("$archiver", "NSKeyedArchiver");
  plist_t top = plist_new_dict();
  plist_dict_set_item(top, "root", plist_new_uid(1));
  archive.set("$top", top);

  plist_t objects = plist_new_array();
  plist_array_append_item(objects, plist_new_string("$null"));
  plist_t file = plist_new_dict();
  const auto number = [&](const char* name, std::uint64_t value) {
    plist_dict_set_item(file, name, plist_new_uint(value));
  };
  number("LastModified", kModified);
  number("LastStatusChange", kModified);
  number("Birth", kModified);
  number("Size", entry.size.value_or(entry.kind == BackupEntry::Kind::kFile ? entry.content.size() : 0));
  number("Mode", entry.kind == BackupEntry::Kind::kFolder ? 040755U
                 : entry.kind == BackupEntry::Kind::kLink ? 0120755U
                                                          : 0100644U);
  number("UserID", 501);
  number("GroupID", 501);
  number("InodeNumber", 1000);
  number("ProtectionClass", entry.protectionClass);
  number("Flags", 0);
  plist_dict_set_item(file, "RelativePath", plist_new_uid(2));
  plist_dict_set_item(file, "$class", plist_new_uid(3));
  if (!key.empty()) plist_dict_set_item(file, "EncryptionKey", plist_new_uid(4));
  plist_array_append_item(objects, file);
  plist_array_append_item(objects, plist_new_string(entry.path.c_str()));
  const auto ofClass = [&](const char* name) {
    plist_t names = plist_new_array();
    plist_array_append_item(names, plist_new_string(name));
    plist_array_append_item(names, plist_new_string("NSObject"));
    plist_t description = plist_new_dict();
    plist_dict_set_item(description, "$classname", plist_new_string(name));
    plist_dict_set_item(description, "$classes", names);
    plist_array_append_item(objects, description);
  };
  ofClass("MBFile");
  if (!key.empty()) {
    plist_t data = plist_new_dict();
    plist_dict_set_item(data, "NS.data", plist_new_data(key.data(), key.size()));
    plist_dict_set_item(data, "$class", plist_new_uid(5));
    plist_array_append_item(objects, data);
    ofClass("NSMutableData");
  }
  archive.set("$objects", objects);
  return archive.bytes(false);
}

std::string bigEndian(std::uint64_t value, unsigned width) {
  std::string bytes;
  for (unsigned i = width; i-- > 0;) bytes += static_cast<char>(value >> (8 * i));
  return bytes;
}

std::string recordText(const std::string& text) { return text.empty() ? "\xFF\xFF" : bigEndian(text.size(), 2) + text; }

}  // namespace

BackupWriter::BackupWriter(fs::path folder, BackupOptions options)
    : folder_(std::move(folder)), options_(std::move(options)) {
  fs::create_directories(folder_);
}

fs::path BackupWriter::placeOf(const std::string& id) const {
  return options_.isFlat ? folder_ / id : folder_ / id.substr(0, 2) / id;
}

fs::path BackupWriter::storedPath(const std::string& domain, const std::string& path) const {
  return placeOf(hexOf(sha1Of(domain + "-" + path)));
}

std::string BackupWriter::keyOf(const BackupEntry& entry) const {
  return isEncrypted() ? sha256Of("the key of " + nameOf(entry)) : "";
}

void BackupWriter::write(const fs::path& path, const std::string& bytes) {
  std::error_code error;
  fs::create_directories(path.parent_path(), error);
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  if (!file && !failure_) failure_ = "'" + path.string() + "' cannot be written.";
}

void BackupWriter::add(const BackupEntry& entry) {
  entries_.push_back(entry);
  if (entry.kind != BackupEntry::Kind::kFile || !entry.isStored) return;
  const bool isCovered = isEncrypted() && entry.hasKey;
  write(placeOf(idOf(entry)), isCovered ? encrypted(entry.content, keyOf(entry), entry.isPadded) : entry.content);
}

std::optional<std::string> BackupWriter::finish() {
  writeLists();
  if (options_.isFlat) {
    writeRecords();
  } else {
    writeDatabase();
  }
  return failure_;
}

void BackupWriter::writeLists() {
  List info;
  info.set("Device Name", kBackupDeviceName);
  info.set("Display Name", kBackupDeviceName);
  info.set("Product Type", "iPhone14,5");
  info.set("Product Version", options_.isFlat ? "9.3.5" : "17.2");
  info.set("Build Version", options_.isFlat ? "13G36" : "21C62");
  info.set("Serial Number", "SAMPLE000142");
  info.set("Unique Identifier", kIdentifier);
  info.set("Target Identifier", kIdentifier);
  info.set("Phone Number", kBackupPhoneNumber);
  info.set("Last Backup Date", plist_new_date(kBackupDate, 0));
  write(folder_ / "Info.plist", info.bytes(options_.isXml));

  List status;
  status.set("BackupState", "new");
  status.set("Date", plist_new_date(kBackupDate, 0));
  status.set("IsFullBackup", plist_new_bool(1));
  status.set("SnapshotState", options_.snapshotState);
  status.set("UUID", "5D2B8A10-3C57-4D0E-9B2A-6F1E00C40142");
  status.set("Version", "3.3");
  write(folder_ / "Status.plist", status.bytes(options_.isXml));

  List manifest;
  manifest.set("IsEncrypted", plist_new_bool(isEncrypted() ? 1 : 0));
  manifest.set("Version", options_.isFlat ? "9.1" : "10.0");
  manifest.set("Date", plist_new_date(kBackupDate, 0));
  manifest.set("WasPasscodeSet", plist_new_bool(1));
  plist_t lockdown = plist_new_dict();
  plist_dict_set_item(lockdown, "DeviceName", plist_new_string(kBackupDeviceName));
  plist_dict_set_item(lockdown, "ProductVersion", plist_new_string(options_.isFlat ? "9.3.5" : "17.2"));
  plist_dict_set_item(lockdown, "UniqueDeviceID", plist_new_string(kIdentifier));
  manifest.set("Lockdown", lockdown);
  if (isEncrypted()) {
    manifest.setData("BackupKeyBag", options_.keyBag.value_or(keyBag({.password = *options_.password,
                                                                      .iterations = options_.iterations,
                                                                      .firstIterations = options_.firstIterations,
                                                                      .isOld = options_.hasOldKeyBag})));
    const bool isListEncrypted = !options_.hasOldKeyBag && !options_.isFlat;
    if (isListEncrypted) manifest.setData("ManifestKey", keyWithClass(kManifestClass, manifestFileKey()));
  }
  write(folder_ / "Manifest.plist", manifest.bytes(options_.isXml));
}

void BackupWriter::writeDatabase() {
  const fs::path path = folder_ / "Manifest.db";
  fs::remove(path);
  sqlite3* database = nullptr;
  sqlite3_open(path.c_str(), &database);
  const auto run = [&](const char* sql) {
    if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK && !failure_) {
      failure_ = "'" + path.string() + "' cannot be written (" + sqlite3_errmsg(database) + ").";
    }
  };
  run("BEGIN;"
      "CREATE TABLE Files (fileID TEXT PRIMARY KEY, domain TEXT, relativePath TEXT, flags INTEGER, file BLOB);"
      "CREATE INDEX FilesDomainIdx ON Files(domain);"
      "CREATE INDEX FilesRelativePathIdx ON Files(relativePath);"
      "CREATE INDEX FilesFlagsIdx ON Files(flags);"
      "CREATE TABLE Properties (key TEXT PRIMARY KEY, value BLOB);");
  sqlite3_stmt* insert = nullptr;
  sqlite3_prepare_v2(database, "INSERT OR REPLACE INTO Files VALUES (?, ?, ?, ?, ?)", -1, &insert, nullptr);
  const auto text = [&](int column, const std::string& value) {
    sqlite3_bind_text(insert, column, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
  };
  for (const BackupEntry& entry : entries_) {
    const bool hasKey = isEncrypted() && entry.hasKey && entry.kind == BackupEntry::Kind::kFile;
    const std::string description =
        descriptionOf(entry, hasKey ? keyWithClass(entry.protectionClass, keyOf(entry)) : "");
    text(1, entry.id.value_or(idOf(entry)));
    text(2, entry.domain);
    text(3, entry.path);
    sqlite3_bind_int(insert, 4, static_cast<int>(entry.kind));
    sqlite3_bind_blob(insert, 5, description.data(), static_cast<int>(description.size()), SQLITE_TRANSIENT);
    if (sqlite3_step(insert) != SQLITE_DONE && !failure_) failure_ = sqlite3_errmsg(database);
    sqlite3_reset(insert);
  }
  sqlite3_finalize(insert);
  run("COMMIT");
  sqlite3_close(database);
  if (isEncrypted() && !options_.hasOldKeyBag) write(path, encrypted(contentOf(path), manifestFileKey()));
}

void BackupWriter::writeRecords() {
  std::string list("mbdb\x05\x00", 6);
  for (const BackupEntry& entry : entries_) {
    const bool isFile = entry.kind == BackupEntry::Kind::kFile;
    const bool hasKey = isEncrypted() && entry.hasKey && isFile;
    list += recordText(entry.domain) + recordText(entry.path) +
            recordText(entry.kind == BackupEntry::Kind::kLink ? entry.content : "") +
            recordText(isFile ? sha1Of(entry.content) : "") +
            recordText(hasKey ? keyWithClass(entry.protectionClass, keyOf(entry)) : "");
    list += bigEndian(entry.kind == BackupEntry::Kind::kFolder ? 040755U
                      : entry.kind == BackupEntry::Kind::kLink ? 0120755U
                                                               : 0100644U,
                      2);
    list += bigEndian(1000, 8) + bigEndian(501, 4) + bigEndian(501, 4);
    for (int i = 0; i < 3; ++i) list += bigEndian(kModified, 4);
    list += bigEndian(entry.size.value_or(isFile ? entry.content.size() : 0), 8);
    list += bigEndian(entry.protectionClass, 1) + bigEndian(1, 1) + recordText("property") + recordText("value");
  }
  write(folder_ / "Manifest.mbdb", list);
}

namespace {

/// Adds everything below `root`; paths in the backup are those below it.
void addTree(BackupWriter& writer, const fs::path& root, const std::string& domain, bool keepsCalls) {
  if (!fs::is_directory(root / "Library")) return;
  std::vector<fs::path> paths;
  for (const auto& found : fs::recursive_directory_iterator(root / "Library")) paths.push_back(found.path());
  std::sort(paths.begin(), paths.end());
  for (const fs::path& path : paths) {
    BackupEntry entry{.domain = domain, .path = path.lexically_relative(root).generic_string()};
    if (!keepsCalls && entry.path.find("Library/CallHistory") != std::string::npos) continue;
    if (entry.path.starts_with("Library/SMS/Attachments")) entry.domain = "MediaDomain";
    if (fs::is_symlink(path)) {
      entry.kind = BackupEntry::Kind::kLink;
      entry.content = fs::read_symlink(path).string();
    } else if (fs::is_directory(path)) {
      entry.kind = BackupEntry::Kind::kFolder;
    } else {
      entry.content = contentOf(path);
    }
    writer.add(entry);
  }
}

}  // namespace

std::optional<std::string> writeBackup(const fs::path& device, const fs::path& backup, const BackupOptions& options) {
  for (const std::string_view var : {"private/var", "var"}) {
    if (!fs::is_directory(device / var / "mobile/Library")) continue;
    BackupWriter writer(backup, options);
    addTree(writer, device / var / "mobile", "HomeDomain", options.password.has_value());
    addTree(writer, device / var / "wireless", "WirelessDomain", options.password.has_value());
    return writer.finish();
  }
  return "'" + device.string() + "' is no device: it has no var/mobile/Library.";
}

}  // namespace chatsum::test
