// The report screen's table as one list for QML. It answers from a copy of its own, because the library's rows are gone
// before their removal is told: views must find the old rows until then. Main thread only.
#pragma once

#include <QAbstractListModel>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/desktop/report/ReportIcons.h"
#include "hosts/desktop/report/ReportRow.h"
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

  /// The user chose a row; nothing for a row that is not there.
  void activate(int row);
  /// The user wants a file deleted; nothing for a row that cannot be.
  void remove(int row);
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
  [[nodiscard]] ReportRow readRow(platform::IndexPath place, const Record* file) const;
  void take(std::vector<ReportRow> rows);
  void removeRun(std::size_t first, std::size_t count);

  std::shared_ptr<ReportIcons> icons_;
  std::shared_ptr<CSReportGenerationViewController> screen_;
  std::vector<ReportRow> rows_;
};

}  // namespace chatsum::desktop
