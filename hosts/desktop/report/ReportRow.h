// What the window knows of one row of the report screen's table. Values only.
#pragma once

#include <QString>
#include <string>

#include "platform/uikit/IndexPath.h"

namespace chatsum::desktop {

struct ReportRow {
  enum class Kind { kName, kChoice, kFile };

  platform::IndexPath place;  ///< in the library's table; of a file, behind it: its application and the place there
  Kind kind = Kind::kFile;
  QString title;
  QString detail;         ///< at the right, or under a file's title
  QString fileName;       ///< with extension; files only
  std::string path;       ///< files only
  QString size;           ///< in words; files only
  QString icon;           ///< a url; empty for none
  bool editable = false;  ///< can be deleted
  QString sectionTitle;   ///< over the row: on the first one of a section that has a title
  QString sectionFooter;  ///< under the row: on the last one of a section that has a footer

  friend bool operator==(const ReportRow&, const ReportRow&) = default;

  /// Whether both are the same thing, however it looks.
  [[nodiscard]] bool isSameAs(const ReportRow& other) const {
    if (kind != other.kind) return false;
    return kind == Kind::kFile ? path == other.path : place.row == other.place.row;
  }
};

}  // namespace chatsum::desktop
