// Writes address books as the Mac's program Contacts keeps them, one file for each account. One thread at a time.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include "hosts/device/sample/StoreFile.h"

namespace chatsum::test {

struct MacBookValue {
  std::string label;  ///< empty: NULL
  std::string text;
};

/// What is empty is NULL.
struct MacBookCard {
  std::string first = {}, last = {}, middle = {}, nickname = {}, title = {};
  std::string organization = {};
  std::string identifier = {};
  std::string link = {};
  std::vector<MacBookValue> phones = {}, emails = {};
  bool isShownAsOrganization = false;
  bool isOwn = false;
  bool givesName = false;
};

/// What of a book differs from one Mac to the next.
struct MacBookShape {
  int contactEntity = 22;
  bool namesEntities = true;  ///< has the table that tells the entities
  bool hasFlags = true;       ///< has the columns that mark own cards, organizations and names of links
  device::Placement placement = device::Placement::mainFile;
};

class MacBookWriter {
 public:
  MacBookWriter(const std::filesystem::path& path, MacBookShape shape);
  explicit MacBookWriter(const std::filesystem::path& path) : MacBookWriter(path, MacBookShape()) {}

  /// Adds a card and answers its row.
  std::int64_t add(const MacBookCard& card);
  /// Adds a group, which is a record, too.
  void addGroup(const std::string& name);
  /// For rows that have no operation here.
  void execute(const std::string& sql) { file_.execute(sql); }

  /// Puts the book in its place. Nothing when all is well, else one sentence.
  [[nodiscard]] std::optional<std::string> finish() { return file_.finish(""); }

 private:
  MacBookShape shape_;
  device::StoreFile file_;
  std::int64_t records_ = 0, values_ = 0;
};

/// The place of the book of an account, and of the Mac itself when it is empty, below a home.
[[nodiscard]] std::filesystem::path macBookPath(const std::filesystem::path& home, const std::string& account = "");

}  // namespace chatsum::test
