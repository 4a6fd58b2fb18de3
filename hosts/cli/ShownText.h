// The text of a file on its way to the reader: as it is into a file or pipe, without anything a terminal would obey
// onto a terminal. One thread.
#pragma once

#include <string>
#include <string_view>

#include "hosts/cli/Console.h"

namespace chatsum::cli {

class ShownText {
 public:
  explicit ShownText(const Console& console) : console_(console) {}
  /// The next piece, cut anywhere. False when the reader takes no more.
  bool show(std::string_view piece);
  /// Ends the last line on a terminal.
  void finish();

 private:
  const Console& console_;
  std::string line_;  ///< begun, for a terminal
};

}  // namespace chatsum::cli
