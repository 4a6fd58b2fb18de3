// The names under which the report screen's table keeps its cells.
#pragma once

namespace chatsum::cell_identifiers {

inline constexpr const char* kReport = "CellIdentifier";          ///< an earlier report
inline constexpr const char* kCriterion = "MoreCellIdentifier";   ///< name, sort order, file format
inline constexpr const char* kLoading = "LoadingCellIdentifier";  ///< in the place of earlier reports not read yet

}  // namespace chatsum::cell_identifiers
