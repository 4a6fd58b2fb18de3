// Which rows a report is made of: those of the list in front (the messages, or the calls of an app), all of them or
// some. Each list has a choice of its own, which goes when the list changes. Main thread.
#pragma once

#include <QObject>
#include <QString>
#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "hosts/desktop/engine/ReportRows.h"
#include "hosts/desktop/engine/RowTicks.h"
#include "hosts/desktop/engine/SelectedRows.h"
#include "hosts/desktop/engine/Worker.h"
#include "hosts/device/report/TimeRange.h"

namespace chatsum::desktop {

/// The lists there are.
enum class RowsOf : std::uint8_t { kMessages, kPhone, kFaceTime };
inline constexpr std::size_t kLists = 3;

class Selection : public QObject {
  Q_OBJECT
  /// Which list is in front: "messages", "phone" or "facetime".
  Q_PROPERTY(QString app READ app WRITE setApp NOTIFY appChanged)
  Q_PROPERTY(Mode mode READ mode WRITE setMode NOTIFY changed)
  /// Times as ISO 8601 has them ("2024-03-31", "2024-03-31 18:05"); an empty one is an open end. A day alone as the end
  /// is inside.
  Q_PROPERTY(QString since READ since WRITE setSince NOTIFY changed)
  Q_PROPERTY(QString until READ until WRITE setUntil NOTIFY changed)
  Q_PROPERTY(bool sinceValid READ isSinceValid NOTIFY changed)
  Q_PROPERTY(bool untilValid READ isUntilValid NOTIFY changed)
  /// False also when the end lies before the start.
  Q_PROPERTY(bool rangeValid READ isRangeValid NOTIFY changed)
  /// Rows that are selected, and those of the list.
  Q_PROPERTY(int count READ count NOTIFY changed)
  Q_PROPERTY(int total READ total NOTIFY changed)
  Q_PROPERTY(bool hasAttachments READ hasAttachments NOTIFY changed)
  Q_PROPERTY(bool hasMultiMediaAttachments READ hasMultiMediaAttachments NOTIFY changed)

 public:
  enum class Mode { All, Ticked, Range, Hits };
  Q_ENUM(Mode)

  /// The worker outlives it.
  explicit Selection(Worker& worker, QObject* parent = nullptr);
  ~Selection() override;

  [[nodiscard]] QString app() const;
  /// Other words than the three do nothing.
  void setApp(const QString& app);
  [[nodiscard]] RowsOf list() const { return front_; }

  [[nodiscard]] Mode mode() const { return choice().mode; }
  void setMode(Mode mode);
  [[nodiscard]] QString since() const { return choice().since; }
  void setSince(const QString& text);
  [[nodiscard]] QString until() const { return choice().until; }
  void setUntil(const QString& text);
  [[nodiscard]] bool isSinceValid() const { return choice().isSinceValid; }
  [[nodiscard]] bool isUntilValid() const { return choice().isUntilValid; }
  [[nodiscard]] bool isRangeValid() const;
  [[nodiscard]] int count() const { return static_cast<int>(count_); }
  [[nodiscard]] int total() const;
  [[nodiscard]] bool hasAttachments() const { return view().hasAttachments(); }
  [[nodiscard]] bool hasMultiMediaAttachments() const { return view().hasMultiMediaAttachments(); }

  /// Ticks a row of the list in front, or takes the tick away; from then on the ticked rows are selected.
  Q_INVOKABLE void tick(int row, bool on);
  /// Ticks the rows between two, both included, in any order.
  Q_INVOKABLE void tickRange(int first, int last);
  /// Takes all ticks away and selects all rows.
  Q_INVOKABLE void clear();
  [[nodiscard]] Q_INVOKABLE bool isTicked(int row) const;

  /// Other rows, or none (null); everything about them is chosen anew. The list in front stays.
  void setRows(RowsOf list, std::shared_ptr<const ReportRows> rows);
  /// The first and the last message with a hit; none without hits.
  void setHits(std::optional<std::uint32_t> first, std::optional<std::uint32_t> last);
  [[nodiscard]] const RowTicks& ticks(RowsOf list) const { return choices_[static_cast<std::size_t>(list)].ticks; }

  /// Lets go of what was prepared last; nobody shows it any more.
  void forgetPrepared();

  /// What is selected now, whatever is selected later.
  [[nodiscard]] SelectedRows rows() const;
  /// The report of it; puts the list of its records together here and now, which many rows make slow.
  [[nodiscard]] SelectedReport request(device::ReportFormat format = device::ReportFormat::kText) const;
  /// Asked on the worker which pictures a page can show; without it, all of them.
  void setCanDraw(device::CanDraw canDraw) { canDraw_ = std::move(canDraw); }
  /// The same put together on the worker; `done` runs on the main thread, unless `receiver` is gone, `prepare` was
  /// called again, or another list came to the front or other rows into it meanwhile (`preparationDropped`).
  void prepare(device::ReportFormat format, QObject* receiver, std::function<void(SelectedReport)> done);

 Q_SIGNALS:
  void appChanged();
  /// What was being prepared is not wanted any more; its `done` will not run.
  void preparationDropped();
  /// Other rows are selected, or would be by another mode.
  void changed();
  /// The ticks of these rows changed.
  void ticksChanged(chatsum::desktop::RowsOf list, int first, int last);

 private:
  struct Choice {
    std::shared_ptr<const ReportRows> rows;
    Mode mode = Mode::All;
    QString since, until;
    bool isSinceValid = true, isUntilValid = true;
    device::TimeRange times;
    RowTicks ticks;
  };

  [[nodiscard]] const Choice& choice() const { return choices_[static_cast<std::size_t>(front_)]; }
  [[nodiscard]] Choice& choice() { return choices_[static_cast<std::size_t>(front_)]; }
  /// As `rows`, but looking at the ticks that are here: good until they change.
  [[nodiscard]] SelectedRows view() const;
  void dropPreparation();
  void setTicks(std::size_t first, std::size_t last, bool isTicked);
  void update();

  Worker& worker_;
  RowsOf front_ = RowsOf::kMessages;
  std::array<Choice, kLists> choices_;
  std::optional<std::uint32_t> firstHit_, lastHit_;
  std::size_t count_ = 0;
  device::CanDraw canDraw_;
  std::optional<Cancellation> preparing_;  // none: nothing is being prepared
  // What was prepared last, kept so that whoever lets go of it on the main thread takes no long list apart there.
  std::shared_ptr<const SelectedReport> prepared_;
};

}  // namespace chatsum::desktop
