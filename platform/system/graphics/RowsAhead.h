// Lays out the texts of rows to come and decodes their pictures on other threads, a bounded number of rows ahead of the
// one that draws. One thread at a time; what it was made from must outlive it.
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/Graphics.h"
#include "platform/system/text/TextEngine.h"
#include "platform/system/work/WorkPool.h"

namespace chatsum::platform::system {

class RowsAhead {
 public:
  struct Hooks {
    /// Decodes a picture of which a square of that side (points) will be drawn. Any thread.
    std::function<void(const std::string& path, double side)> preparePicture;
    /// Told how many rows of how many are behind, on the drawing thread.
    std::function<void(std::size_t done, std::size_t total)> progress;
  };

  RowsAhead(const ExpectedRows& rows, UIFont font, double width, TextEngine& engine, WorkPool& pool, Hooks hooks);
  ~RowsAhead();
  RowsAhead(const RowsAhead&) = delete;
  RowsAhead& operator=(const RowsAhead&) = delete;

  struct Text {
    std::string_view text;
    TextLayout layout;
  };

  [[nodiscard]] bool isOf(const UIFont& font) const { return font == font_; }
  /// The next text that is expected, if it is this one in that font and width. Good until the next call.
  [[nodiscard]] std::optional<Text> take(std::string_view text, const UIFont& font, double width);

 private:
  struct Chunk;
  /// Chunks that jobs of the pool fill; waits for them before they go.
  struct UnderWay {
    explicit UnderWay(WorkPool& workers);
    UnderWay(const UnderWay&) = delete;
    UnderWay& operator=(const UnderWay&) = delete;
    ~UnderWay();
    WorkPool& pool;
    std::deque<std::unique_ptr<Chunk>> chunks;
  };

  void begin();
  [[nodiscard]] bool moveOn();
  void fill(Chunk& chunk);

  const ExpectedRows& rows_;
  const UIFont font_;
  const double width_;
  TextEngine& engine_;
  const Hooks hooks_;
  std::size_t begun_ = 0;  // rows handed to the pool
  std::unique_ptr<Chunk> current_;
  std::vector<std::unique_ptr<Chunk>> spare_;  // their memory serves again
  UnderWay underWay_;                          // last: its jobs use what stands above
};

}  // namespace chatsum::platform::system
