#include "libchatsum/Logging/Logging.h"

#include <string>

#include "platform/interfaces/Platform.h"

namespace chatsum::logging {
namespace {

void write(std::string_view level, std::string_view operation, int line, std::string_view message) {
  std::string text = "com.orbelle.Chatsum: ";
  text.append(level).append(" => ").append(operation).append(", [Line ").append(std::to_string(line)).append("], ");
  trace(text.append(message));
}

}  // namespace

void information(std::string_view operation, int line, std::string_view message) {
  write("Information", operation, line, message);
}

void warning(std::string_view operation, int line, std::string_view message) {
  write("Warning", operation, line, message);
}

void error(std::string_view operation, int line, std::string_view message) { write("Error", operation, line, message); }

void trace(std::string_view message) { platform::current().log.line(message); }

}  // namespace chatsum::logging
