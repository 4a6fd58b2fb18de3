// Writes the sample device that comes with Chatsum: a handful of invented people, about 480 messages of theirs and some
// calls.
// No state; two threads may write to two folders.
#pragma once

#include <filesystem>
#include <optional>
#include <string>

namespace chatsum::device {

/// Writes below `root` (made when it is missing) what a device has there: `var/mobile/Library/SMS/sms.db` (iOS 17),
/// the attachments beside it, `var/mobile/Library/AddressBook/AddressBook.sqlitedb`, the call list and its temporary
/// twin in `var/mobile/Library/CallHistoryDB`, and, where the file system has links, `User`, a link to var/mobile.
/// The rows and files are the same every time. A sample that was written there before is replaced; any other store is
/// left alone and refused. Answers nothing when all is well, else one sentence, and then no new file is left.
[[nodiscard]] std::optional<std::string> writeSampleDevice(const std::filesystem::path& root);

}  // namespace chatsum::device
