#include "platform/system/SystemPlatform.h"

#include <utility>

#include "platform/system/bundle/SharedFolder.h"
#include "platform/system/bundle/SystemMainBundle.h"
#include "platform/system/companion/SystemCompanion.h"
#include "platform/system/contacts/ContactBook.h"
#include "platform/system/contacts/SystemAddressBook.h"
#include "platform/system/contacts/SystemContacts.h"
#include "platform/system/dates/SystemClock.h"
#include "platform/system/dates/SystemDateFormatting.h"
#include "platform/system/device/SystemDevice.h"
#include "platform/system/files/SystemFiles.h"
#include "platform/system/graphics/SystemGraphics.h"
#include "platform/system/images/SystemArtwork.h"
#include "platform/system/log/SystemLog.h"
#include "platform/system/messages/SystemMessages.h"
#include "platform/system/notifications/SystemDarwinNotifications.h"
#include "platform/system/propertylists/SystemPropertyLists.h"
#include "platform/system/queues/SystemDispatch.h"
#include "platform/system/runtime/SystemRuntime.h"
#include "platform/system/screen/SystemScreen.h"
#include "platform/system/strings/SystemStrings.h"
#include "platform/system/translations/Languages.h"
#include "platform/system/translations/Translations.h"
#include "platform/system/types/SystemUniformTypes.h"

namespace chatsum::platform::system {
namespace {

std::string translationsFolder() {
  const std::string shared = sharedFolder();
  return shared.empty() ? shared : shared + "/locale";
}

}  // namespace

/// In the order in which they need each other. The queues stop before any of them goes, so that no block meets a
/// service that is gone.
struct SystemPlatform::Services {
  explicit Services(SystemOptions options)
      : log(std::move(options.logSink)),
        clock(options.fixedTime),
        files({.homeDirectory = std::move(options.homeDirectory),
               .mapPath = options.mapPath,
               .openDatabase = std::move(options.openDatabase)}),
        translations(translationsFolder(),
                     options.languages ? std::move(*options.languages) : languagesFromEnvironment()),
        mainBundle(std::move(options.bundleIdentifier), translations),
        device(std::move(options.systemVersion), options.screenScale),
        dateFormatting(clock),
        propertyLists(files),
        artwork({.mapPath = std::move(options.mapPicturePath ? options.mapPicturePath : options.mapPath),
                 .folder = std::move(options.artworkFolder),
                 .screenScale = options.screenScale}),
        graphics(files, artwork),
        book(std::make_shared<const ContactBook>(files, std::move(options.region))),
        contacts(book),
        addressBook(book, &translations),
        // The address book that a caller hands over is the source's one: there is no other.
        runtime([this](const ABAddressBookRef&, std::string_view number, int, int) {
          return addressBook.findPerson(number);
        }),
        messages(std::move(options.ownerFullName)),
        dispatch(std::move(options.hostScreen.mainQueueFilled)),
        companion(dispatch, translations, std::move(options.applicationContainers),
                  std::move(options.hostScreen.indicator)),
        screen(dispatch),
        platform{.log = log,
                 .clock = clock,
                 .files = files,
                 .mainBundle = mainBundle,
                 .device = device,
                 .runtime = runtime,
                 .uniformTypes = uniformTypes,
                 .dateFormatting = dateFormatting,
                 .strings = strings,
                 .propertyLists = propertyLists,
                 .graphics = graphics,
                 .artwork = artwork,
                 .contacts = contacts,
                 .addressBook = addressBook,
                 .messages = messages,
                 .dispatch = dispatch,
                 .darwinNotifications = darwinNotifications,
                 .companion = companion,
                 .screen = options.hostScreen.screen ? *options.hostScreen.screen : screen} {}
  ~Services() { dispatch.stop(); }
  Services(const Services&) = delete;
  Services& operator=(const Services&) = delete;

  SystemLog log;
  SystemClock clock;
  SystemFiles files;
  Translations translations;
  SystemMainBundle mainBundle;
  SystemDevice device;
  SystemUniformTypes uniformTypes;
  SystemDateFormatting dateFormatting;
  SystemStrings strings;
  SystemPropertyLists propertyLists;
  SystemArtwork artwork;
  SystemGraphics graphics;
  std::shared_ptr<const ContactBook> book;
  SystemContacts contacts;
  SystemAddressBook addressBook;
  SystemRuntime runtime;
  SystemMessages messages;
  SystemDarwinNotifications darwinNotifications;
  SystemDispatch dispatch;
  SystemCompanion companion;
  SystemScreen screen;
  Platform platform;
};

SystemPlatform::SystemPlatform(SystemOptions options) : services_(std::make_unique<Services>(std::move(options))) {}
SystemPlatform::~SystemPlatform() = default;

Platform& SystemPlatform::platform() { return services_->platform; }
const std::shared_ptr<const ContactBook>& SystemPlatform::contactBook() const { return services_->book; }
SystemArtwork& SystemPlatform::artwork() { return services_->artwork; }
void SystemPlatform::stopQueues() { services_->dispatch.stop(); }
std::string SystemPlatform::language() const { return services_->translations.language(); }
std::size_t SystemPlatform::drainMain() { return services_->dispatch.drainMain(); }
void SystemPlatform::runMainUntilIdle() { services_->dispatch.runMainUntilIdle(); }

}  // namespace chatsum::platform::system
