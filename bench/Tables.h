// The tables of the bench. Each makes its devices below `work`, prints what it measured, and answers whether every
// contender did its work.
#pragma once

#include <filesystem>
#include <vector>

namespace chatsum::bench {

/// Text and CSV reports of devices of these sizes (messages) against the sqlite3 program writing the same rows as CSV,
/// and what a large address book adds to a group.
[[nodiscard]] bool linesTables(const std::filesystem::path& work, const std::vector<long>& sizes, int rounds);

/// PDF reports of these sizes (rows) against other ways to make such a document of the same rows.
[[nodiscard]] bool pdfTables(const std::filesystem::path& work, const std::vector<long>& sizes, int rounds);

/// What the thumbnails of a PDF report cost: these many 12-megapixel photographs, with and without small pictures of
/// themselves inside.
[[nodiscard]] bool pictureTables(const std::filesystem::path& work, const std::vector<long>& counts, int rounds);

}  // namespace chatsum::bench
