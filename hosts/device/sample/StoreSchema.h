// The tables of a device's Messages and AddressBook stores, as text, by generation of the system.
// Pure functions without state: any thread, any time.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device {

/// Systems whose Messages store differs in its columns. Dates are seconds since 2001 before `ios11`, nanoseconds from
/// there on.
enum class Generation { ios6, ios9, ios10, ios11, ios14, ios17, ios18 };

/// Every generation, oldest first.
const std::vector<Generation>& allGenerations();

/// "ios14" for `Generation::ios14`.
std::string_view generationName(Generation generation);

/// The generation of that name; answers false and leaves `generation` alone for an unknown name.
[[nodiscard]] bool generationNamed(std::string_view name, Generation& generation);

/// Whether dates of the Messages store count nanoseconds (else seconds).
bool hasNanosecondDates(Generation generation);

/// Column names of one of the tables `message`, `chat`, `handle`, `attachment`, `chat_message_join`, in their order;
/// empty for any other table.
std::vector<std::string_view> columnsOf(std::string_view table, Generation generation);

/// CREATE TABLE statements of the Messages store. The triggers of a real store are left out: they call functions that
/// only a device has.
std::string messageStoreTables(Generation generation);

/// CREATE INDEX statements of the Messages store, apart from the tables because filling first is much faster.
std::string messageStoreIndexes(Generation generation);

/// CREATE TABLE statements of the AddressBook store.
std::string addressBookTables();

/// CREATE INDEX statements of the AddressBook store.
std::string addressBookIndexes();

}  // namespace chatsum::device
