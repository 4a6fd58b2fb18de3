#include "hosts/desktop/report/TextLinesModel.h"

#include <utility>

namespace chatsum::desktop {

QString TextLinesModel::open(const QString& path) {
  close();
  auto source = std::make_unique<RowSource>(path, RowKind::kLines);
  connect(source.get(), &RowSource::grew, this, &TextLinesModel::grow);
  QString problem = source->start();
  if (problem.isEmpty()) source_ = std::move(source);
  return problem;
}

void TextLinesModel::close() {
  if (!source_) return;
  beginResetModel();
  source_.reset();
  rows_ = 0;
  endResetModel();
}

void TextLinesModel::grow() {
  if (source_->rows() > rows_) {
    beginInsertRows({}, rows_, source_->rows() - 1);
    rows_ = source_->rows();
    endInsertRows();
  }
}

int TextLinesModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : rows_; }

QVariant TextLinesModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  if (role != Qt::DisplayRole && role != kLineRole) return {};
  return QString::fromUtf8(source_->row(index.row()));
}

QHash<int, QByteArray> TextLinesModel::roleNames() const { return {{kLineRole, "line"}}; }

}  // namespace chatsum::desktop
