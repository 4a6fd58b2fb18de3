// The criteria of the report screen's table and the earlier reports of all applications as one list for QML. The
// library's own sections of earlier reports are left out: they hold those of one application, and of messages only.
// Main thread only.
#pragma once

#include <QAbstractListModel>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "hosts/desktop/report/ReportIcons.h"
#include "hosts/desktop/report/ReportRow.h"
#include "hosts/device/reports/EarlierReports.h"
#include "libchatsum/CSReportGenerationViewController/CSReportGenerationViewController.h"
#include "platform/uikit/UITableView.h"

namespace chatsum::desktop {

class ReportTableModel final : public QAbstractListModel, private platform::UITableViewListener {
  Q_OBJECT

 public:
  enum Role {
    kSectionRole = Qt::UserRole + 1,
    kSectionTitleRole,
    kSectionFooterRole,
    kKindRole,  ///< "name", "choice" or "file"
    kTitleRole,
    kDetailRole,
    kFileNameRole,
    kSizeRole,
    kIconRole,
    kEditableRole,
  };

  explicit ReportTableModel(std::shared_ptr<ReportIcons> icons);
  ~ReportTableModel() override;

  /// Shows the screen's table from here on; nullptr: nothing.
  void setScreen(const std::shared_ptr<CSReportGenerationViewController>& screen);

  /// Shows these earlier reports from here on, under the names of their applications; newest first.
  void setReports(std::vector<device::EarlierReport> reports);

  /// The user chose a criterion; nothing for a row that is none.
  void activate(int row);
  /// The earlier report in a row; nullptr for another row. Good until the list changes.
  [[nodiscard]] const device::EarlierReport* reportAt(int row) const;
  /// The file of an earlier report is gone; nothing for one that is not listed.
  void forget(const std::string& path);
  /// The name field holds another text.
  void followName();

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 Q_SIGNALS:
  /// The library loaded its table anew, and the list has followed.
  void reloaded();

 private:
  void didReload(platform::UITableView& tableView) override;
  void didUpdate(platform::UITableView& tableView, const platform::UITableViewUpdate& update) override;
  void didDeselectRow(platform::UITableView& /*tableView*/, platform::IndexPath /*indexPath*/,
                      bool /*animated*/) override {}

  [[nodiscard]] std::vector<ReportRow> read() const;
  [[nodiscard]] ReportRow readRow(platform::IndexPath place) const;
  [[nodiscard]] ReportRow rowOf(const device::EarlierReport& report, platform::IndexPath place) const;
  void refresh();
  void take(std::vector<ReportRow> rows);
  void removeRun(std::size_t first, std::size_t count);

  std::shared_ptr<ReportIcons> icons_;
  std::shared_ptr<CSReportGenerationViewController> screen_;
  std::vector<device::EarlierReport> reports_;  // by application, newest first
  std::vector<ReportRow> rows_;
};

}  // namespace chatsum::desktop
