#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include "tests/unit/platform/PlatformHosts.h"

namespace chatsum::platform {
namespace {

template <class Host>
class ServicesContract : public ::testing::Test {
 protected:
  Platform& platform() { return host_.platform(); }
  Host host_;
};
TYPED_TEST_SUITE(ServicesContract, Hosts);

TYPED_TEST(ServicesContract, PlatformIsCurrentForItsScope) {
  EXPECT_EQ(install(nullptr), nullptr);
  {
    const fake::ScopedPlatform scope(this->platform());
    EXPECT_EQ(&current(), &this->platform());
    fake::FakePlatform inner;
    {
      const fake::ScopedPlatform innerScope(inner);
      EXPECT_EQ(&current(), &inner.platform());
    }
    EXPECT_EQ(&current(), &this->platform());
  }
  EXPECT_EQ(install(nullptr), nullptr);
}

TYPED_TEST(ServicesContract, LogKeepsLinesInOrder) {
  this->platform().log.line("one");
  this->platform().log.line("");
  this->platform().log.line("zwei – 😀");
  EXPECT_EQ(this->host_.logLines(), (std::vector<std::string>{"one", "", "zwei – 😀"}));
}

TYPED_TEST(ServicesContract, LogTakesLinesFromManyThreads) {
  {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 4; ++i) {
      threads.emplace_back([this] {
        for (int n = 0; n < 100; ++n) this->platform().log.line("line");
      });
    }
  }
  EXPECT_EQ(this->host_.logLines().size(), 400u);
}

TYPED_TEST(ServicesContract, ClockDoesNotRunBackwardsByItself) {
  const Date first = this->platform().clock.now();
  const Date second = this->platform().clock.now();
  EXPECT_LE(first, second);
  EXPECT_GT(first.secondsSince1970, 1.5e9);
}

TYPED_TEST(ServicesContract, BundleAnswersTheKeyWithoutACatalogue) {
  EXPECT_EQ(this->platform().mainBundle.identifier(), "com.apple.MobileSMS");
  EXPECT_EQ(this->platform().mainBundle.localizedString("Unknown"), "Unknown");
  EXPECT_EQ(this->platform().mainBundle.localizedString(""), "");
}

TYPED_TEST(ServicesContract, DeviceHasAVersion) { EXPECT_EQ(this->platform().device.systemVersion(), "17.0"); }

TYPED_TEST(ServicesContract, RuntimeKnowsTheAlertControllerOnly) {
  EXPECT_TRUE(this->platform().runtime.hasClass("UIAlertController"));
  EXPECT_FALSE(this->platform().runtime.hasClass("UIActionSheet"));
  EXPECT_FALSE(this->platform().runtime.hasClass(""));
  EXPECT_EQ(this->platform().runtime.openLibrary("/usr/lib/libnothing.dylib", 2), nullptr);
}

TYPED_TEST(ServicesContract, TypesComeFromTheTable) {
  const UniformTypes& types = this->platform().uniformTypes;
  EXPECT_EQ(types.identifierForExtension("JPG"), "public.jpeg");
  EXPECT_TRUE(types.conforms("public.jpeg", kUTTypeImage));
  EXPECT_FALSE(types.conforms("public.jpeg", kUTTypePDF));
}

TYPED_TEST(ServicesContract, StringsFoldCaseAndMarks) {
  EXPECT_EQ(this->platform().strings.folded("Zoë"), "zoe");
  EXPECT_EQ(this->platform().strings.caseFolded("Zoë"), "zoë");
}

TYPED_TEST(ServicesContract, DatesAreWrittenInAPattern) {
  const auto text = this->platform().dateFormatting.withPattern("yyyy");
  ASSERT_NE(text, nullptr);
  TextBuffer buffer;
  buffer.append("in ");
  text->append(Date{1593604800}, buffer);
  EXPECT_EQ(buffer.view(), "in 2020");
  EXPECT_NE(this->platform().dateFormatting.withPattern("no such {pattern}"), nullptr);
  EXPECT_NE(this->platform().dateFormatting.withStyles(DateStyle::kMedium, DateStyle::kShort, false), nullptr);
}

TYPED_TEST(ServicesContract, GraphicsMeasureNothingAsNothing) {
  Graphics& graphics = this->platform().graphics;
  const UIFont font{"", 14};
  EXPECT_EQ(graphics.sizeOfText("", font, {100, 100}, LineBreakMode::kWordWrap), Size());
  EXPECT_EQ(graphics.sizeOfLine("", font, 100, LineBreakMode::kWordWrap), Size());
  EXPECT_EQ(graphics.currentContext(), nullptr);
  const Size text = graphics.sizeOfText("some words", font, {50, 100}, LineBreakMode::kWordWrap);
  EXPECT_LE(text.width, 50);
  EXPECT_LE(text.height, 100);
  EXPECT_GT(text.width, 0);
  EXPECT_GT(text.height, 0);
}

TYPED_TEST(ServicesContract, ArtworkAlwaysHasABundle) {
  const BundleRef bundle = this->platform().artwork.bundleForClass("ChatsumSettingsController");
  ASSERT_NE(bundle, nullptr);
  EXPECT_FALSE(bundle->pathForResource("none", "png"));
  EXPECT_EQ(bundle->imageNamed("none"), nullptr);
  EXPECT_EQ(this->platform().artwork.imageWithContentsOfFile("/none.png"), nullptr);
}

TYPED_TEST(ServicesContract, MessagesNameTheOwnerAndThePictureTypes) {
  EXPECT_EQ(this->platform().messages.ownerFullName(), "Ann Example");
  const auto& types = this->platform().messages.imageMediaTypes();
  EXPECT_EQ(std::set<std::string>(types.begin(), types.end()).size(), types.size());
  for (const auto& type : types) EXPECT_TRUE(this->platform().uniformTypes.conforms(type, kUTTypeImage)) << type;
  for (const char* extension : {"jpg", "jpeg", "png", "gif", "tiff", "heic"}) {
    const auto type = this->platform().uniformTypes.identifierForExtension(extension);
    EXPECT_NE(std::find(types.begin(), types.end(), type), types.end()) << extension;
  }
}

TYPED_TEST(ServicesContract, AddressBookAnswersAccessOnceAndKnowsNobody) {
  AddressBook& addressBook = this->platform().addressBook;
  const ABAddressBookRef book = addressBook.create();
  ASSERT_NE(book, nullptr);
  std::atomic<int> answers = 0;
  addressBook.requestAccess(book, [&](bool) { ++answers; });
  this->host_.runQueues();
  EXPECT_EQ(answers, 1);
  EXPECT_EQ(book->personWithRecordID(1), nullptr);
  EXPECT_EQ(book->personWithRecordID(-1), nullptr);
  EXPECT_EQ(addressBook.localizedLabel("my own words"), "my own words");
  EXPECT_EQ(addressBook.formattedPhoneNumber("ann@example.com"), "ann@example.com");
}

TYPED_TEST(ServicesContract, ContactsAnswerAccessOnceAndKnowNobody) {
  Contacts& contacts = this->platform().contacts;
  const CNContactStoreRef store = contacts.create();
  ASSERT_NE(store, nullptr);
  std::atomic<int> answers = 0;
  contacts.requestAccess(store, 0, [&](bool) { ++answers; });
  this->host_.runQueues();
  EXPECT_EQ(answers, 1);
  const auto found = store->contactsForPhoneNumber("+15550100123");
  EXPECT_TRUE(!found || (!found->error && found->contacts.empty()));
  EXPECT_EQ(store->publicABPersonFromContact({"nobody", {}}), nullptr);
  EXPECT_FALSE(store->contactIdentifierFromPersonID(1));
}

TYPED_TEST(ServicesContract, MainQueueRunsBlocksInOrder) {
  std::vector<int> ran;
  Dispatch& dispatch = this->platform().dispatch;
  for (int i = 0; i < 5; ++i) dispatch.asyncOnMain([&ran, i] { ran.push_back(i); });
  dispatch.asyncOnMain([&] { dispatch.asyncOnMain([&ran] { ran.push_back(99); }); });
  EXPECT_TRUE(ran.empty());
  this->host_.runQueues();
  EXPECT_EQ(ran, (std::vector<int>{0, 1, 2, 3, 4, 99}));
}

TYPED_TEST(ServicesContract, GlobalQueueRunsEveryBlockAndMayComeBackToMain) {
  std::atomic<int> global = 0;
  int main = 0;
  Dispatch& dispatch = this->platform().dispatch;
  for (int i = 0; i < 100; ++i) {
    dispatch.asyncOnGlobal([&] {
      ++global;
      dispatch.asyncOnMain([&main] { ++main; });
    });
  }
  this->host_.runQueues();
  EXPECT_EQ(global, 100);
  EXPECT_EQ(main, 100);
}

struct Told {
  std::vector<std::string> names;
  static void callback(void* observer, std::string_view name) {
    static_cast<Told*>(observer)->names.emplace_back(name);
  }
};

TYPED_TEST(ServicesContract, NotificationsReachTheObserversOfTheirName) {
  DarwinNotifications& notifications = this->platform().darwinNotifications;
  Told first;
  Told second;
  notifications.post("early");
  notifications.addObserver(&first, &Told::callback, "early", SuspensionBehaviour::kHold);
  notifications.addObserver(&second, &Told::callback, "late", SuspensionBehaviour::kHold);
  notifications.post("early");
  notifications.post("late");
  notifications.post("late");
  notifications.post("never");
  EXPECT_EQ(first.names, (std::vector<std::string>{"early"}));
  EXPECT_EQ(second.names, (std::vector<std::string>{"late", "late"}));
}

TYPED_TEST(ServicesContract, IndicatorsComeAndGo) {
  Companion& companion = this->platform().companion;
  const auto controller = companion.activityAlertController("Title", "Message", kAlertStyle);
  ASSERT_NE(controller, nullptr);
  controller->show(nullptr);
  int ended = 0;
  controller->dismissViewController(true, [&] { ++ended; });
  this->host_.runQueues();
  EXPECT_EQ(ended, 1);
  controller->dismissViewController(true, nullptr);
  const auto view = companion.activityAlertView("Title", "Message");
  ASSERT_NE(view, nullptr);
  view->show();
  view->close();
  this->host_.runQueues();
}

}  // namespace
}  // namespace chatsum::platform
