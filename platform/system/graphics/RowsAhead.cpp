#include "platform/system/graphics/RowsAhead.h"

#include <algorithm>
#include <cstdint>
#include <utility>

#include "platform/foundation/TextBuffer.h"

namespace chatsum::platform::system {
namespace {

constexpr std::size_t kRowsOfChunk = 512;  // much work for a job, little to hold
constexpr std::size_t kFarthest = 32;      // texts passed over in search of the one that is drawn
constexpr std::size_t kNowhere = static_cast<std::size_t>(-1);

}  // namespace

/// Some rows: their texts one behind the other and the layouts of these.
struct RowsAhead::Chunk final : ExpectedCells {
  Chunk(TextEngine& textEngine, const UIFont& textFont, double textWidth, const Hooks& textHooks)
      : engine(textEngine), font(textFont), width(textWidth), hooks(textHooks) {}

  void text(std::string_view text) override {
    texts.append(text);
    ends.push_back(texts.size());
    engine.layOut(text, font, width, LineBreakMode::kWordWrap, layouts);
  }
  void picture(const std::string& path, double side) override {
    if (hooks.preparePicture) hooks.preparePicture(path, side);
  }

  [[nodiscard]] std::string_view textAt(std::size_t place) const {
    const std::size_t from = place == 0 ? 0 : ends[place - 1];
    return texts.view().substr(from, ends[place] - from);
  }
  /// The place of a text among the next ones.
  [[nodiscard]] std::size_t find(std::string_view wanted, std::size_t farthest) const {
    const std::size_t last = std::min(next + farthest, ends.size());
    for (std::size_t place = next; place < last; ++place) {
      if (textAt(place) == wanted) return place;
    }
    return kNowhere;
  }
  void reset(std::size_t firstRow, std::size_t endRow) {
    first = firstRow;
    end = endRow;
    next = 0;
    texts.clear();
    ends.clear();
    layouts.clear();
  }

  TextEngine& engine;
  const UIFont& font;
  const double width;
  const Hooks& hooks;
  std::size_t first = 0, end = 0;
  TextBuffer texts;
  std::vector<std::size_t> ends;
  LayoutStore layouts;
  std::size_t next = 0;  // the text that is expected
  WorkPool::TicketRef ticket;
};

RowsAhead::RowsAhead(const ExpectedRows& rows, UIFont font, double width, TextEngine& engine, WorkPool& pool,
                     Hooks hooks)
    : rows_(rows), font_(std::move(font)), width_(width), engine_(engine), hooks_(std::move(hooks)), underWay_(pool) {
  for (unsigned i = 0; i < 2 * pool.width(); ++i) begin();
}

RowsAhead::~RowsAhead() = default;

RowsAhead::UnderWay::UnderWay(WorkPool& workers) : pool(workers) {}

RowsAhead::UnderWay::~UnderWay() {
  for (const auto& chunk : chunks) pool.settle(chunk->ticket);
}

void RowsAhead::begin() {
  if (begun_ >= rows_.count()) return;
  std::unique_ptr<Chunk> chunk;
  if (spare_.empty()) {
    chunk = std::make_unique<Chunk>(engine_, font_, width_, hooks_);
  } else {
    chunk = std::move(spare_.back());
    spare_.pop_back();
  }
  const std::size_t end = std::min(begun_ + kRowsOfChunk, rows_.count());
  chunk->reset(begun_, end);
  begun_ = end;
  underWay_.chunks.push_back(std::move(chunk));
  Chunk& added = *underWay_.chunks.back();
  added.ticket = underWay_.pool.submit([this, &added] { fill(added); });
}

void RowsAhead::fill(Chunk& chunk) {
  const auto reader = rows_.reader();
  for (std::size_t row = chunk.first; row < chunk.end; ++row) reader->read(row, chunk);
}

bool RowsAhead::moveOn() {
  if (underWay_.chunks.empty()) return false;
  if (current_) {
    if (hooks_.progress) hooks_.progress(current_->end, rows_.count());
    spare_.push_back(std::move(current_));
  }
  begin();  // before the next one leaves those that are waited for, because it may throw
  underWay_.pool.wait(underWay_.chunks.front()->ticket);
  current_ = std::move(underWay_.chunks.front());
  underWay_.chunks.pop_front();
  return true;
}

std::optional<RowsAhead::Text> RowsAhead::take(std::string_view text, const UIFont& font, double width) {
  if (width != width_ || font != font_) return std::nullopt;
  while (!current_ || current_->next == current_->ends.size()) {
    if (!moveOn()) return std::nullopt;
  }
  // Whoever draws may leave out texts, a few at a time; what is not found is laid out when it is drawn.
  std::size_t place = current_->find(text, kFarthest);
  const std::size_t left = current_->ends.size() - current_->next;
  if (place == kNowhere && left < kFarthest && !underWay_.chunks.empty()) {
    Chunk& next = *underWay_.chunks.front();
    underWay_.pool.wait(next.ticket);
    place = next.find(text, kFarthest - left);
    if (place != kNowhere) (void)moveOn();
  }
  if (place == kNowhere) return std::nullopt;
  current_->next = place + 1;
  return Text{current_->textAt(place), current_->layouts[place]};
}

}  // namespace chatsum::platform::system
