// One device opened for reading: its stores behind snapshots, its people, and the library set to work on them. While it
// lives, its platform is the process's; make one at a time. Use it on one thread; connections may go to others.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "hosts/device/contacts/DeviceContacts.h"
#include "hosts/device/conversations/Conversation.h"
#include "hosts/device/home/Containers.h"
#include "hosts/device/session/WatchedFiles.h"
#include "hosts/device/session/WorkingName.h"
#include "hosts/device/source/DeviceSource.h"
#include "hosts/device/source/SourceAccess.h"
#include "hosts/device/stores/MessageView.h"
#include "hosts/device/stores/StoreProblem.h"
#include "hosts/device/stores/StoreSnapshot.h"
#include "hosts/device/words/MessageOrigins.h"
#include "hosts/device/words/MessageWords.h"
#include "platform/sqlite/Connection.h"
#include "platform/system/screen/HostScreen.h"

namespace chatsum::platform::system {
class SystemGraphics;
}

namespace chatsum::device {

class DeviceSession {
 public:
  struct Options {
    std::string source;                         ///< for `openSource`
    SourceAccess access = {};                   ///< for an encrypted source
    bool needsMessages = true;                  ///< false: a source without a readable Messages store will do
    std::string home;                           ///< absolute; reports land below it
    Containers containers = {};                 ///< where the library may work besides
    std::optional<std::string> ownerName;       ///< shown instead of "Me"
    platform::system::HostScreen screen = {};   ///< of hosts that have one
    std::optional<Date> fixedTime = {};         ///< what reports take for now; none: the clock's
    bool plain = false;                         ///< messages and dates as the library has them, not put into words
    std::string region = "US";                  ///< of phone numbers without a country code
    std::function<void(std::string_view)> log;  ///< gets the library's log lines; any thread, one at a time
  };

  /// Opens the source, takes snapshots of its stores and checks that the Messages store can be read.
  [[nodiscard]] static StoreResult<std::unique_ptr<DeviceSession>> open(const Options& options);
  ~DeviceSession();
  DeviceSession(const DeviceSession&) = delete;
  DeviceSession& operator=(const DeviceSession&) = delete;

  [[nodiscard]] DeviceSource& source() const { return *source_; }
  /// Whether there is a Messages store. Without one, what asks for messages below answers the problem.
  [[nodiscard]] bool hasMessages() const { return messages_.has_value(); }
  /// Only with a Messages store.
  [[nodiscard]] const StoreSnapshot& messages() const { return *messages_; }

  /// A new connection to the Messages store as it is.
  [[nodiscard]] StoreResult<sqlite::Connection> connect() const;
  /// The same with texts from bodies and dates in nanoseconds (see MessageView), counting into `counters`.
  [[nodiscard]] StoreResult<sqlite::Connection> connectWithTexts(const std::shared_ptr<BodyCounters>& counters) const;

  /// The same with every message in words (see WordsView), of the reading that `words` belongs to.
  [[nodiscard]] StoreResult<sqlite::Connection> connectWithWords(const std::shared_ptr<MessageWords>& words) const;
  /// Whether the library's records stand as they are.
  [[nodiscard]] bool isPlain() const { return options_.plain; }

  /// Where numbers without a country code are at home.
  [[nodiscard]] const std::string& region() const { return options_.region; }
  /// Who is behind a handle. Lives as long as the session.
  [[nodiscard]] const FindPerson& findPerson() const { return findPerson_; }
  [[nodiscard]] const DeviceContacts& contacts() const { return *contacts_; }
  /// What is missing for the names of people, one sentence; empty when nothing is.
  [[nodiscard]] std::string contactsProblem() const;

  /// Makes this session's services those of the process and prepares the library, at the first call. Answers what is
  /// counted while the library reads texts from bodies.
  const BodyCounters& startLibrary();
  /// The same counters, to be counted into beside the library.
  [[nodiscard]] const std::shared_ptr<BodyCounters>& bodyCounters() const;
  /// What the library calls the device's owner, once it is started.
  [[nodiscard]] std::string ownerName() const;
  /// What puts the messages into words that the library reads from now on; null: they stand as they are.
  void setWords(std::shared_ptr<MessageWords> words);
  /// What notes where the messages come from that the library reads from now on; null: nobody does.
  void setOrigins(std::shared_ptr<MessageOrigins> origins);
  /// The library's files, once it is started.
  [[nodiscard]] WatchedFiles& files() const;
  /// What draws its documents, through those files.
  [[nodiscard]] platform::system::SystemGraphics& graphics() const;
  /// The language of what the library writes (BCP 47), once it works.
  [[nodiscard]] std::string language() const;
  /// How many pictures were asked for since the last such question whose files may not be whole.
  [[nodiscard]] std::size_t takeDoubtfulPictures() const;
  /// Runs what waits on the main queue; on the thread that is the library's main one. Answers how many blocks ran.
  std::size_t drainMain();
  /// The name under which the library writes a report, and the one that log lines have for it.
  [[nodiscard]] WorkingName& workingName() { return workingName_; }
  /// Told every thousandth row while the library reads messages, on the reading thread, with the rows so far. Empty:
  /// nobody is.
  void setRowObserver(std::function<void(std::uint64_t rows)> observer);

  /// The problem when the store's files changed since the session began, so that what was read may be wrong.
  [[nodiscard]] std::optional<StoreProblem> checkUnchanged() const;

 private:
  struct Library;

  DeviceSession(const Options& options, std::unique_ptr<DeviceSource> source);
  [[nodiscard]] std::optional<StoreProblem> openMessages();
  void openContacts();
  [[nodiscard]] std::vector<std::string> handles() const;
  [[nodiscard]] std::optional<int> openForLibrary(const std::string& devicePath, sqlite3** database);
  [[nodiscard]] std::string realPath(const std::string& devicePath) const;
  [[nodiscard]] std::string realPathOfPicture(const std::string& devicePath) const;

  Options options_;
  WorkingName workingName_;
  std::unique_ptr<DeviceSource> source_;
  std::vector<std::string> ownFolders_;  // never a picture's place
  std::optional<StoreSnapshot> messages_;
  StoreProblem messagesProblem_;
  std::optional<StoreSnapshot> addressBook_;
  std::string addressBookProblem_;
  std::shared_ptr<const platform::system::ContactBook> book_;
  std::optional<DeviceContacts> contacts_;
  FindPerson findPerson_;
  std::unique_ptr<Library> library_;
  mutable std::mutex doubtfulMutex_;
  mutable std::set<std::string> doubtfulPictures_;
};

}  // namespace chatsum::device
