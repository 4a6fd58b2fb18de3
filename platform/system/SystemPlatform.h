// The real services of a host, bundled: files, dates, contacts, queues and the rest on this machine. The host keeps it
// alive as long as the library is used, and installs `platform()`. Making it is cheap: what needs ICU, telephone
// metadata, threads or the address book waits for its first use.
#pragma once

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "platform/interfaces/Platform.h"
#include "platform/system/screen/HostScreen.h"

struct sqlite3;

namespace chatsum::platform::system {

class ContactBook;
class SystemArtwork;

struct SystemOptions {
  std::string homeDirectory;  ///< a device path, no trailing "/"
  std::string bundleIdentifier = "com.apple.MobileSMS";
  std::string systemVersion = "17.0";
  std::optional<std::string> ownerFullName;
  /// Pixels per point of the device's screen: artwork is loaded in that variant.
  double screenScale = 3;
  /// The folder of the artwork (pictures such as "Chatsum@3x.png"). Empty: where it is installed beside the program, in
  /// ../share/chatsum/ChatsumSettings.bundle of the program's own folder.
  std::string artworkFolder = {};
  std::string region = "US";  ///< ISO 3166 region of phone numbers without a country code
  /// Names of catalogues of translations, the best first ("de_AT", "de"); none: what the environment asks for.
  std::optional<std::vector<std::string>> languages = std::nullopt;
  /// Bundle identifier → folder of that application's data (a device path, no trailing "/"); others are not installed.
  std::map<std::string, std::string, std::less<>> applicationContainers = {};
  /// What the clock always says; none: the machine's time.
  std::optional<Date> fixedTime = std::nullopt;
  /// What shows alerts, previews and busy indicators, for hosts that can.
  HostScreen hostScreen = {};
  /// Gets each log line, one at a time, on the thread that logs; empty: lines are dropped. It must not log itself.
  std::function<void(std::string_view)> logSink;
  /// Device path → real path; empty: as it is. Any thread.
  std::function<std::string(const std::string&)> mapPath;
  /// The same for pictures and documents that are drawn, whose paths come from messages; empty: as `mapPath`.
  std::function<std::string(const std::string&)> mapPicturePath = {};
  /// Opens a database another way: stores the connection (maybe null after a failure) and answers SQLite's code. None,
  /// or an empty function: sqlite3_open of the mapped path. Any thread.
  std::function<std::optional<int>(const std::string& devicePath, sqlite3** database)> openDatabase;
};

class SystemPlatform {
 public:
  explicit SystemPlatform(SystemOptions options);
  /// Waits for blocks that run on the global queue; blocks that wait are dropped.
  ~SystemPlatform();
  SystemPlatform(const SystemPlatform&) = delete;
  SystemPlatform& operator=(const SystemPlatform&) = delete;

  /// The same object every time. Any thread.
  [[nodiscard]] Platform& platform();

  /// The people of the source's address book, opened at the first question. Never null, any thread.
  [[nodiscard]] const std::shared_ptr<const ContactBook>& contactBook() const;

  /// The service behind the platform's artwork, which lives as long. Any thread.
  [[nodiscard]] SystemArtwork& artwork();

  /// The language of its texts (BCP 47, such as "en" or "de-AT"). Any thread.
  [[nodiscard]] std::string language() const;

  /// Ends the queues, while what their blocks use is still there: waits for blocks that run, drops those that wait or
  /// come later. Not from inside a block.
  void stopQueues();

  /// Runs the blocks that wait on the main queue, and those they add; answers how many ran. Main thread only.
  std::size_t drainMain();
  /// Drains the main queue until nothing waits or runs on any queue. Main thread only.
  void runMainUntilIdle();

 private:
  struct Services;
  std::unique_ptr<Services> services_;
};

}  // namespace chatsum::platform::system
