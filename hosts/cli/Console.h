// Where a command writes: results to `out`, everything else to `err`. One thread at a time.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include "hosts/device/language/Say.h"

namespace chatsum::cli {

using device::say;
using device::sayCounted;

// What the program answers to its caller.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

struct Console {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;
  /// Whether `out` is a pipe that nobody reads any more; null: it never is.
  bool (*isReaderGone)() = nullptr;
  bool isQuiet = false;
  bool outIsTerminal = false;
  std::istream* in = nullptr;  ///< where a person answers questions; null when nobody is there to ask
  int terminal = -1;           ///< a descriptor of where that person types, for passwords

  /// One line that says what went wrong.
  int fail(const std::string& sentence, int code = kFailed) const {
    err << "chatsum: " << sentence << "\n";
    return code;
  }
  /// Wrong usage of a command ("" for the program itself): one line, and where help is.
  int refuse(const std::string& sentence, std::string_view command) const {
    const std::string help = std::string(command) + (command.empty() ? "--help" : " --help");
    err << "chatsum: " << sentence << "\n" << say("Try 'chatsum {0}'.", help) << "\n";
    return kWrongUsage;
  }
  /// A remark that is not asked for when it is quiet.
  void note(const std::string& sentence) const {
    if (!isQuiet) err << sentence << "\n";
  }
  /// The same of what may be wrong or missing in the results.
  void remark(const std::string& sentence) const { note(say("Note: {0}", sentence)); }
};

}  // namespace chatsum::cli
