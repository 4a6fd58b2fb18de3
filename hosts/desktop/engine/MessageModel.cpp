#include "hosts/desktop/engine/MessageModel.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/TextSearch.h"
#include "hosts/desktop/engine/Texts.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {
namespace {

// Bytes of a message that are shown: a long letter. A hundred thousand would hold the window up.
constexpr std::size_t kLongestText = 16 * 1024;

std::string_view textIn(RecordField& field, const Record& record) {
  const Value* value = field.find(record);
  return value && value->asString() ? value->asString()->view() : std::string_view();
}

const Date* dateIn(RecordField& field, const Record& record) {
  const Value* value = field.find(record);
  return value ? value->asDate() : nullptr;
}

bool holds(const std::vector<std::uint32_t>& rows, std::size_t row) {
  return std::binary_search(rows.begin(), rows.end(), row);
}

}  // namespace

MessageModel::MessageModel(Worker& worker, OpenDevice& device, const DateWords& dates, QObject* parent)
    : QAbstractListModel(parent), worker_(worker), device_(device), dates_(dates) {}

MessageModel::~MessageModel() {
  reading_.cancel();
  searching_.cancel();
  worker_.discard(std::move(list_));
}

int MessageModel::rowCount(const QModelIndex& parent) const {
  if (parent.isValid() || !list_) return 0;
  return static_cast<int>(std::min<std::size_t>(list_->rows.size(), std::numeric_limits<int>::max()));
}

QVariant MessageModel::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const auto row = static_cast<std::size_t>(index.row());
  const Record& record = *list_->rows.records[row].asRecord();
  switch (role) {
    case Qt::DisplayRole:
    case TextRole:
      return place_.find(record) ? QString() : textOf(record);
    case NameRole:
      return shownName(textIn(name_, record));
    case OriginRole:
      return holds(list_->origins, row) ? originOf(record) : QString();
    case TimeTextRole: {
      const Date* date = dateIn(date_, record);
      return date ? dates_.time(*date) : QString();
    }
    case IsFromMeRole: {
      const Value* value = fromMe_.find(record);
      return value && value->integerValue() > 0;
    }
    case DateLineRole:
      return dateLineOf(row);
    case AttachmentRole:
      return attachmentOf(record);
    case IsSystemRole:
      return holds(list_->events, row);
    case IsTickedRole:
      return ticks_ && ticks_->has(row);
    case IsHitRole:
      return holds(hits_, row);
    default:
      return {};
  }
}

QHash<int, QByteArray> MessageModel::roleNames() const {
  return {{TextRole, "text"},
          {NameRole, "name"},
          {OriginRole, "origin"},
          {TimeTextRole, "timeText"},
          {IsFromMeRole, "isFromMe"},
          {DateLineRole, "dateLine"},
          {AttachmentRole, "attachment"},
          {IsSystemRole, "isSystem"},
          {IsTickedRole, "isTicked"},
          {IsHitRole, "isHit"}};
}

QString MessageModel::textOf(const Record& record) const {
  const std::string_view text = textIn(text_, record);
  if (text.size() <= kLongestText) return shownText(text);
  return shownStart(text, kLongestText) + QStringLiteral("…\n\n") +
         tr("This message is very long; a report has all of it.");
}

QString MessageModel::originOf(const Record& record) const {
  QStringList parts = {shownName(textIn(address_, record)), shownName(textIn(service_, record))};
  parts.removeAll(QString());
  return parts.join(QStringLiteral(" · "));
}

QVariantMap MessageModel::attachmentOf(const Record& record) const {
  const Value* value = place_.find(record);
  const String* place = value ? value->asString() : nullptr;
  if (!place)
    return {
        {QStringLiteral("kind"), QString()}, {QStringLiteral("name"), QString()}, {QStringLiteral("url"), QString()}};
  const AttachmentKind kind = kinds_.of(place->view());
  QString url;
  if (kind == AttachmentKind::kImage || kind == AttachmentKind::kPdf) {
    url = QStringLiteral("image://attachment/") + idOf({device_.number(), place->str()});
  }
  return {{QStringLiteral("kind"), wordOf(kind)},
          {QStringLiteral("name"), shownName(path::lastComponent(place->view()))},
          {QStringLiteral("url"), url}};
}

QString MessageModel::dateLineOf(std::size_t row) const {
  const Array& records = list_->rows.records;
  const Date* date = dateIn(date_, *records[row].asRecord());
  if (!date) return {};
  const Date* before = row > 0 ? dateIn(date_, *records[row - 1].asRecord()) : nullptr;
  if (before && DateWords::dayNumber(*before) == DateWords::dayNumber(*date)) return {};
  return dates_.day(*date);
}

QString MessageModel::balance() const { return list_ ? shownSentence(list_->balance) : QString(); }

