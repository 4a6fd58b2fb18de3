#include "hosts/device/session/DeviceSession.h"

#include <algorithm>
#include <filesystem>
#include <mutex>
#include <system_error>
#include <tuple>
#include <utility>
#include <vector>

#include "hosts/device/contacts/HandleAddressBook.h"
#include "hosts/device/contacts/HandleIndex.h"
#include "hosts/device/home/HomePaths.h"
#include "hosts/device/home/Leftovers.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/session/CalendarYears.h"
#include "hosts/device/session/SourceGuard.h"
#include "hosts/device/session/SourceOpening.h"
#include "hosts/device/stores/StoreCheck.h"
#include "hosts/device/words/WordsView.h"
#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/foundation/PathComponents.h"
#include "platform/sqlite/Statement.h"
#include "platform/system/SystemPlatform.h"
#include "platform/system/graphics/SystemGraphics.h"

namespace chatsum::device {
namespace {

constexpr std::uint64_t kRowsPerReport = 1000;

StoreProblem cannotOpen(const StoreSnapshot& snapshot, const std::string& reason) {
  return {say("'{0}' cannot be opened ({1}); copy it again from the device or backup.", snapshot.shownPath(), reason)};
}

StoreResult<sqlite::Connection> connectTo(const StoreSnapshot& snapshot) {
  sqlite3* handle = nullptr;
  const int code = snapshot.open(&handle);
  sqlite::Connection connection(handle);
  if (code != SQLITE_OK) return cannotOpen(snapshot, sqlite3_errstr(code));
  return connection;
}

/// The system's services, but for those that this host puts its own in front of.
platform::Platform hostPlatform(const platform::Platform& system, platform::Files& files,
                                platform::DateFormatting& dateFormatting, platform::Graphics& graphics,
                                platform::AddressBook& addressBook) {
  return {.log = system.log,
          .clock = system.clock,
          .files = files,
          .mainBundle = system.mainBundle,
          .device = system.device,
          .runtime = system.runtime,
          .uniformTypes = system.uniformTypes,
          .dateFormatting = dateFormatting,
          .strings = system.strings,
          .propertyLists = system.propertyLists,
          .graphics = graphics,
          .artwork = system.artwork,
          .contacts = system.contacts,
          .addressBook = addressBook,
          .messages = system.messages,
          .dispatch = system.dispatch,
          .darwinNotifications = system.darwinNotifications,
          .companion = system.companion,
          .screen = system.screen};
}

/// The path without links, as far as it exists.
std::string withoutLinks(const std::string& path) {
  std::error_code error;
  const std::filesystem::path real = std::filesystem::weakly_canonical(path, error);
  return error ? path : real.string();
}

/// What belongs to this program and to no source: all of its home, or of one that the source stands in the folder where
/// reports and settings are.
std::string folderOfItsOwn(const std::string& home, const std::string& source) {
  const std::string real = withoutLinks(home);
  return isBelow(real, withoutLinks(source)) ? path::deletingLastComponent(settingsFileIn(real)) : real;
}

}  // namespace

/// What exists once the library works.
struct DeviceSession::Library {
  Library(platform::system::SystemOptions options, std::shared_ptr<const platform::system::ContactBook> book,
          std::vector<std::string> storeHandles, bool isPlain)
      : handles(std::move(storeHandles)),
        system(std::move(options)),
        files(system.platform().files),
        years(system.platform().dateFormatting),
        addressBook(std::move(book), handles),
        graphics(files, system.artwork()),
        host(hostPlatform(system.platform(), files,
                          isPlain ? system.platform().dateFormatting : static_cast<platform::DateFormatting&>(years),
                          graphics, addressBook)),
        before(platform::install(&host)) {}
  ~Library() {
    // Blocks of the library ask for the platform, and some of its services are ours.
    system.stopQueues();
    platform::install(before);
  }
  Library(const Library&) = delete;
  Library& operator=(const Library&) = delete;

