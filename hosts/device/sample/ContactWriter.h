// Writes a device's AddressBook store through prepared statements in one transaction.
// One thread at a time. Texts handed over are read during the call only.
// A failure is kept: later calls answer 0 and `finish` answers the sentence.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/sample/StoreFile.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::device {

/// A number or address with its label as it is stored: "_$!<Mobile>!$_", a word of the person's own, empty for NULL.
struct LabelledValue {
  std::string_view label;
  std::string_view value;
};

struct ContactCard {
  std::string_view first = {};
  std::string_view last = {};
  std::string_view middle = {};
  std::string_view organization = {};
  std::string_view nickname = {};
  bool isOrganization = false;
  std::vector<LabelledValue> phones = {};
  std::vector<LabelledValue> emails = {};
  std::string_view street = {};  // a postal address, when one of the two is given
  std::string_view city = {};
  std::int64_t link = -1;  // what `addLink` answered: cards of one person
  bool preferredName = true;
};

class ContactWriter {
 public:
  explicit ContactWriter(const std::filesystem::path& path, Placement placement = Placement::mainFile);
  ~ContactWriter();

  /// A new link between cards of one person.
  std::int64_t addLink();

  /// Adds one card and answers its record ID, 0 after a failure.
  std::int64_t addContact(const ContactCard& card);

  [[nodiscard]] StoreFile& file() { return file_; }

  /// Builds the indexes and puts the store in its place. Nothing when all is well, else one sentence.
  [[nodiscard]] std::optional<std::string> finish();

 private:
  void prepare(sqlite::Statement& statement, std::string_view sql);
  bool run(const sqlite::Statement& statement);
  std::int64_t labelRow(std::string_view label);
  std::int64_t addValue(std::int64_t person, int property, int identifier, const LabelledValue& value);
  void addPostalAddress(std::int64_t person, const ContactCard& card);

  StoreFile file_;
  sqlite::Statement people_, values_, labels_, lastFours_, entries_, links_;
  std::map<std::string, std::int64_t, std::less<>> labelRows_;
  std::int64_t valueCount_ = 0;
};

}  // namespace chatsum::device
