#include "hosts/desktop/engine/SourceList.h"

#include <QSettings>
#include <algorithm>
#include <utility>

#include "hosts/desktop/engine/DateWords.h"
#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/session/SourceOpening.h"
#include "platform/foundation/PathComponents.h"

namespace chatsum::desktop {
namespace {

constexpr std::size_t kMostRecent = 10;
constexpr const char* kRecent = "sources/recent";

const SourceEntry* entryAt(const std::vector<SourceEntry>& entries, const QString& path) {
  const auto found =
      std::find_if(entries.begin(), entries.end(), [&](const SourceEntry& entry) { return entry.path == path; });
  return found == entries.end() ? nullptr : &*found;
}

}  // namespace

SourceList::SourceList(QSettings& settings, const DateWords& dates, bool isSampleAvailable, QObject* parent)
    : QAbstractListModel(parent),
      settings_(settings),
      dates_(dates),
      isSampleAvailable_(isSampleAvailable),
      roots_(device::SearchRoots::ofThisMachine()) {
  load();
  arrange();
}

int SourceList::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(entries_.size());
}

QVariant SourceList::data(const QModelIndex& index, int role) const {
  if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid)) return {};
  const SourceEntry& entry = entries_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case PathRole:
      return entry.path;
    case KindRole:
      return entry.kind;
    case Qt::DisplayRole:
    case DeviceRole:
      return entry.device.isEmpty() ? shownName(path::lastComponent(utf8Of(entry.path))) : shownName(entry.device);
    case DateTextRole:
      return entry.date ? dates_.shortDay(*entry.date) : QString();
    case EncryptedRole:
      return entry.isEncrypted;
    case IsRecentRole:
      return entry.isRecent;
    case HoldsRole:
      return holdsOf(entry);
    default:
      return {};
  }
}

QHash<int, QByteArray> SourceList::roleNames() const {
  return {{PathRole, "path"},           {KindRole, "kind"},         {DeviceRole, "device"}, {DateTextRole, "dateText"},
          {EncryptedRole, "encrypted"}, {IsRecentRole, "isRecent"}, {HoldsRole, "holds"}};
}

device::StoreResult<SourceList::Found> SourceList::find(const device::SearchRoots& roots) {
  const device::FoundSources sources = device::findSources(roots);
  Found found;
  for (const device::SourceFacts& facts : sources.sources) {
    found.entries.push_back(entryOf(facts));
    found.entries.back().isFound = true;
    lookInside(found.entries.back());
  }
  found.places = shownSentences(sources.places);
  found.notes = shownSentences(sources.notes);
  return found;
}

SourceEntry SourceList::entryOf(const device::SourceFacts& facts) {
  SourceEntry entry;
  entry.path = shownText(facts.path);
  entry.kind = shownText(device::wordOf(facts.kind));
  entry.device = shownName(facts.deviceName);
  entry.date = facts.date;
  entry.isEncrypted = facts.isEncrypted;
  return entry;
}

/// Which stores there are. An encrypted source does not tell without its password.
void SourceList::lookInside(SourceEntry& entry) {
  if (entry.isEncrypted) return;
  const auto source = device::openSource(utf8Of(entry.path), {});
  if (!source) return;
  const auto has = [&](device::SourceStore store) {
    const auto location = source.value()->store(store);
    return location && location.value().has_value();
  };
  entry.hasMessages = has(device::SourceStore::kMessages);
  entry.hasCalls = has(device::SourceStore::kCalls) || has(device::SourceStore::kOldCalls);
}

QString SourceList::holdsOf(const SourceEntry& entry) {
  if (!entry.holds.isEmpty()) return entry.holds;
  if (entry.hasMessages && entry.hasCalls) return tr("Messages and calls");
  if (entry.hasMessages) return tr("Messages");
  return entry.hasCalls ? tr("Calls") : QString();
}

void SourceList::search() {
  if (isSearching_) return;
  isSearching_ = true;
  Q_EMIT searchingChanged();
  searcher_.run(
      this, [roots = roots_](const Cancellation&) { return find(roots); },
      [this](device::StoreResult<Found> result) {
        isSearching_ = false;
        if (result) {
          found_ = std::move(result.value().entries);
          places_ = result.value().places;
          notes_ = result.value().notes;
          arrange();
        } else {
          notes_ = QStringList(shownSentence(result.problem().sentence));
        }
        Q_EMIT searchingChanged();
      });
}

void SourceList::openUrl(const QUrl& url) {
  if (url.isLocalFile()) Q_EMIT openRequested(url.toLocalFile());
}

void SourceList::forget(const QString& path) {
  const auto erased = std::erase_if(recent_, [&](const SourceEntry& entry) { return entry.path == path; });
  if (erased == 0) return;
  save();
  arrange();
}

void SourceList::remember(const device::SourceFacts& facts, const QString& holds) {
  SourceEntry entry = entryOf(facts);
  entry.holds = holds;
  entry.isRecent = true;
  std::erase_if(recent_, [&](const SourceEntry& other) { return other.path == entry.path; });
  recent_.insert(recent_.begin(), std::move(entry));
  if (recent_.size() > kMostRecent) recent_.resize(kMostRecent);
  save();
  arrange();
}

void SourceList::arrange() {
  std::vector<SourceEntry> entries;
  for (SourceEntry entry : recent_) {
    // A newer backup in the same place has other facts.
    if (const SourceEntry* found = entryAt(found_, entry.path)) {
      entry.device = found->device;
      entry.date = found->date;
      entry.isEncrypted = found->isEncrypted;
      entry.isFound = true;
    }
    entries.push_back(std::move(entry));
  }
  for (const SourceEntry& entry : found_) {
    if (!entryAt(recent_, entry.path)) entries.push_back(entry);
  }
  beginResetModel();
  entries_ = std::move(entries);
  endResetModel();
  Q_EMIT countChanged();
}

void SourceList::load() {
  const int size = std::min(settings_.beginReadArray(QLatin1String(kRecent)), static_cast<int>(kMostRecent));
  for (int i = 0; i < size; ++i) {
    settings_.setArrayIndex(i);
    SourceEntry entry;
    entry.path = settings_.value(QStringLiteral("path")).toString();
    entry.kind = settings_.value(QStringLiteral("kind")).toString();
    entry.device = settings_.value(QStringLiteral("device")).toString();
    entry.holds = settings_.value(QStringLiteral("holds")).toString();
    if (settings_.contains(QStringLiteral("date"))) {
      entry.date = Date{settings_.value(QStringLiteral("date")).toDouble()};
    }
    entry.isEncrypted = settings_.value(QStringLiteral("encrypted")).toBool();
    entry.isRecent = true;
    if (!entry.path.isEmpty()) recent_.push_back(std::move(entry));
  }
  settings_.endArray();
}

void SourceList::save() {
  settings_.remove(QLatin1String(kRecent));
  settings_.beginWriteArray(QLatin1String(kRecent), static_cast<int>(recent_.size()));
  for (std::size_t i = 0; i < recent_.size(); ++i) {
    const SourceEntry& entry = recent_[i];
    settings_.setArrayIndex(static_cast<int>(i));
    settings_.setValue(QStringLiteral("path"), entry.path);
    settings_.setValue(QStringLiteral("kind"), entry.kind);
    settings_.setValue(QStringLiteral("device"), entry.device);
    settings_.setValue(QStringLiteral("holds"), entry.holds);
    if (entry.date) settings_.setValue(QStringLiteral("date"), entry.date->secondsSince1970);
    settings_.setValue(QStringLiteral("encrypted"), entry.isEncrypted);
  }
  settings_.endArray();
}

}  // namespace chatsum::desktop
