// The least that a program of its own does with the library: it makes the services of this system its platform, and
// writes two messages as a text report below a home folder.

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>

#include "libchatsum/CSReportsGenerator/CSReportsGenerator.h"
#include "libchatsum/CSReportsGenerator/NSArrayFormatExtension.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/Value.h"
#include "platform/system/SystemPlatform.h"

int main() {
  std::string home = (std::filesystem::temp_directory_path() / "chatsum-consumer-XXXXXX").string();
  if (!mkdtemp(home.data())) return 1;

  chatsum::platform::system::SystemOptions options;
  options.homeDirectory = home;
  chatsum::platform::system::SystemPlatform system(options);
  chatsum::platform::install(&system.platform());

  const chatsum::Array records = {
      chatsum::Record{{"Name", "Alex"}, {"Text", "Hello"}, {"Date", chatsum::Date{1700000000}}},
      chatsum::Record{{"Name", "Me"},
                      {"Text", chatsum::NSArrayFormatExtension::stringWithFormat("Good %@", {"evening"})},
                      {"Date", chatsum::Date{1700000060}}},
  };
  const chatsum::Record request = {
      {chatsum::request::kFileName, "Evening"},
      {chatsum::request::kFileFormat, chatsum::kFileFormatText},
      {chatsum::request::kAppType, chatsum::kAppTypeMessages},
      {chatsum::request::kRecords, records},
  };

  std::string written;
  std::string problem = "no callback came";
  chatsum::CSReportsGenerator::sharedInstance().generateReport(
      request, [&](const std::string& path) { written = path; },
      [&](const chatsum::Error&) { problem = "the report failed"; });

  int result = 1;
  if (written.empty()) {
    std::cerr << problem << "\n";
  } else if (!written.starts_with(chatsum::ChatsumUtils::defaultLocation(chatsum::kAppTypeMessages))) {
    std::cerr << "the report is in another place: " << written << "\n";
  } else {
    std::cout << "the library answers:\n" << std::ifstream(written).rdbuf();
    result = 0;
  }
  std::filesystem::remove_all(home);
  return result;
}
