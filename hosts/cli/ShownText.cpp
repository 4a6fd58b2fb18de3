#include "hosts/cli/ShownText.h"

#include "hosts/cli/DisplayText.h"

namespace chatsum::cli {

bool ShownText::show(std::string_view piece) {
  if (!console_.outIsTerminal) {
    console_.out << piece;
    return static_cast<bool>(console_.out);
  }
  for (auto end = piece.find('\n'); end != std::string_view::npos; end = piece.find('\n')) {
    line_.append(piece.substr(0, end));
    console_.out << oneLine(line_) << '\n';
    line_.clear();
    piece.remove_prefix(end + 1);
  }
  line_.append(piece);
  return static_cast<bool>(console_.out);
}

void ShownText::finish() {
  if (!line_.empty()) console_.out << oneLine(line_) << '\n';
  line_.clear();
}

}  // namespace chatsum::cli
