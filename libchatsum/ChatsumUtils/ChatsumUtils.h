// The library's stateless services: reading conversations, resolving people, the reports folder, file kinds,
// thumbnails, and small platform helpers. All are class operations that throw nothing but std::bad_alloc, on the
// caller's thread. A platform must be installed. Any thread, unless they say otherwise; those that read a database
// block it.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "libchatsum/ChatsumUtils/DateFormatter.h"
#include "libchatsum/Export.h"
#include "platform/foundation/Value.h"
#include "platform/interfaces/AddressBook.h"
#include "platform/interfaces/Artwork.h"
#include "platform/interfaces/Companion.h"
#include "platform/interfaces/Contacts.h"
#include "platform/interfaces/Messages.h"
#include "platform/interfaces/Preferences.h"

namespace chatsum {

/// App type codes: which application the records come from.
enum AppType : std::int64_t { kAppTypeMessages = 0, kAppTypePhone = 1, kAppTypeFaceTime = 2 };

/// The keys of a Report entry; the date and the size are absent when they cannot be read.
namespace report_entry {
inline constexpr std::string_view kName = "name";                        ///< string, with extension
inline constexpr std::string_view kPath = "path";                        ///< string, the full path
inline constexpr std::string_view kCreationDate = "NSFileCreationDate";  ///< date
inline constexpr std::string_view kSize = "NSFileSize";                  ///< number, bytes
}  // namespace report_entry

class CHATSUM_EXPORT ChatsumUtils {
 public:
  ChatsumUtils() = delete;

  // Messages store ---------------------------------------------------------------------------------------------------

  /// Told once, on the reading thread, before the read returns: the records in date order, whether any message has
  /// attachments, and whether any attachment is neither a picture nor a PDF.
  using MessagesCompletion = std::function<void(Array records, bool hasAttachments, bool hasMultiMediaAttachments)>;

  /// The number of messages in the conversation's chats; 0 when the store is missing or cannot be read (logged).
  static std::int64_t totalMessageCount(const platform::CKConversation& conversation);

  /// As below, newest first.
  static void allMessagesForConversation(const platform::CKConversation& conversation,
                                         const std::vector<std::string>& excludedGuids,
                                         const MessagesCompletion& completion);

  /// Reads every message of the conversation's chats that has text, joined with its attachments: one record a row, so a
  /// message with three attachments gives three records in a row. Record keys: "guid", "Text" (the attachment's path
  /// when the row carries one), "Date" (a date), "is_from_me", "Name", "label", "cache_has_attachments",
  /// "attachment_location".
  ///
  /// `order` 1 is newest first, any other number oldest first; equal dates stay in the order of the store's rows.
  /// One excluded message GUID leaves that message out. Two or more make a statement that the store refuses: the
  /// completion then gets no records, and callers that exclude several drop them from the records themselves.
  /// A missing or unreadable store gives an empty array (logged). An empty completion is not called.
  ///
  /// The store's rows are stepped on a thread of their own, where functions run that a host registered on the
  /// connection; all else, the platform included, is asked on the caller's thread.
  static void allMessagesForConversation(const platform::CKConversation& conversation,
                                         const std::vector<std::string>& excludedGuids, std::int64_t order,
                                         const MessagesCompletion& completion);

  // Contacts ---------------------------------------------------------------------------------------------------------

  /// Begins to listen for changes of the address book. Called once, when the library is loaded.
  static void load();
  /// Told of system-wide notifications; rebuilds the address-book index in the background when another process changed
  /// the address book.
  static void addressBookChanged(void* observer, std::string_view name);
  /// Rebuilds the index from the address-book database, in the three host applications and from system 11 on.
  static void loadAddressBook();
  /// The number without "(", ")", spaces, "-" and no-break spaces; an e-mail address unchanged; for an empty text the
  /// localized "Unknown".
  static std::string plainPhoneNumber(std::string_view number);
  /// The number as the system's phone formatter prints it; after a service code ("#31#…") only the last part is
  /// formatted.
  static std::string formattedPhoneNumber(std::string_view number);
  /// True for any text that contains "@".
  static bool isEmailAddress(std::string_view text);
  /// The record of the first address-book value that equals the number as it is or formatted; -1 when there is none.
  /// "_" and "%" inside the number match any character and any text.
  static std::int64_t getMultiValueRecordID(std::string_view phoneNumber);
  /// The same for the parts of compound values.
  static std::int64_t getMultiValueEntryID(std::string_view value);
  /// The record of the person behind a handle, -1 when nobody is found. The address book given is not used.
  static platform::ABRecordID addressBookRecordForPhoneNumber(std::string_view handle,
                                                              const platform::ABAddressBookRef& addressBook);
  /// The localized label under which the person keeps the handle: the first phone number whose last ten characters are
  /// equal, else the first e-mail address equal to the letter, else "unknown".
  static std::string label(const platform::ABRecordRef& person, std::string_view forPhoneNumber);
  /// A new contacts store, after the user answered the request for access; granted or not.
  static platform::CNContactStoreRef contactStore();
  /// A new address book, after the user answered the request for access; granted or not. May be nullptr.
  static platform::ABAddressBookRef addressBook();

  // Reports folder ---------------------------------------------------------------------------------------------------

