#include "hosts/desktop/engine/CallModel.h"

#include <algorithm>
#include <utility>

#include "hosts/desktop/engine/CallWords.h"
#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/calls/Call.h"

namespace chatsum::desktop {
namespace {

const QString& phone() {
  static const QString kPhone = shownText(device::kPhoneService);
  return kPhone;
}

const QString& faceTime() {
  static const QString kFaceTime = shownText(device::kFaceTimeService);
  return kFaceTime;
}

/// Of a call that nobody took a duration of nothing says nothing.
QString shownDuration(const device::Call& call) {
  const bool wasTaken = call.status == device::CallStatus::kAnswered || call.status == device::CallStatus::kConnected;
  if (!wasTaken && call.duration && *call.duration < 1) return {};
  return shownText(device::durationText(call.duration));
}

}  // namespace

CallModel::CallModel(const DateWords& dates, QObject* parent)
    : QAbstractListModel(parent), dates_(dates), app_(phone()) {}

const CallPart* CallModel::part() const {
  if (!book_) return nullptr;
  return app_ == faceTime() ? &book_->facetime : &book_->phone;
}

int CallModel::rowCount(const QModelIndex& parent) const {
  const CallPart* shown = part();
  return parent.isValid() || !shown ? 0 : static_cast<int>(shown->list.calls.size());
}

QVariant CallModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const device::Call& call = part()->list.calls[row];
  switch (role) {
    case Qt::DisplayRole:
    case WhoRole:
      return shownPeople(call);
    case WhatRole:
      return shownKind(call);
    case TimeTextRole:
      return call.date ? dates_.moment(*call.date) : QString();
    case StatusRole:
      return shownText(device::wordOf(call.status));
    case DurationRole:
      return shownDuration(call);
    case IsTickedRole:
      return ticks_ && ticks_->has(row);
    default:
      return {};
  }
}

QHash<int, QByteArray> CallModel::roleNames() const {
  return {{WhoRole, "who"},       {WhatRole, "what"},         {TimeTextRole, "timeText"},
          {StatusRole, "status"}, {DurationRole, "duration"}, {IsTickedRole, "isTicked"}};
}

void CallModel::setApp(const QString& app) {
  if (app == app_ || (app != phone() && app != faceTime())) return;
  beginResetModel();
  app_ = app;
  ticks_ = nullptr;  // those of the other app
  endResetModel();
  Q_EMIT appChanged();
  Q_EMIT listChanged();
}

QString CallModel::balance() const {
  const CallPart* shown = part();
  return shown ? shownText(shown->list.balance.sentence(device::Done::kShown)) : QString();
}

QStringList CallModel::notes() const {
  const CallPart* shown = part();
  return shown ? shownSentences(shown->list.notes) : QStringList();
}

void CallModel::setBook(std::shared_ptr<const CallBook> book) {
  beginResetModel();
  book_ = std::move(book);
  endResetModel();
  Q_EMIT listChanged();
}

void CallModel::setTicks(const RowTicks* ticks) {
  ticks_ = ticks;
  tellTicks(0, rowCount() - 1);
}

void CallModel::tellTicks(int first, int last) {
  last = std::min(last, rowCount() - 1);
  if (first >= 0 && first <= last) Q_EMIT dataChanged(index(first), index(last), {IsTickedRole});
}

}  // namespace chatsum::desktop
