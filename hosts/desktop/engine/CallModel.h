// The calls of one app, the newest first. Main thread.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <memory>

#include "hosts/desktop/engine/CallBook.h"
#include "hosts/desktop/engine/RowTicks.h"

namespace chatsum::desktop {

class DateWords;

class CallModel : public QAbstractListModel {
  Q_OBJECT
  /// "phone" or "facetime".
  Q_PROPERTY(QString app READ app WRITE setApp NOTIFY appChanged)
  Q_PROPERTY(int count READ count NOTIFY listChanged)
  /// The sentence that accounts for every row of the lists.
  Q_PROPERTY(QString balance READ balance NOTIFY listChanged)
  Q_PROPERTY(QStringList notes READ notes NOTIFY listChanged)

 public:
  enum Role {
    WhoRole = Qt::UserRole + 1,
    WhatRole,
    TimeTextRole,
    StatusRole,
    DurationRole,  ///< "0:03:12"; empty when it is not known, or nobody took the call
    IsTickedRole,
  };

  /// The words outlive it.
  explicit CallModel(const DateWords& dates, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] QString app() const { return app_; }
  /// Other words than the two do nothing.
  void setApp(const QString& app);
  [[nodiscard]] int count() const { return rowCount(); }
  [[nodiscard]] QString balance() const;
  [[nodiscard]] QStringList notes() const;

  /// Null for none.
  void setBook(std::shared_ptr<const CallBook> book);

  /// As those of messages.
  void setTicks(const RowTicks* ticks);
  void tellTicks(int first, int last);

 Q_SIGNALS:
  void appChanged();
  void listChanged();

 private:
  [[nodiscard]] const CallPart* part() const;

  const DateWords& dates_;
  QString app_;
  std::shared_ptr<const CallBook> book_;
  const RowTicks* ticks_ = nullptr;
};

}  // namespace chatsum::desktop
