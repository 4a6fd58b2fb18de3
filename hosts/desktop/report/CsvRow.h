// The cells of one record of comma-separated values (RFC 4180). No state, any thread.
#pragma once

#include <QStringList>
#include <string_view>

namespace chatsum::desktop {

/// The record's cells without their quotes; `record` has no line end. A cell of more bytes than `most` is cut behind
/// them and gets "…". Stray quotes stand as they are. At least one cell.
[[nodiscard]] QStringList csvCells(std::string_view record, std::size_t most);

}  // namespace chatsum::desktop
