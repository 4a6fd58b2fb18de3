// The table of the report screen: sections, rows, cells.

#include <array>

#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "libchatsum/CSReportGenerationViewController/CellIdentifiers.h"
#include "libchatsum/CSReportGenerationViewController/CriteriaRows.h"
#include "libchatsum/CSReportGenerationViewController/ScreenWords.h"
#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum {
namespace {

using platform::IndexPath;
using platform::UITableView;
using platform::UITableViewCell;
using screen_words::localized;

/// Titles of the sections of earlier reports, by App type.
constexpr std::array<const char*, 3> kSectionTitles = {"Messages", "Phone", "FaceTime"};

}  // namespace

/// The App type whose reports a section lists: its number less one, whatever App type the screen has. A screen of the
/// other applications loads its own reports under its own code and so lists none.
std::int64_t CSReportGenerationViewController::appTypeOf(std::int64_t section) { return section - 1; }

/// The files a section lists, nullptr when there are none. The caller holds the lock.
Array* CSReportGenerationViewController::filesOf(std::int64_t section) {
  if (!fileRecords_) return nullptr;
  const auto files = fileRecords_->find(appTypeOf(section));
  return files == fileRecords_->end() ? nullptr : &files->second;
}

/// The file-info record at a place of the list; nullptr when there is none.
const Record* CSReportGenerationViewController::fileIn(const Array* files, std::int64_t row) {
  if (!files || row < 0 || static_cast<std::uint64_t>(row) >= files->size()) return nullptr;
  return (*files)[static_cast<std::size_t>(row)].asRecord();
}

/// The file-info record of a row; none for a row that is no longer in the list.
std::optional<Record> CSReportGenerationViewController::fileAt(IndexPath indexPath) {
  const std::lock_guard lock(mutex_);
  const Record* const file = fileIn(filesOf(indexPath.section), indexPath.row);
  return file ? std::optional(*file) : std::nullopt;
}

std::int64_t CSReportGenerationViewController::numberOfSectionsInTableView(UITableView& /*tableView*/) {
  const std::lock_guard lock(mutex_);
  if (!fileRecords_) return 2;
  return static_cast<std::int64_t>(fileRecords_->size()) + 1;
}

std::int64_t CSReportGenerationViewController::numberOfRowsInSection(UITableView& /*tableView*/, std::int64_t section) {
  if (section == criteria::kSection) return criteria::kRows;
  const std::lock_guard lock(mutex_);
  const Array* const files = filesOf(section);
  return files ? static_cast<std::int64_t>(files->size()) : 0;
}

std::optional<std::string> CSReportGenerationViewController::titleForHeaderInSection(UITableView& tableView,
                                                                                     std::int64_t section) {
  if (section == criteria::kSection) return localized("Criteria");
  const auto title = static_cast<std::uint64_t>(appTypeOf(section));
  if (title >= kSectionTitles.size() || numberOfRowsInSection(tableView, section) == 0) return std::nullopt;
  return localized(kSectionTitles[static_cast<std::size_t>(title)]);
}

std::optional<std::string> CSReportGenerationViewController::titleForFooterInSection(UITableView& /*tableView*/,
                                                                                     std::int64_t section) {
  if (section != criteria::kSection) return std::nullopt;
  const Value records = selectedRecords()->value(request::kRecords);
  const std::size_t count = records.asArray() ? records.asArray()->size() : 0;
  return localized("You have selected") + " " + std::to_string(count) + " " + localized("records.");
}

std::shared_ptr<UITableViewCell> CSReportGenerationViewController::cellForRowAtIndexPath(UITableView& tableView,
                                                                                         IndexPath indexPath) {
  const bool isCriterion = indexPath.section == criteria::kSection;
  const bool isLoaded = fileRecordsDictionary().has_value();
  const char* const identifier = isCriterion ? cell_identifiers::kCriterion
                                 : isLoaded  ? cell_identifiers::kReport
                                             : cell_identifiers::kLoading;
  const auto cell = tableView.dequeueReusableCellWithIdentifier(identifier, indexPath);
  cell->setSelectionStyle(platform::UITableViewCellSelectionStyle::kBlue);
  cell->setAccessoryType(platform::UITableViewCellAccessoryType::kDisclosureIndicator);
  if (!isCriterion) {
    if (isLoaded) {
      fillFileCell(*cell, fileAt(indexPath).value_or(Record()));
    } else {
      cell->setAccessoryType(platform::UITableViewCellAccessoryType::kNone);
    }
    return cell;
  }
  cell->textLabel().setText("");
  cell->detailTextLabel().setText("");  // a cell that comes back may have shown another criterion
  if (indexPath.row == criteria::kNameRow) {
    fillNameCell(*cell);
  } else if (indexPath.row == criteria::kSortOrderRow) {
    cell->textLabel().setText(localized("Sort By"));
    cell->detailTextLabel().setText(screen_words::localizedWith("Date, %@", localized(sortDesc() ? "Desc" : "Asc")));
  } else if (indexPath.row == criteria::kFileFormatRow) {
    cell->textLabel().setText(localized("File Format"));
    cell->detailTextLabel().setText(std::string(screen_words::formatName(fileFormat())));
  }
  return cell;
}

void CSReportGenerationViewController::fillFileCell(UITableViewCell& cell, const Record& file) {
  const String* const name = file[report_entry::kName].asString();
  const std::string fullName = name ? name->str() : std::string();
  cell.textLabel().setText(path::deletingExtension(fullName));
  auto& formatter = ChatsumUtils::dateFormatter();
  formatter.setStyles(platform::DateStyle::kMedium, platform::DateStyle::kShort, true);
  const Date* const created = file[report_entry::kCreationDate].asDate();
  cell.detailTextLabel().setText(created ? formatter.stringFromDate(*created) : std::string());
  cell.setImage(ChatsumUtils::imageWithFileName(screen_words::lowerCase(path::extension(fullName))));
}

void CSReportGenerationViewController::fillNameCell(UITableViewCell& cell) {
  constexpr double kFieldLeft = 100, kFieldTop = 7, kFieldHeight = 30, kBesideField = 135;

  cell.textLabel().setText(localized("Name"));
  if (!nameTextField_) {
    nameTextField_ = std::make_shared<platform::UITextField>();
    nameTextField_->setAutocorrectionType(platform::UITextAutocorrectionType::kNo);
    nameTextField_->setTextColor(platform::kGrayColor);
  }
  auto& field = *nameTextField_;
  field.setTextAlignment(platform::TextAlignment::kRight);
  field.setReturnKeyType(platform::UIReturnKeyType::kDone);
  field.setClearButtonMode(platform::UITextFieldViewMode::kWhileEditing);
  field.setDelegate(weak_from_this());
  field.addTargetForEditingChanged(this, [weak = weak_from_this()](platform::UITextField& changed) {
    if (const auto self = weak.lock()) self->textFieldDidChange(changed);
  });
  cell.addSubview(nameTextField_);
  field.setText(fileName());
  cell.setSelectionStyle(platform::UITableViewCellSelectionStyle::kNone);
  field.setFrame({{kFieldLeft, kFieldTop}, {cell.frame().size.width - kBesideField, kFieldHeight}});
}

}  // namespace chatsum
