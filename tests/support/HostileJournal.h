// A database with the journal of an interrupted change beside it that names a file, as somebody would write it who
// wants that file deleted.
#pragma once

#include <filesystem>
#include <string>

namespace chatsum::test {

/// Leaves the database at `path` in the middle of `change`, SQL that touches more than the first page, with a -journal
/// whose last record names `victim`. The problem when that cannot be done, else an empty text.
[[nodiscard]] std::string putHostileJournal(const std::filesystem::path& path, const std::filesystem::path& victim,
                                            const std::string& change = "CREATE TABLE interrupted AS SELECT 1 AS a");

}  // namespace chatsum::test
