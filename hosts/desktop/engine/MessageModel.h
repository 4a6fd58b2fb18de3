// The messages of the conversation that is shown. A window over its records: a row costs nothing until it is looked at.
// Main thread; reading and searching happen on the worker.
#pragma once

#include <QAbstractListModel>
#include <QString>
#include <QStringList>
#include <QVariantMap>
#include <cstdint>
#include <limits>
#include <memory>
#include <vector>

#include "hosts/desktop/engine/AttachmentKind.h"
#include "hosts/desktop/engine/Cancellation.h"
#include "hosts/desktop/engine/MessageList.h"
#include "hosts/desktop/engine/OpenDevice.h"
#include "hosts/desktop/engine/RowTicks.h"
#include "hosts/desktop/engine/Worker.h"
#include "hosts/device/conversations/Conversation.h"

namespace chatsum::desktop {

class DateWords;

class MessageModel : public QAbstractListModel {
  Q_OBJECT
  Q_PROPERTY(State state READ state NOTIFY stateChanged)
  /// Of reading, 0 to 1; -1 when nobody knows.
  Q_PROPERTY(double progress READ progress NOTIFY progressChanged)
  Q_PROPERTY(QString error READ error NOTIFY stateChanged)
  /// The sentence that accounts for every row of the store.
  Q_PROPERTY(QString balance READ balance NOTIFY stateChanged)
  Q_PROPERTY(QStringList notes READ notes NOTIFY stateChanged)
  Q_PROPERTY(int count READ count NOTIFY stateChanged)
  Q_PROPERTY(bool isSearching READ isSearching NOTIFY hitsChanged)
  /// How many rows hold the words that were searched for.
  Q_PROPERTY(int hits READ hits NOTIFY hitsChanged)
  /// The place among the hits, from 0; -1 without hits.
  Q_PROPERTY(int currentHit READ currentHit NOTIFY currentHitChanged)
  /// The row of that hit; -1 without hits.
  Q_PROPERTY(int currentHitRow READ currentHitRow NOTIFY currentHitChanged)

 public:
  enum class State { Empty, Reading, Ready, Failed };
  Q_ENUM(State)

  enum Role {
    TextRole = Qt::UserRole + 1,  ///< empty for a row that is a file; of a very long one the beginning, which says so
    NameRole,
    OriginRole,  ///< address and service, where they are others than before in a merged conversation
    TimeTextRole,
    IsFromMeRole,
    DateLineRole,  ///< the day, in the first row of each
    /// "kind" ("" for none, "image", "pdf", "movie", "audio", "file"), "name", and "url" of a picture of it or "".
    AttachmentRole,
    IsSystemRole,
    IsTickedRole,
    IsHitRole,
  };

  /// All of them outlive it.
  MessageModel(Worker& worker, OpenDevice& device, const DateWords& dates, QObject* parent = nullptr);
  ~MessageModel() override;

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
  [[nodiscard]] QHash<int, QByteArray> roleNames() const override;

  [[nodiscard]] State state() const { return state_; }
  [[nodiscard]] double progress() const { return progress_; }
  [[nodiscard]] QString error() const { return error_; }
  [[nodiscard]] QString balance() const;
  [[nodiscard]] QStringList notes() const;
  [[nodiscard]] int count() const { return rowCount(); }
  [[nodiscard]] bool isSearching() const { return isSearching_; }
  /// Whether a search was asked for that has not been ended, whatever it has found.
  [[nodiscard]] bool hasSearch() const { return !searchText_.isEmpty(); }
  [[nodiscard]] int hits() const { return static_cast<int>(hits_.size()); }
  [[nodiscard]] int currentHit() const { return currentHit_; }
  [[nodiscard]] int currentHitRow() const;

  /// Reads the conversation and shows it; what is shown now goes at once.
  void show(const device::Conversation& conversation);
  /// Shows nothing.
  void clear();
  /// The messages that are shown; null when there are none.
  [[nodiscard]] const std::shared_ptr<const MessageList>& list() const { return list_; }
  /// The same with messages that somebody else read.
  void setList(std::shared_ptr<const MessageList> list);

  /// Looks for the words in all texts, without regard to case; empty words end the search. The last hit that is not
  /// below the row becomes the current one, else the first one. Until it is known there are no hits.
  Q_INVOKABLE void search(const QString& text, int from = std::numeric_limits<int>::max());
  /// Behind the last hit comes the first one.
  Q_INVOKABLE void nextHit();
  Q_INVOKABLE void previousHit();
  /// The rows with hits, ascending.
  [[nodiscard]] const std::vector<std::uint32_t>& hitRows() const { return hits_; }

  /// Which rows are ticked, kept by somebody who tells of changes; null: none. Outlives it.
  void setTicks(const RowTicks* ticks) { ticks_ = ticks; }
  /// The ticks of these rows changed.
  void tellTicks(int first, int last);

 Q_SIGNALS:
  void stateChanged();
  void progressChanged();
  /// Other messages are shown, or none.
  void listChanged();
  void hitsChanged();
  void currentHitChanged();

 private:
  [[nodiscard]] QString textOf(const Record& record) const;
  [[nodiscard]] QString originOf(const Record& record) const;
  [[nodiscard]] QVariantMap attachmentOf(const Record& record) const;
  [[nodiscard]] QString dateLineOf(std::size_t row) const;
  void exchangeList(std::shared_ptr<const MessageList> list);
  void setState(State state, const QString& error = {});
  void setProgress(double progress);
  void setHits(std::vector<std::uint32_t> hits, int from);
  void setCurrentHit(int hit);
  void stopSearch();

  Worker& worker_;
  OpenDevice& device_;
  const DateWords& dates_;

  State state_ = State::Empty;
  double progress_ = -1;
  QString error_;
  std::shared_ptr<const MessageList> list_;
  Cancellation reading_, searching_;

  QString searchText_;
  bool isSearching_ = false;
  std::vector<std::uint32_t> hits_;
  int currentHit_ = -1;
  const RowTicks* ticks_ = nullptr;

  // Looking a key up remembers the shapes of records, and the words of kinds.
  mutable RecordField text_{"Text"}, name_{"Name"}, date_{"Date"}, fromMe_{"is_from_me"}, place_{"attachment_location"};
  mutable RecordField address_{"Address"}, service_{"Service"};
  mutable AttachmentKinds kinds_;
};

}  // namespace chatsum::desktop
