// The conversations of the open source, the newest first. Main thread.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <memory>

#include "hosts/desktop/engine/ConversationItem.h"

namespace chatsum::desktop {

class DateWords;

class ConversationModel : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role {
    GuidRole = Qt::UserRole + 1,  ///< of its first chat; no other conversation has it
    NameRole,
    MembersRole,   ///< of a group the names of its people, else the addresses of the one
    LastTextRole,  ///< the day of the last message
    CountRole,
    IsGroupRole,
    InitialsRole,  ///< one or two letters for a round badge; empty for numbers
  };

  /// The words outlive it.
  explicit ConversationModel(const DateWords& dates, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  /// Null for none.
  void setItems(std::shared_ptr<const ConversationItems> items);
  [[nodiscard]] const ConversationItem& item(int row) const { return (*items_)[static_cast<std::size_t>(row)]; }
  /// -1 for none.
  [[nodiscard]] int rowOf(const QString& guid) const;

 private:
  const DateWords& dates_;
  std::shared_ptr<const ConversationItems> items_;
};

/// "ML" for "Maya Lindqvist", "" for "+1 (555) 010-0142".
[[nodiscard]] QString initialsOf(const QString& name);

}  // namespace chatsum::desktop
