// Where a command writes: results to `out`, everything else to `err`. Names and texts of a source stand in both, and
// whoever made the source chose them, so nothing that a terminal would obey or that turns a line's order round gets to
// one, whatever is written: neither in any sentence nor in results that go to a terminal. Into files and pipes results
// go as they are. One thread at a time.
#pragma once

#include <istream>
#include <ostream>
#include <string>
#include <string_view>

#include "hosts/cli/CleanStream.h"
#include "hosts/device/language/Say.h"

namespace chatsum::cli {

using device::say;
using device::sayCounted;

// What the program answers to its caller.
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

/// What the program's process has.
struct Streams {
  std::ostream& out;
  std::ostream& err;
  bool errIsTerminal = false;
  /// Whether `out` is a pipe that nobody reads any more; null: it never is.
  bool (*isReaderGone)() = nullptr;
  bool outIsTerminal = false;
  std::istream* in = nullptr;  ///< where a person answers questions; null when nobody is there to ask
  int terminal = -1;           ///< a descriptor of where that person types, for passwords
};

class Console {
 public:
  explicit Console(const Streams& streams);
  Console(const Console&) = delete;
  Console& operator=(const Console&) = delete;

 private:
  // Before the streams that are made of them.
  std::ostream& terminal_;
  CleanStream cleanOut_, cleanErr_;
  const bool outIsTerminal_;

 public:
  std::ostream& out;  ///< clean when it is a terminal
  std::ostream& err;  ///< always clean
  std::istream* const in;
  const int terminal;
  bool errIsTerminal;
  bool isQuiet = false;

  /// One line that says what went wrong.
  int fail(std::string_view sentence, int code = kFailed) const;
  /// Wrong usage of a command ("" for the program itself): one line, and where help is.
  int refuse(std::string_view sentence, std::string_view command) const;
  /// A line for people that is no result, also when it is quiet.
  void tell(std::string_view line) const;
  /// A remark that is not asked for when it is quiet.
  void note(std::string_view line) const;
  /// The same of what may be wrong or missing in the results.
  void remark(std::string_view sentence) const;
  /// A result of its own, as a path: the bytes and a line end, on a terminal one line.
  void result(std::string_view line) const;
  /// Ends a line that was begun on a terminal's `out`.
  void endLine() const;
  /// Puts a line in the place of the last one that was put there, on a terminal's `err`; "" takes it away.
  void overwrite(std::string_view line) const;
};

}  // namespace chatsum::cli
