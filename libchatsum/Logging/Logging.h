// The library's log lines. Each event is one line: the product, the level, the operation's full name and the number of
// the logging statement, then the message. Any thread.
#pragma once

#include <string_view>

namespace chatsum::logging {

void information(std::string_view operation, int line, std::string_view message);
void warning(std::string_view operation, int line, std::string_view message);
void error(std::string_view operation, int line, std::string_view message);

/// A line as it stands, without product, level and operation.
void trace(std::string_view message);

}  // namespace chatsum::logging
