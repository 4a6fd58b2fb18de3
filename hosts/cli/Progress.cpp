#include "hosts/cli/Progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

namespace chatsum::cli {
namespace {

constexpr std::uint64_t kBarCells = 30;
constexpr std::chrono::milliseconds kPause{100};

}  // namespace

void Progress::show(std::string_view what, std::uint64_t done, std::uint64_t total) {
  if (!isShown()) return;
  const auto now = std::chrono::steady_clock::now();
  if (isDrawn_ && now - last_ < kPause) return;
  last_ = now;
  // The total is an estimate: attachments add rows to it.
  const std::uint64_t filled = total == 0 ? 0 : std::min(done, total) * kBarCells / total;
  console_.overwrite(fmt::format("{} [{}{}] {}", what, std::string(filled, '#'), std::string(kBarCells - filled, ' '),
                                 say("{0} of {1}", std::min(done, total), total)));
  isDrawn_ = true;
}

void Progress::show(std::string_view what) {
  if (!isShown()) return;
  console_.overwrite(what);
  isDrawn_ = true;
}

void Progress::clear() {
  if (isDrawn_) console_.overwrite("");
  isDrawn_ = false;
}

}  // namespace chatsum::cli
