// The rows of a CSV report, written as other programs read them. No state.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

namespace chatsum::bench {

using Row = std::vector<std::string>;  ///< cells, UTF-8; a cell may hold line ends

/// The rows of a comma-separated file (RFC 4180) without the first, which holds titles.
[[nodiscard]] std::vector<Row> readCsv(const std::filesystem::path& file);

/// 0x1F ends a cell and 0x1E a row, so that line ends are text; these two bytes inside a cell become spaces.
void writeSeparated(const std::vector<Row>& rows, const std::filesystem::path& file);
/// A document for groff with tbl: three columns, a gap after each row, a new table every fifty rows, because a table is
/// held whole.
void writeGroff(const std::vector<Row>& rows, const std::filesystem::path& file);
/// A line "name: text (date)" for each row in ISO 8859-1, with "?" for what that cannot say.
void writeLatin1Lines(const std::vector<Row>& rows, const std::filesystem::path& file);

}  // namespace chatsum::bench
