// The cards of a device's AddressBook store. Numbers and addresses are read whole at the first need, in one pass; names
// only of the cards that are asked for, so a large book costs little. Any thread; what it answers lives as long as it.
#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "platform/interfaces/AddressBook.h"
#include "platform/sqlite/Connection.h"
#include "platform/sqlite/Statement.h"

namespace chatsum::platform::system {

/// One number or e-mail address of a card, as it is stored: maybe not UTF-8.
struct ContactValue {
  ABRecordID record = -1;
  ABProperty property = ABProperty::kPhone;
  std::int64_t label = -1;  ///< for `ContactStore::label`
  std::string_view text;
};

struct ContactCard {
  ABRecordID record = -1;
  std::string name;        ///< as shown; empty when the card has no words at all
  std::string identifier;  ///< the card's own, empty when it has none
  std::int64_t link = -1;  ///< equal on the cards of one person, -1 on a single one
};

class ContactStore {
 public:
  /// Reads from the connection, which may be empty (then there are no cards) and may have the tables of any generation;
  /// what they lack is missing in the cards. Only the store's own tables are read, whatever stands before them under
  /// the same names in the connection.
  explicit ContactStore(sqlite::Connection connection);
  ~ContactStore();
  ContactStore(const ContactStore&) = delete;
  ContactStore& operator=(const ContactStore&) = delete;

  /// While one lives, cards are read without asking the file system for a lock each time: many look-ups in a row cost a
  /// third. The store must outlive it.
  class Reading {
   public:
    explicit Reading(const ContactStore& store);
    ~Reading();
    Reading(const Reading&) = delete;
    Reading& operator=(const Reading&) = delete;

   private:
    const ContactStore& store_;
  };

  /// Every phone number and e-mail address in the order of the store.
  [[nodiscard]] const std::vector<ContactValue>& values() const;
  /// The places in `values()` of one card's, in their order.
  [[nodiscard]] std::vector<std::size_t> valuesOf(ABRecordID record) const;
  /// The label's text as stored ("_$!<Mobile>!$_"); none for no label or one that is not in the store.
  [[nodiscard]] std::optional<std::string> label(std::int64_t label) const;

  /// nullptr when there is no such card.
  [[nodiscard]] const ContactCard* card(ABRecordID record) const;
  /// The name of the person behind a card: of linked cards the one that gives the name decides; a card without any
  /// words is named by its first e-mail address or number. Empty when there is no such card.
  [[nodiscard]] std::string personName(ABRecordID record) const;
  /// The card that names a linked person, -1 for a single card.
  [[nodiscard]] ABRecordID namingCard(ABRecordID record) const;
  /// The card with an identifier, -1 when there is none.
  [[nodiscard]] ABRecordID recordWithIdentifier(std::string_view identifier) const;
  /// The device owner's own card, -1 when none is marked.
  [[nodiscard]] ABRecordID ownCard() const;

  /// What could not be read, one sentence; empty when all could.
  [[nodiscard]] std::string problem() const;

 private:
  struct Collector;

  void readValues() const;
  void readLabels() const;
  void readLinks() const;
  [[nodiscard]] const ContactCard* cardLocked(ABRecordID record) const;
  [[nodiscard]] ABRecordID namingCardLocked(ABRecordID record) const;
  [[nodiscard]] std::vector<std::string> columnsOf(const std::string& table) const;
  /// Calls `take(statement)` on every row; a failure is noted as a problem.
  template <class Take>
  void forEachRow(const std::string& sql, Take take) const;
  /// The record in the first row of a statement, -1 when there is none; a failure is noted as a problem.
  [[nodiscard]] ABRecordID recordOf(const sqlite::Statement& statement) const;
  void noteProblem(const std::string& what) const;

  sqlite::Connection connection_;
  mutable std::mutex mutex_;  // the connection and everything below but the values
  mutable sqlite::Statement cardStatement_;
  mutable std::unordered_map<ABRecordID, std::unique_ptr<ContactCard>> cards_;
  mutable std::unordered_map<std::int64_t, std::string> labels_;
  mutable std::unordered_map<std::int64_t, ABRecordID> namingCards_;  // by link
  mutable bool areLinksRead_ = false;
  mutable std::string problem_;
  mutable int readings_ = 0;

  mutable std::once_flag valuesOnce_, orderOnce_;
  mutable std::string texts_;
  mutable std::vector<ContactValue> values_;
  mutable std::vector<std::uint64_t> order_;  // (record, place), sorted
};

}  // namespace chatsum::platform::system
