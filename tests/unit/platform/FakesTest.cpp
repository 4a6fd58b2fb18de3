#include <gtest/gtest.h>
#include <sqlite3.h>

#include <atomic>
#include <filesystem>
#include <semaphore>
#include <thread>

#include "platform/fake/FakePlatform.h"

namespace chatsum::platform::fake {
namespace {

TEST(FakePlatform, KeepsItsFilesInATemporaryFolderThatGoesWithIt) {
  std::string root;
  {
    FakePlatform fake;
    root = fake.root();
    fake.put("/var/mobile/a/b.txt", "x");
    EXPECT_EQ(fake.read("/var/mobile/a/b.txt"), "x");
    EXPECT_EQ(fake.realPath("/var/mobile"), root + "/var/mobile");
    EXPECT_EQ(fake.realPath(root + "/x"), root + "/x");
    EXPECT_TRUE(fake.files.exists(root + "/var/mobile/a/b.txt"));
    EXPECT_TRUE(fake.platform().files.exists("/var/mobile/a/b.txt"));
    EXPECT_THROW((void)fake.read("/none"), std::runtime_error);
  }
  EXPECT_FALSE(std::filesystem::exists(root));
}

TEST(FakePlatform, HasItsOwnFolderEachTime) {
  FakePlatform first;
  FakePlatform second;
  EXPECT_NE(first.root(), second.root());
}

TEST(FailingFiles, FailAsOftenAsTheyWereTold) {
  FakePlatform fake;
  fake.files.fail(FileOperation::kWriteAtomically, ENOSPC, 2);
  for (int i = 0; i < 2; ++i) {
    const auto error = fake.files.writeAtomically("/a.txt", "x");
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, ENOSPC);
    EXPECT_FALSE(fake.files.exists("/a.txt"));
  }
  EXPECT_FALSE(fake.files.writeAtomically("/a.txt", "x"));
  EXPECT_EQ(fake.files.calls(), std::vector<std::string>(3, "writeAtomically /a.txt"));
}

TEST(FailingFiles, FailEachOperationAlone) {
  FakePlatform fake;
  fake.put("/a/file", "x");
  FailingFiles& files = fake.files;
  files.fail(FileOperation::kList, EACCES);
  EXPECT_FALSE(files.list("/a"));
  files.succeed(FileOperation::kList);
  EXPECT_TRUE(files.list("/a"));
  files.fail(FileOperation::kAttributes, EACCES);
  EXPECT_FALSE(files.attributes("/a/file").size);
  files.fail(FileOperation::kCreateDirectory, EROFS);
  EXPECT_EQ(files.createDirectory("/b")->code, EROFS);
  files.fail(FileOperation::kMove, EROFS);
  EXPECT_EQ(files.move("/a/file", "/b")->code, EROFS);
  files.fail(FileOperation::kCopy, EROFS);
  EXPECT_EQ(files.copy("/a/file", "/b")->code, EROFS);
  files.fail(FileOperation::kRemove, EROFS);
  EXPECT_EQ(files.remove("/a/file")->code, EROFS);
  files.fail(FileOperation::kCreateFile, EROFS);
  EXPECT_EQ(files.createFile("/b")->code, EROFS);
  files.fail(FileOperation::kOpenForWriting, EROFS, 1);
  EXPECT_EQ(files.openForWriting("/a/file"), nullptr);
  files.fail(FileOperation::kHandleWrite, ENOSPC, 1);
  const auto handle = files.openForWriting("/a/file");
  ASSERT_NE(handle, nullptr);
  EXPECT_EQ(handle->write("y")->code, ENOSPC);
  EXPECT_FALSE(handle->write("z"));
  files.fail(FileOperation::kOpenDatabase, EIO, 1);
  sqlite3* database = nullptr;
  EXPECT_EQ(files.openDatabase("/a/store.db", &database), SQLITE_CANTOPEN);
  EXPECT_EQ(database, nullptr);
  EXPECT_EQ(files.openDatabase("/a/store.db", &database), SQLITE_OK);
  sqlite3_close(database);
  EXPECT_TRUE(files.exists("/a/file"));
  EXPECT_FALSE(files.exists("/b"));
}

TEST(FakeClock, MovesOnlyByHand) {
  FakeClock clock;
  const double start = clock.now().secondsSince1970;
  EXPECT_EQ(clock.now().secondsSince1970, start);
  clock.advance(1.5);
  EXPECT_EQ(clock.now().secondsSince1970, start + 1.5);
  clock.set(Date{7});
  EXPECT_EQ(clock.now(), Date{7});
}

TEST(FakeAccess, AnswersWhenTheTestWants) {
  FakeAddressBook book;
  book.access.time = AnswerTime::kByHand;
  book.access.granted = false;
  std::vector<bool> answers;
  book.requestAccess(nullptr, [&](bool granted) { answers.push_back(granted); });
  EXPECT_TRUE(answers.empty());
  EXPECT_EQ(book.access.waiting(), 1u);
  EXPECT_EQ(book.access.answerAll(), 1u);
  EXPECT_EQ(book.access.answerAll(), 0u);
  EXPECT_EQ(answers, std::vector<bool>{false});
  EXPECT_EQ(book.access.requests(), 1);
}

TEST(FakeAccess, AnswersOnAnotherThreadWhileTheCallerWaits) {
  FakeContacts contacts;
  contacts.access.time = AnswerTime::kOnOtherThread;
  std::binary_semaphore answered(0);
  std::thread::id where;
  contacts.requestAccess(contacts.create(), 0, [&](bool granted) {
    EXPECT_TRUE(granted);
    where = std::this_thread::get_id();
    answered.release();
  });
  answered.acquire();
  EXPECT_NE(where, std::this_thread::get_id());
  EXPECT_EQ(contacts.entityTypes, std::vector<int>{0});
}

TEST(FakeContacts, AnswerWhatATestPutIn) {
  FakePlatform fake;
  const auto person = fake.addressBook.add(7, {{"_$!<Mobile>!$_", "+15550100123"}, {std::nullopt, "1"}});
  fake.contacts.answers["+15550100123"] = {std::nullopt, {{"id-7", {{std::nullopt, "+15550100123"}}}}};
  fake.contacts.answers["broken"] = {Error::posix(EIO, "broken"), {}};
  fake.contacts.persons["id-7"] = person;
  fake.contacts.identifiers[7] = "id-7";
  const auto store = fake.contacts.create();
  const auto found = store->contactsForPhoneNumber("+15550100123");
  ASSERT_TRUE(found && found->contacts.size() == 1);
  EXPECT_EQ(store->publicABPersonFromContact(found->contacts[0])->recordID(), 7);
  EXPECT_EQ(store->contactIdentifierFromPersonID(7), "id-7");
  EXPECT_TRUE(store->contactsForPhoneNumber("broken")->error);
  EXPECT_FALSE(store->contactsForPhoneNumber("unknown"));
  const auto book = fake.addressBook.create();
  EXPECT_EQ(book->personWithRecordID(7)->values(ABProperty::kPhone)->size(), 2u);
  EXPECT_FALSE(book->personWithRecordID(7)->values(ABProperty::kEmail));
  fake.addressBook.exists = false;
  EXPECT_EQ(fake.addressBook.create(), nullptr);
}

TEST(FakeRuntime, HasTheLibrariesATestPutIn) {
  FakeRuntime runtime;
  const auto person = std::make_shared<FakeRecord>();
  runtime.libraries["/lib"]["find"] = [&](const ABAddressBookRef&, std::string_view, int, int) { return person; };
  EXPECT_EQ(runtime.openLibrary("/other", 2), nullptr);
  const auto library = runtime.openLibrary("/lib", 2);
  ASSERT_NE(library, nullptr);
  EXPECT_FALSE(library->findPersonFunction("other"));
  EXPECT_EQ(library->findPersonFunction("find")(nullptr, "1", 0, 0), person);
  EXPECT_EQ(runtime.opened, (std::vector<std::pair<std::string, int>>{{"/other", 2}, {"/lib", 2}}));
}

TEST(FakeDispatch, RunsGlobalBlocksOnThreadsWhenAsked) {
  FakeDispatch dispatch;
  dispatch.globalOnThreads = true;
  std::atomic<bool> ranElsewhere = false;
  const auto here = std::this_thread::get_id();
  dispatch.asyncOnGlobal([&] { ranElsewhere = std::this_thread::get_id() != here; });
  dispatch.joinThreads();
  EXPECT_TRUE(ranElsewhere);
}

TEST(FakeDispatch, RunsNothingUntilItIsTold) {
  FakeDispatch dispatch;
  int ran = 0;
  dispatch.asyncOnMain([&] { ++ran; });
  dispatch.asyncOnGlobal([&] { ++ran; });
  EXPECT_EQ(dispatch.mainWaiting(), 1u);
  EXPECT_EQ(dispatch.globalWaiting(), 1u);
  EXPECT_EQ(ran, 0);
  EXPECT_EQ(dispatch.runGlobal(), 1u);
  EXPECT_EQ(dispatch.runMain(), 1u);
  EXPECT_EQ(ran, 2);
}

TEST(FakeCompanion, RemembersIndicatorsOfBothGenerations) {
  FakeCompanion companion;
  companion.keepCompletions = true;
  UIViewController presenter;
  const auto controller = companion.activityAlertController("T", "M\n\n\n", kAlertStyle);
  controller->show(&presenter);
  int ended = 0;
  controller->dismissViewController(true, [&] { ++ended; });
  const auto view = companion.activityAlertView("T", "M");
  view->show();
  view->close();
  ASSERT_EQ(companion.indicators.size(), 2u);
  const FakeIndicator& first = *companion.indicators[0];
  EXPECT_TRUE(first.isController && first.animated && first.shown == 1 && first.hidden == 1);
  EXPECT_EQ(first.message, "M\n\n\n");
  EXPECT_EQ(first.presenter, &presenter);
  EXPECT_EQ(ended, 0);
  first.completion();
  EXPECT_EQ(ended, 1);
  EXPECT_FALSE(companion.indicators[1]->isController);
  EXPECT_EQ(companion.indicators[1]->hidden, 1);
}

TEST(FakeDateFormatting, WritesAmericanEnglishInUtcUnlessToldOtherwise) {
  FakePlatform fake;
  TextBuffer text;
  fake.dateFormatting.withPattern("EEE, MM-dd-YYYY hh:mm aa")->append(Date{1578307200}, text);
  EXPECT_EQ(text.view(), "Mon, 01-06-2020 10:40 AM");
  fake.dateFormatting.use("de_DE", "Europe/Berlin");
  text.clear();
  fake.dateFormatting.withPattern("EEEE HH:mm")->append(Date{1578307200}, text);
  EXPECT_EQ(text.view(), "Montag 11:40");
}

}  // namespace
}  // namespace chatsum::platform::fake
