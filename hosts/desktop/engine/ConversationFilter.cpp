#include "hosts/desktop/engine/ConversationFilter.h"

#include "hosts/desktop/engine/Texts.h"

namespace chatsum::desktop {

ConversationFilter::ConversationFilter(ConversationModel& model, QObject* parent)
    : QSortFilterProxyModel(parent), model_(model) {
  setSourceModel(&model);
  setDynamicSortFilter(false);
  const auto tell = [this] {
    Q_EMIT countChanged();
    Q_EMIT selectedRowChanged();
  };
  connect(this, &QAbstractItemModel::rowsInserted, this, tell);
  connect(this, &QAbstractItemModel::rowsRemoved, this, tell);
  connect(this, &QAbstractItemModel::modelReset, this, tell);
}

void ConversationFilter::setFilter(const QString& filter) {
  if (filter == filter_) return;
  filter_ = filter;
  words_ = ConversationWords(utf8Of(filter));
  invalidateFilter();
  Q_EMIT filterChanged();
}

bool ConversationFilter::filterAcceptsRow(int row, const QModelIndex&) const { return words_.mean(model_.item(row)); }

QVariant ConversationFilter::selected(ConversationModel::Role role) const {
  const int row = selectedGuid_.isEmpty() ? -1 : model_.rowOf(selectedGuid_);
  return row < 0 ? QVariant() : model_.index(row).data(role);
}

int ConversationFilter::selectedRow() const {
  const int row = selectedGuid_.isEmpty() ? -1 : model_.rowOf(selectedGuid_);
  return row < 0 ? -1 : mapFromSource(model_.index(row)).row();
}

void ConversationFilter::select(const QString& guid) {
  const int row = guid.isEmpty() ? -1 : model_.rowOf(guid);
  if (row < 0 || guid == selectedGuid_) return;
  selectedGuid_ = guid;
  Q_EMIT selectedChanged();
  Q_EMIT selectedRowChanged();
  Q_EMIT conversationSelected(model_.item(row).conversation);
}

void ConversationFilter::readAgain() {
  const int row = selectedGuid_.isEmpty() ? -1 : model_.rowOf(selectedGuid_);
  if (row >= 0) Q_EMIT conversationSelected(model_.item(row).conversation);
}

void ConversationFilter::selectNone() {
  if (selectedGuid_.isEmpty()) return;
  selectedGuid_.clear();
  Q_EMIT selectedChanged();
  Q_EMIT selectedRowChanged();
  Q_EMIT conversationLeft();
}

}  // namespace chatsum::desktop
