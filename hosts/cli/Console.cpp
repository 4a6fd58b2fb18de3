#include "hosts/cli/Console.h"

#include "hosts/cli/DisplayText.h"
#include "hosts/device/language/Say.h"

namespace chatsum::cli {

Console::Console(const Streams& streams)
    : terminal_(streams.err),
      cleanOut_(streams.out),
      cleanErr_(streams.err),
      outIsTerminal_(streams.outIsTerminal),
      out(streams.outIsTerminal ? cleanOut_.stream() : streams.out),
      err(cleanErr_.stream()),
      in(streams.in),
      terminal(streams.terminal),
      errIsTerminal(streams.errIsTerminal) {}

int Console::fail(std::string_view sentence, int code) const {
  err << "chatsum: " << oneLine(sentence) << "\n";
  return code;
}

int Console::refuse(std::string_view sentence, std::string_view command) const {
  const std::string help = std::string(command) + (command.empty() ? "--help" : " --help");
  err << "chatsum: " << oneLine(sentence) << "\n" << device::say("Try 'chatsum {0}'.", help) << "\n";
  return kWrongUsage;
}

void Console::tell(std::string_view line) const { err << oneLine(line) << "\n"; }

void Console::note(std::string_view line) const {
  if (!isQuiet) tell(line);
}

void Console::remark(std::string_view sentence) const { note(device::say("Note: {0}", sentence)); }

void Console::result(std::string_view line) const {
  if (outIsTerminal_) {
    out << oneLine(line) << "\n" << std::flush;
  } else {
    out << line << "\n" << std::flush;
  }
}

void Console::endLine() const {
  if (outIsTerminal_ && !cleanOut_.isAtLineStart()) out << "\n";
}

void Console::overwrite(std::string_view line) const {
  terminal_ << "\r\x1b[K" << oneLine(line) << std::flush;  // back to the start, and clear
}

}  // namespace chatsum::cli