QStringList MessageModel::notes() const { return list_ ? shownSentences(list_->notes) : QStringList(); }

void MessageModel::show(const device::Conversation& conversation) {
  clear();
  setProgress(-1);
  setState(State::Reading);
  const QPointer<QObject> guard(this);
  reading_ = worker_.run(
      this,
      [this, guard, conversation,
       &device = device_](const Cancellation& cancellation) -> device::StoreResult<std::shared_ptr<const MessageList>> {
        if (!device.session()) return device::StoreProblem{"The source was closed before its messages were read."};
        return readMessages(*device.session(), conversation, [&](std::uint64_t done, std::uint64_t total) {
          const double share = total > 0 ? std::min(1.0, static_cast<double>(done) / static_cast<double>(total)) : -1;
          postToMain(guard, [this, cancellation, share] {
            if (!cancellation.isCancelled() && state_ == State::Reading) setProgress(share);
          });
        });
      },
      [this](device::StoreResult<std::shared_ptr<const MessageList>> read) {
        if (!read) return setState(State::Failed, shownSentence(read.problem().sentence));
        setList(std::move(read.value()));
      });
}

void MessageModel::clear() {
  reading_.cancel();
  if (list_) exchangeList(nullptr);
  if (state_ != State::Empty) setState(State::Empty);
}

void MessageModel::setList(std::shared_ptr<const MessageList> list) {
  reading_.cancel();
  exchangeList(std::move(list));
  setState(list_ ? State::Ready : State::Empty);
}

void MessageModel::exchangeList(std::shared_ptr<const MessageList> list) {
  stopSearch();
  beginResetModel();
  auto before = std::exchange(list_, std::move(list));
  hits_.clear();
  const bool hadHit = std::exchange(currentHit_, -1) >= 0;
  endResetModel();
  searchText_.clear();
  Q_EMIT listChanged();
  Q_EMIT hitsChanged();
  if (hadHit) Q_EMIT currentHitChanged();
  worker_.discard(std::move(before));
}

void MessageModel::setState(State state, const QString& error) {
  state_ = state;
  error_ = error;
  Q_EMIT stateChanged();
}

void MessageModel::setProgress(double progress) {
  if (progress_ == progress) return;
  progress_ = progress;
  Q_EMIT progressChanged();
}

void MessageModel::search(const QString& text, int from) {
  if (text == searchText_) return;
  stopSearch();
  searchText_ = text;
  isSearching_ = !text.isEmpty() && list_;
  setHits({}, from);  // those of other words would be taken for those of these
  if (!isSearching_) return;
  searching_ = worker_.run(
      this,
      [list = list_, words = utf8Of(text)](const Cancellation& cancellation) {
        return device::StoreResult<std::vector<std::uint32_t>>(findRows(list->rows.records, words, cancellation));
      },
      [this, from](device::StoreResult<std::vector<std::uint32_t>> found) {
        isSearching_ = false;
        setHits(found ? std::move(found.value()) : std::vector<std::uint32_t>(), from);
      });
}

void MessageModel::stopSearch() {
  searching_.cancel();
  isSearching_ = false;
}

void MessageModel::setHits(std::vector<std::uint32_t> hits, int from) {
  const bool areOthers = !hits.empty() || !hits_.empty();
  hits_ = std::move(hits);
  currentHit_ = -1;
  if (!hits_.empty()) {
    const auto below = std::upper_bound(hits_.begin(), hits_.end(), static_cast<std::uint32_t>(std::max(from, 0)));
    currentHit_ = std::max(0, static_cast<int>(below - hits_.begin()) - 1);
  }
  Q_EMIT hitsChanged();
  if (!areOthers) return;
  if (rowCount() > 0) Q_EMIT dataChanged(index(0), index(rowCount() - 1), {IsHitRole});
  Q_EMIT currentHitChanged();
}

void MessageModel::setCurrentHit(int hit) {
  if (hit == currentHit_) return;
  currentHit_ = hit;
  Q_EMIT currentHitChanged();
}

int MessageModel::currentHitRow() const {
  return currentHit_ < 0 ? -1 : static_cast<int>(hits_[static_cast<std::size_t>(currentHit_)]);
}

void MessageModel::nextHit() {
  if (!hits_.empty()) setCurrentHit((currentHit_ + 1) % hits());
}

void MessageModel::previousHit() {
  if (!hits_.empty()) setCurrentHit((currentHit_ + hits() - 1) % hits());
}

void MessageModel::tellTicks(int first, int last) {
  last = std::min(last, rowCount() - 1);
  if (first >= 0 && first <= last) Q_EMIT dataChanged(index(first), index(last), {IsTickedRole});
}

}  // namespace chatsum::desktop
