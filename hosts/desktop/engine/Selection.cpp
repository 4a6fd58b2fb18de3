#include "hosts/desktop/engine/Selection.h"

#include <QPointer>
#include <algorithm>
#include <limits>
#include <utility>

#include "hosts/desktop/engine/Texts.h"
#include "hosts/device/calls/Call.h"

namespace chatsum::desktop {
namespace {

const std::array<QString, kLists>& words() {
  static const std::array<QString, kLists> kWords = {QStringLiteral("messages"), shownText(device::kPhoneService),
                                                     shownText(device::kFaceTimeService)};
  return kWords;
}

int lastRow(const RowTicks& ticks) {
  return static_cast<int>(std::min<std::size_t>(ticks.rows(), std::numeric_limits<int>::max())) - 1;
}

}  // namespace

Selection::Selection(Worker& worker, QObject* parent) : QObject(parent), worker_(worker) {}

Selection::~Selection() {
  if (preparing_) preparing_->cancel();
  forgetPrepared();
}

QString Selection::app() const { return words()[static_cast<std::size_t>(front_)]; }

void Selection::setApp(const QString& app) {
  const auto* const word = std::find(words().begin(), words().end(), app);
  if (word == words().end() || app == this->app()) return;
  dropPreparation();
  front_ = static_cast<RowsOf>(word - words().begin());
  Q_EMIT appChanged();
  update();
}

void Selection::setMode(Mode mode) {
  if (mode == choice().mode) return;
  choice().mode = mode;
  update();
}

void Selection::setSince(const QString& text) {
  Choice& chosen = choice();
  if (text == chosen.since) return;
  chosen.since = text;
  chosen.times.since.reset();
  const std::string trimmed = utf8Of(text.trimmed());
  chosen.isSinceValid = trimmed.empty() || device::setSince(chosen.times, trimmed);
  update();
}

void Selection::setUntil(const QString& text) {
  Choice& chosen = choice();
  if (text == chosen.until) return;
  chosen.until = text;
  chosen.times.until.reset();
  chosen.times.before.reset();
  const std::string trimmed = utf8Of(text.trimmed());
  chosen.isUntilValid = trimmed.empty() || device::setUntil(chosen.times, trimmed);
  update();
}

bool Selection::isRangeValid() const {
  return choice().isSinceValid && choice().isUntilValid && !choice().times.isEmpty();
}

int Selection::total() const { return choice().rows ? lastRow(choice().ticks) + 1 : 0; }

void Selection::tick(int row, bool on) {
  if (row < 0 || row >= total()) return;
  choice().mode = Mode::Ticked;
  setTicks(static_cast<std::size_t>(row), static_cast<std::size_t>(row), on);
}

void Selection::tickRange(int first, int last) {
  if (first > last) std::swap(first, last);
  first = std::max(first, 0);
  last = std::min(last, total() - 1);
  if (first > last) return;
  choice().mode = Mode::Ticked;
  setTicks(static_cast<std::size_t>(first), static_cast<std::size_t>(last), true);
}

void Selection::clear() {
  choice().mode = Mode::All;
  if (total() > 0 && choice().ticks.count() > 0) {
    setTicks(0, choice().ticks.rows() - 1, false);
  } else {
    update();
  }
}

bool Selection::isTicked(int row) const { return row >= 0 && choice().ticks.has(static_cast<std::size_t>(row)); }

void Selection::setTicks(std::size_t first, std::size_t last, bool isTicked) {
  choice().ticks.set(first, last, isTicked);
  Q_EMIT ticksChanged(front_, static_cast<int>(first), static_cast<int>(last));
  update();
}

void Selection::setRows(RowsOf list, std::shared_ptr<const ReportRows> rows) {
  if (list == front_) dropPreparation();
  if (list == RowsOf::kMessages) firstHit_ = lastHit_ = std::nullopt;
  forgetPrepared();
  const std::size_t size = rows ? rows->size() : 0;
  Choice& chosen = choices_[static_cast<std::size_t>(list)];
  worker_.discard(std::exchange(chosen, Choice()).rows);
  chosen.rows = std::move(rows);
  chosen.ticks = RowTicks(size);
  if (size > 0) Q_EMIT ticksChanged(list, 0, lastRow(chosen.ticks));
  update();
}

void Selection::dropPreparation() {
  if (!preparing_) return;
  preparing_->cancel();
  preparing_.reset();
  Q_EMIT preparationDropped();
}

void Selection::forgetPrepared() { worker_.discard(std::exchange(prepared_, nullptr)); }

void Selection::setHits(std::optional<std::uint32_t> first, std::optional<std::uint32_t> last) {
  firstHit_ = first;
  lastHit_ = last;
  update();
}

SelectedRows Selection::view() const {
  const Choice& chosen = choice();
  SelectedRows selected;
  selected.rows = chosen.rows;
  switch (chosen.mode) {
    case Mode::All:
      selected.kind = SelectedRows::Kind::kAll;
      break;
    case Mode::Ticked:
      selected.kind = SelectedRows::Kind::kTicked;
      selected.ticks = std::shared_ptr<const RowTicks>(std::shared_ptr<const RowTicks>(), &chosen.ticks);  // not owned
      break;
    case Mode::Range:
      if (!isRangeValid()) break;
      selected.kind = SelectedRows::Kind::kInTimes;
      selected.times = chosen.times;
      break;
    case Mode::Hits:
      if (front_ != RowsOf::kMessages || !firstHit_ || !lastHit_) break;
      selected.kind = SelectedRows::Kind::kStretch;
      selected.first = *firstHit_;
      selected.last = *lastHit_;
      break;
  }
  return selected;
}

SelectedRows Selection::rows() const {
  SelectedRows selected = view();
  if (selected.ticks) selected.ticks = std::make_shared<const RowTicks>(*selected.ticks);
  return selected;
}

SelectedReport Selection::request(device::ReportFormat format) const { return view().report(format); }

void Selection::prepare(device::ReportFormat format, QObject* receiver, std::function<void(SelectedReport)> done) {
  if (preparing_) preparing_->cancel();
  preparing_ = worker_.run(
      receiver,
      [selected = rows(), format, canDraw = canDraw_](const Cancellation&) {
        return device::StoreResult<SelectedReport>(selected.report(format, canDraw));
      },
      [this, guard = QPointer<Selection>(this), done = std::move(done)](device::StoreResult<SelectedReport> report) {
        const SelectedReport prepared = report ? std::move(report.value()) : SelectedReport();
        if (guard) {
          preparing_.reset();
          worker_.discard(std::exchange(prepared_, std::make_shared<const SelectedReport>(prepared)));
        }
        done(prepared);
      });
}

void Selection::update() {
  count_ = std::min<std::size_t>(view().count(), std::numeric_limits<int>::max());
  Q_EMIT changed();
}

}  // namespace chatsum::desktop
