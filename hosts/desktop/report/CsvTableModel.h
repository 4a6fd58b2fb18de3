// A file of comma-separated values as a table, however large: its first row gives the titles of the columns. Main
// thread only.
#pragma once

#include <QAbstractTableModel>
#include <QStringList>
#include <memory>
#include <vector>

#include "hosts/desktop/report/RowSource.h"

namespace chatsum::desktop {

class CsvTableModel final : public QAbstractTableModel {
  Q_OBJECT

 public:
  /// What is behind these columns of a row is not shown.
  static constexpr int kMostColumns = 256;

  /// Shows the file from here on; the sentence says why it cannot, empty when it can.
  [[nodiscard]] QString open(const QString& path);
  void close();

  /// About how many characters wide the column is, by its title and the first rows, within reason.
  Q_INVOKABLE int charactersOf(int column) const;

  /// Whether all rows of the file are known.
  [[nodiscard]] bool isComplete() const { return source_ && source_->isComplete(); }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  /// Titles of columns, numbers of rows from 1.
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 private:
  void grow();
  [[nodiscard]] const QStringList& cellsOf(int row) const;

  std::unique_ptr<RowSource> source_;
  QStringList titles_;
  int rows_ = 0;
  int columns_ = 0;
  mutable int measured_ = 0;  // rows that `widest_` knows of
  mutable std::vector<qsizetype> widest_;
  mutable int lateRow_ = -1;  // the row whose cells were asked for last: views ask for one after the other
  mutable QStringList lateCells_;
};

}  // namespace chatsum::desktop