  /// The reports folder: home directory + "/Library/Preferences/Chatsum", the same for every App type.
  static std::string defaultLocation(std::int64_t appType);
  /// The reports folder's sub-folder for an App type; "Default", with an error line, for codes outside 0 to 2.
  static std::string appSpecificDefaultLocation(std::int64_t appType);
  /// True when the folder was made; false when something is there already or it cannot be made (logged).
  static bool createFolderAt(const std::string& path);
  /// True when anything, folder or file, stands at the path.
  static bool isFolderAlreadyExists(const std::string& path);
  /// True when anything stands in the reports folder under the name.
  static bool isFileAlreadyExists(std::string_view name, std::int64_t appType);
  /// Makes the default location of every App type, which is one folder.
  static void createDefaultFolders();
  /// Moves every file (no folder) of the source folder into the destination folder, which is made when missing; never
  /// overwrites. Answers the success of the last file tried, false when there was none.
  static bool moveFiles(const std::string& source, const std::string& destination);
  /// The same with copies.
  static bool copyFiles(const std::string& source, const std::string& destination);
  /// Moves a folder to a new path.
  static bool moveDirectory(const std::string& source, const std::string& destination);

  // Earlier reports --------------------------------------------------------------------------------------------------

  /// Report entries by file extension, as it stands in the names ("" for a name without one): extension → array of
  /// records with the keys of report_entry, newest first, equal dates in no defined order. No order of the extensions.
  using ReportsByExtension = Record;
  using ReportsByAppType = std::map<std::int64_t, ReportsByExtension>;

  /// What a folder holds, one level, sub-folders listed like files; empty when there is no such folder (logged). The
  /// App type is not used.
  static ReportsByExtension allGeneratedReports(std::int64_t appType, const std::string& fromDirectory);
  /// The reports of the running application's reports folder.
  static ReportsByExtension allGeneratedReports(std::int64_t appType);
  /// The reports of all host applications whose data can be found, each under its App type.
  static ReportsByAppType allGeneratedReports();
  /// The same as `allGeneratedReports(appType)`, under that App type.
  static ReportsByAppType allAppSpecificGeneratedReports(std::int64_t appType);
  /// The File format code that reports of messages have by default, from the settings.
  static std::int64_t defaultFileFormat();
  /// A file name with extension that nothing in the reports folder bears: "Name.pdf", else "Name - 1.pdf" and so on.
  /// The File format is 0 to 2; another code gives a name without extension.
  static std::string defaultFileName(std::string_view name, std::int64_t appType, std::int64_t fileFormat);
  /// Whether the feature is on as a whole, from the settings.
  static bool isChatsumOnlyOn();

  // File kinds and dates ---------------------------------------------------------------------------------------------

  /// True when the name's extension is that of a picture kind the messaging framework handles.
  static bool isImageFile(std::string_view name);
  /// True when the name's extension is that of a PDF.
  static bool isPDFFile(std::string_view name);
  /// The one date formatter of the process, made on first use with nothing set.
  static DateFormatter& dateFormatter();

  // Thumbnails -------------------------------------------------------------------------------------------------------
  // Nothing is kept: every call reads, decodes and draws afresh. nullptr stands for "no picture".

  /// The picture in a file; nullptr when it cannot be read or is no picture.
  static platform::UIImageRef imageFromContentOfFile(const std::string& path);
  /// A picture of the artwork folder. A name without extension gets that of the screen's scale: ".png", or "@2x.png",
  /// "@3x.png" … from scale 2 on; when that file is missing, no other is tried.
  static platform::UIImageRef imageWithFileName(std::string_view name);
  /// A square picture, `side` points wide, of the largest square in the picture's middle. The square is measured in the
  /// picture's points and cut out of its pixels, so a picture at scale 2 shows a quarter of itself. nullptr, with an
  /// error line, for nullptr.
  static platform::UIImageRef thumbnail(const platform::UIImageRef& image, double side);
  /// The same, 64 points wide.
  static platform::UIImageRef thumbnail(const platform::UIImageRef& image);
  /// The same of the picture in a file.
  static platform::UIImageRef thumbnailFromFile(const std::string& path);
  static platform::UIImageRef thumbnailFromFile(const std::string& path, double side);
  /// The same of the first page of a PDF document, 64 points wide.
  static platform::UIImageRef thumbnailForPDF(const std::string& path);

  // Platform helpers -------------------------------------------------------------------------------------------------

  /// True when the system's version, read as a number ("9.3.5" is 9.3), is at least the given one.
  static bool versionCheck(float version);
  static bool isIOS_6();
  static bool isIOS_7();
  static bool isIOS_8();
  static bool isIOS9();
  static bool isIOS10();
  static bool isIOS11();
  static bool isIOS12();
  static bool isIOS13();
  static bool isIOS14();

  /// Shows the busy indicator from the main queue; returns at once. The presenter (may be null) is held until then. A
  /// second call replaces the first indicator without hiding it, so every show wants one hide.
  static void showHud(const std::string& title, const std::string& message,
                      const std::shared_ptr<platform::UIViewController>& presenter);
  /// Hides it from the main queue; returns at once. The completion, if any, runs on the main queue when the indicator
  /// is gone; never, when none is shown.
  static void hideHud(std::function<void()> completion);
  static void hideHud();

  /// A colour that tiles the "nav" picture of the bundle that holds the class.
  static platform::UIColor navigationBarColor(std::string_view className);

  /// The place of the last specifier whose "label" equals the text ignoring case, -1 when there is none.
  static std::int32_t getIdetifierIndex(const std::vector<platform::PSSpecifierRef>& specifiers,
                                        std::string_view identifier);
  /// The same specifier itself, nullptr when there is none.
  static platform::PSSpecifierRef specifier(const std::vector<platform::PSSpecifierRef>& specifiers,
                                            std::string_view identifier);
  /// No custom application takes part in reports.
  static bool anyCustomAppInstalled();
};

}  // namespace chatsum
