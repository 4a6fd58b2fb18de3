// The sources that a person may open: those opened lately, and those found on this machine by a thread of its own, so
// that a slow disk holds up nothing else. Main thread.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <QUrl>
#include <memory>
#include <optional>
#include <vector>

#include "hosts/desktop/engine/Worker.h"
#include "hosts/device/session/SourceSearch.h"
#include "hosts/device/source/SourceFacts.h"
#include "platform/foundation/Date.h"

class QSettings;

namespace chatsum::desktop {

class DateWords;

struct SourceEntry {
  QString path;
  QString kind;                                ///< "device", "backup", "mac" or "file"
  QString device;                              ///< its name; empty when it has none
  QString holds;                               ///< what was in it when it was opened, in words
  bool hasMessages = false, hasCalls = false;  ///< a look from outside found these stores
  std::optional<Date> date = {};
  bool isEncrypted = false;
  bool isRecent = false;
  bool isFound = false;
};

class SourceList : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(bool searching READ isSearching NOTIFY searchingChanged)
  Q_PROPERTY(bool sampleAvailable READ isSampleAvailable CONSTANT)
  Q_PROPERTY(int count READ count NOTIFY countChanged)
  /// Where was looked, and what could not be looked at: for a person who misses something.
  Q_PROPERTY(QStringList places READ places NOTIFY searchingChanged)
  Q_PROPERTY(QStringList notes READ notes NOTIFY searchingChanged)

 public:
  enum Role {
    PathRole = Qt::UserRole + 1,
    KindRole,
    DeviceRole,    ///< its name, else that of its folder
    DateTextRole,  ///< when the backup was made; empty when it is not known
    EncryptedRole,
    IsRecentRole,
    HoldsRole,  ///< in words; empty when it is not known
  };

  /// Keeps recent ones in the settings, which outlive it like the words.
  SourceList(QSettings& settings, const DateWords& dates, bool isSampleAvailable, QObject* parent = nullptr);

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] bool isSearching() const { return isSearching_; }
  [[nodiscard]] bool isSampleAvailable() const { return isSampleAvailable_; }
  [[nodiscard]] int count() const { return rowCount(); }
  [[nodiscard]] QStringList places() const { return places_; }
  [[nodiscard]] QStringList notes() const { return notes_; }

  /// Where `search` looks; this machine's usual places when nothing is set.
  void setRoots(device::SearchRoots roots) { roots_ = std::move(roots); }

  Q_INVOKABLE void search();
  /// Asks for the file or folder at the address to be opened; other addresses do nothing.
  Q_INVOKABLE void openUrl(const QUrl& url);
  /// No longer recent.
  Q_INVOKABLE void forget(const QString& path);

  /// It was opened just now.
  void remember(const device::SourceFacts& facts, const QString& holds);

 Q_SIGNALS:
  void searchingChanged();
  void countChanged();
  void openRequested(const QString& path);

 private:
  struct Found {
    std::vector<SourceEntry> entries;
    QStringList places, notes;
  };

  [[nodiscard]] static device::StoreResult<Found> find(const device::SearchRoots& roots);
  [[nodiscard]] static SourceEntry entryOf(const device::SourceFacts& facts);
  static void lookInside(SourceEntry& entry);
  [[nodiscard]] static QString holdsOf(const SourceEntry& entry);
  void load();
  void save();
  /// Puts recent ones in front of those that were found, each once.
  void arrange();

  QSettings& settings_;
  const DateWords& dates_;
  bool isSampleAvailable_;
  bool isSearching_ = false;
  device::SearchRoots roots_;
  std::vector<SourceEntry> recent_, found_, entries_;
  QStringList places_, notes_;
  Worker searcher_;
};

}  // namespace chatsum::desktop
