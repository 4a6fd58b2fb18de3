// A bar on a terminal that shows how far reading is. Shows nothing elsewhere. One thread.
#pragma once

#include <chrono>
#include <cstdint>
#include <string_view>

#include "hosts/cli/Console.h"

namespace chatsum::cli {

class Progress {
 public:
  explicit Progress(const Console& console) : console_(console) {}
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;
  ~Progress() { clear(); }

  [[nodiscard]] bool isShown() const { return console_.errIsTerminal && !console_.isQuiet; }
  /// Draws the bar, at most some times a second.
  void show(std::string_view what, std::uint64_t done, std::uint64_t total);
  /// Draws a line without a bar.
  void show(std::string_view what);
  /// Takes the line off the screen.
  void clear();

 private:
  const Console& console_;
  bool isDrawn_ = false;
  std::chrono::steady_clock::time_point last_;
};

}  // namespace chatsum::cli
