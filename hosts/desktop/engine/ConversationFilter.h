// The conversations that a person looks for, and the one that is shown. Main thread.
#pragma once

#include <QSortFilterProxyModel>
#include <QString>
#include <QVariant>

#include "hosts/desktop/engine/ConversationItem.h"
#include "hosts/desktop/engine/ConversationModel.h"

namespace chatsum::desktop {

class ConversationFilter : public QSortFilterProxyModel {
  Q_OBJECT
  /// A part of a name, or of a number however it is written; empty: all.
  Q_PROPERTY(QString filter READ filter WRITE setFilter NOTIFY filterChanged)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  /// Of all conversations.
  Q_PROPERTY(int total READ total NOTIFY countChanged)
  Q_PROPERTY(QString selectedGuid READ selectedGuid NOTIFY selectedChanged)
  // What the list shows of it, also while it is filtered away.
  Q_PROPERTY(QString selectedName READ selectedName NOTIFY selectedChanged)
  Q_PROPERTY(QString selectedMembers READ selectedMembers NOTIFY selectedChanged)
  Q_PROPERTY(QString selectedInitials READ selectedInitials NOTIFY selectedChanged)
  Q_PROPERTY(bool selectedIsGroup READ selectedIsGroup NOTIFY selectedChanged)
  /// Its row among those shown; -1 when it is none of them.
  Q_PROPERTY(int selectedRow READ selectedRow NOTIFY selectedRowChanged)

 public:
  /// The model outlives it.
  explicit ConversationFilter(ConversationModel& model, QObject* parent = nullptr);

  [[nodiscard]] QString filter() const { return filter_; }
  void setFilter(const QString& filter);
  [[nodiscard]] int count() const { return rowCount(); }
  [[nodiscard]] int total() const { return model_.rowCount(); }
  [[nodiscard]] QString selectedGuid() const { return selectedGuid_; }
  [[nodiscard]] QString selectedName() const { return selected(ConversationModel::NameRole).toString(); }
  [[nodiscard]] QString selectedMembers() const { return selected(ConversationModel::MembersRole).toString(); }
  [[nodiscard]] QString selectedInitials() const { return selected(ConversationModel::InitialsRole).toString(); }
  [[nodiscard]] bool selectedIsGroup() const { return selected(ConversationModel::IsGroupRole).toBool(); }
  [[nodiscard]] int selectedRow() const;

  /// Shows the messages of that conversation; nothing for a guid that no conversation has.
  Q_INVOKABLE void select(const QString& guid);
  /// Shows the messages of the selected one anew.
  Q_INVOKABLE void readAgain();
  /// Shows no messages.
  Q_INVOKABLE void selectNone();

 Q_SIGNALS:
  void filterChanged();
  void countChanged();
  void selectedChanged();
  void selectedRowChanged();
  /// Somebody wants to see that conversation.
  void conversationSelected(const device::Conversation& conversation);
  void conversationLeft();

 protected:
  [[nodiscard]] bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

 private:
  [[nodiscard]] QVariant selected(ConversationModel::Role role) const;

  ConversationModel& model_;
  QString filter_, selectedGuid_;
  ConversationWords words_;
};

}  // namespace chatsum::desktop