  std::vector<std::string> handles;
  platform::system::SystemPlatform system;
  WatchedFiles files;
  CalendarYears years;
  HandleAddressBook addressBook;
  platform::system::SystemGraphics graphics;
  platform::Platform host;
  platform::Platform* before;
  std::shared_ptr<BodyCounters> counters = std::make_shared<BodyCounters>();
  std::shared_ptr<MessageWords> words;
  std::shared_ptr<MessageOrigins> origins;
  std::once_flag indexOnce;
  std::optional<HandleIndex> index;
  std::function<void(std::uint64_t)> rowObserver;
  std::uint64_t rows = 0;
};

StoreResult<std::unique_ptr<DeviceSession>> DeviceSession::open(const Options& options) {
  auto source = openSource(options.source, options.access);
  if (!source) return source.problem();
  if (auto problem = refuseHomeInSource(source.value()->facts(), options.home)) return *problem;
  for (const auto& [application, folder] : options.containers) {
    if (auto problem = refuseHomeInSource(source.value()->facts(), folder)) return *problem;
  }
  std::unique_ptr<DeviceSession> session(new DeviceSession(options, std::move(source.value())));
  if (auto problem = session->openMessages()) {
    if (options.needsMessages) return *problem;
    session->messages_.reset();
    session->messagesProblem_ = std::move(*problem);
  }
  session->openContacts();
  session->options_.access = {};  // asked no more
  return session;
}

DeviceSession::DeviceSession(const Options& options, std::unique_ptr<DeviceSource> source)
    : options_(options), source_(std::move(source)) {
  ownFolders_.push_back(folderOfItsOwn(options_.home, source_->facts().path));
  for (const auto& [application, folder] : options_.containers) {
    ownFolders_.push_back(folderOfItsOwn(folder, source_->facts().path));
  }
}

std::optional<StoreProblem> DeviceSession::openMessages() {
  auto location = source_->store(SourceStore::kMessages);
  if (!location) return location.problem();
  if (!location.value()) return StoreProblem{source_->whyMissing(SourceStore::kMessages)};
  auto snapshot = StoreSnapshot::take(*location.value());
  if (!snapshot) return snapshot.problem();
  messages_.emplace(std::move(snapshot.value()));
  const auto connection = connect();
  if (!connection) return connection.problem();
  return checkStore(connection.value().get(), *messages_, messagesStore());
}

std::vector<std::string> DeviceSession::handles() const {
  std::vector<std::string> handles;
  const auto connection = connect();
  if (!connection) return handles;
  const sqlite::Statement rows(connection.value().get(), "SELECT DISTINCT id FROM handle WHERE id IS NOT NULL");
  while (rows && rows.step() == SQLITE_ROW) handles.emplace_back(rows.text(0));
  return handles;
}

DeviceSession::~DeviceSession() = default;

// A device without a readable address book is read all the same: handles stand for names then.
void DeviceSession::openContacts() {
  const auto without = [](const StoreProblem& problem) {
    return say("People are shown by their numbers and addresses: {0}", problem.sentence);
  };
  if (auto location = source_->store(SourceStore::kAddressBook); !location) {
    addressBookProblem_ = without(location.problem());
  } else if (!location.value()) {
    addressBookProblem_ = say("The source has no address book, so people are shown by their numbers and addresses.");
  } else if (auto snapshot = StoreSnapshot::take(*location.value()); snapshot) {
    addressBook_.emplace(std::move(snapshot.value()));
  } else {
    addressBookProblem_ = without(snapshot.problem());
  }
  const auto opener = [this] {
    auto connection = addressBook_ ? connectTo(*addressBook_) : StoreResult<sqlite::Connection>(sqlite::Connection());
    return connection ? std::move(connection.value()) : sqlite::Connection();
  };
  book_ = std::make_shared<const platform::system::ContactBook>(opener, options_.region);
  contacts_.emplace(book_);
  findPerson_ = [this](const std::string& handle) -> std::optional<KnownPerson> {
    ResolvedHandle person = contacts_->resolve(handle);
    if (person.record < 1) return std::nullopt;
    return KnownPerson{person.record, std::move(person.name)};
  };
}

StoreResult<sqlite::Connection> DeviceSession::connect() const {
  if (!messages_) return messagesProblem_;
  return connectTo(*messages_);
}

StoreResult<sqlite::Connection> DeviceSession::connectWithTexts(const std::shared_ptr<BodyCounters>& counters) const {
  auto connection = connect();
  if (!connection) return connection;
  if (!MessageView::install(connection.value().get(), MessageView::Options(), counters)) {
    return cannotOpen(*messages_, connection.value().lastError());
  }
  return connection;
}

StoreResult<sqlite::Connection> DeviceSession::connectWithWords(const std::shared_ptr<MessageWords>& words) const {
  auto connection = connect();
  if (!connection) return connection;
  if (!WordsView::install(connection.value().get(), words, nullptr)) {
    return cannotOpen(*messages_, connection.value().lastError());
  }
  return connection;
}

std::string DeviceSession::contactsProblem() const {
  return addressBookProblem_.empty() ? contacts_->problem() : addressBookProblem_;
}

const BodyCounters& DeviceSession::startLibrary() {
  if (!library_) {
    platform::system::SystemOptions options;
    options.homeDirectory = options_.home;
    options.ownerFullName = options_.ownerName;
    // A Mac counts its systems otherwise than a device does.
    const SourceFacts& facts = source_->facts();
    if (facts.kind != SourceKind::kMac && !facts.systemVersion.empty()) options.systemVersion = facts.systemVersion;
    options.region = options_.region;
    options.hostScreen = options_.screen;
    options.fixedTime = options_.fixedTime;
    if (options_.log) {
      options.logSink = [this](std::string_view line) { options_.log(workingName_.shown(line)); };
    }
    options.mapPath = [this](const std::string& path) { return realPath(path); };
    options.mapPicturePath = [this](const std::string& path) { return realPathOfPicture(path); };
    options.openDatabase = [this](const std::string& path, sqlite3** database) {
      return openForLibrary(path, database);
    };
    library_ = std::make_unique<Library>(std::move(options), book_, handles(), options_.plain);
    removeLeftovers(options_.home);
    ChatsumUtils::load();
    ChatsumUtils::loadAddressBook();  // the index may still be that of an earlier session
  }
  return *library_->counters;
}

const std::shared_ptr<BodyCounters>& DeviceSession::bodyCounters() const { return library_->counters; }

std::string DeviceSession::ownerName() const {
  const platform::Platform& system = library_->system.platform();
  std::string name = system.messages.ownerFullName().value_or("");
  return name.empty() ? system.mainBundle.localizedString("Me") : name;
}

void DeviceSession::setWords(std::shared_ptr<MessageWords> words) { library_->words = std::move(words); }
void DeviceSession::setOrigins(std::shared_ptr<MessageOrigins> origins) { library_->origins = std::move(origins); }

WatchedFiles& DeviceSession::files() const { return library_->files; }
std::size_t DeviceSession::drainMain() { return library_ ? library_->system.drainMain() : 0; }
platform::system::SystemGraphics& DeviceSession::graphics() const { return library_->graphics; }
std::string DeviceSession::language() const { return library_->system.language(); }

void DeviceSession::setRowObserver(std::function<void(std::uint64_t)> observer) {
  library_->rowObserver = std::move(observer);
  library_->rows = 0;
}

std::optional<StoreProblem> DeviceSession::checkUnchanged() const {
  if (!messages_ || messages_->sourceIsUnchanged()) return std::nullopt;
  return StoreProblem{
      say("'{0}' changed while it was read; quit the programs that use it, or copy it yourself and give the copy.",
          messages_->shownPath())};
}

// The two stores never fall back to a plain open, which might touch this machine's own files or make new ones.
std::optional<int> DeviceSession::openForLibrary(const std::string& devicePath, sqlite3** database) {
  *database = nullptr;
  if (devicePath == kMessagesStorePath) {
    if (!messages_) return SQLITE_CANTOPEN;
    const int code = messages_->open(database);
    if (code != SQLITE_OK) return code;
    const auto& [words, origins] = std::tie(library_->words, library_->origins);
    MessageView::Options options;
    if (origins) options.flag = MessageOrigins::install(*database, origins);
    if (origins && options.flag.empty()) return SQLITE_ERROR;
    const bool installed = words ? WordsView::install(*database, words, library_->counters, options.flag)
                                 : MessageView::install(*database, options, library_->counters);
    if (!installed) return SQLITE_ERROR;
    if (library_->rowObserver) {
      const auto tell = [](unsigned, void* library, void*, void*) {
        auto& told = *static_cast<Library*>(library);
        if (++told.rows % kRowsPerReport == 0 && told.rowObserver) told.rowObserver(told.rows);
        return 0;
      };
      sqlite3_trace_v2(*database, SQLITE_TRACE_ROW, tell, library_.get());
    }
    return SQLITE_OK;
  }
  if (devicePath == kAddressBookPath) {
    int code = SQLITE_OK;
    if (addressBook_) {
      code = addressBook_->open(database);
    } else {
      code = sqlite3_open_v2(":memory:", database, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX, nullptr);
    }
    if (code != SQLITE_OK) return code;
    std::call_once(library_->indexOnce, [this] {
      library_->index.emplace(book_->matcher(), library_->handles, library_->system.platform().strings);
    });
    return library_->index->install(*database) ? SQLITE_OK : SQLITE_ERROR;
  }
  return std::nullopt;
}

std::string DeviceSession::realPath(const std::string& devicePath) const {
  // What the host itself keeps comes first: its home may lie below a folder that is called as one of the device's.
  if (auto own = pathInHome(options_.home, options_.containers, devicePath)) return std::move(*own);
  if (devicePath == kMessagesStorePath) return messages_ ? messages_->databasePath() : "";
  if (devicePath == kAddressBookPath) return addressBook_ ? addressBook_->databasePath() : "";
  return source_->fileOfMessage(devicePath).value_or("");
}

// Messages can name any file as their picture; none but the source's are theirs to show, and of those none that this
// program keeps: a home may lie in the source.
std::string DeviceSession::realPathOfPicture(const std::string& devicePath) const {
  const auto original = source_->originalOfMessage(devicePath);
  if (!original) return "";
  const std::string real = withoutLinks(original->path);
  const bool isOwn = std::any_of(ownFolders_.begin(), ownFolders_.end(),
                                 [&](const std::string& folder) { return isBelow(folder, real); });
  if (isOwn) return "";
  const auto file = source_->fileOfMessage(devicePath);
  if (file && source_->isDoubtful(*file)) {
    const std::lock_guard lock(doubtfulMutex_);
    doubtfulPictures_.insert(devicePath);
  }
  return file.value_or("");
}

std::size_t DeviceSession::takeDoubtfulPictures() const {
  const std::lock_guard lock(doubtfulMutex_);
  return std::exchange(doubtfulPictures_, {}).size();
}

}  // namespace chatsum::device
