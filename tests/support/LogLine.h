// The library's log lines as a test expects them: the whole text, by level.
#pragma once

#include <string>
#include <string_view>

namespace chatsum::test {

inline std::string logLine(std::string_view level, std::string_view operation, int line, std::string_view message) {
  return "com.orbelle.Chatsum: " + std::string(level) + " => " + std::string(operation) + ", [Line " +
         std::to_string(line) + "], " + std::string(message);
}

inline std::string information(std::string_view operation, int line, std::string_view message) {
  return logLine("Information", operation, line, message);
}

inline std::string error(std::string_view operation, int line, std::string_view message) {
  return logLine("Error", operation, line, message);
}

}  // namespace chatsum::test
