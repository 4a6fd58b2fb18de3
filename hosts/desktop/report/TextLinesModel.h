// The lines of a text file, however large: only those that are shown are read. Main thread only.
#pragma once

#include <QAbstractListModel>
#include <memory>

#include "hosts/desktop/report/RowSource.h"

namespace chatsum::desktop {

class TextLinesModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role { kLineRole = Qt::UserRole + 1 };

  /// Shows the file from here on; the sentence says why it cannot, empty when it can.
  [[nodiscard]] QString open(const QString& path);
  void close();

  /// Whether all lines of the file are known.
  [[nodiscard]] bool isComplete() const { return source_ && source_->isComplete(); }
  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

 private:
  void grow();

  std::unique_ptr<RowSource> source_;
  int rows_ = 0;
};

}  // namespace chatsum::desktop
