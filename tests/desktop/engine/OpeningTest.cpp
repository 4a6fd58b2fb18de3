#include <QSignalSpy>
#include <filesystem>
#include <fstream>
#include <string>

#include "hosts/device/sample/DevicePaths.h"
#include "platform/interfaces/Platform.h"
#include "tests/desktop/engine/EngineFixture.h"

namespace chatsum::desktop {
namespace {

namespace fs = std::filesystem;
using testing::happens;
using testing::runEvents;

using OpeningTest = testing::EngineTest;

TEST_F(OpeningTest, OpensTheSampleDevice) {
  QSignalSpy opened(&library(), &Library::deviceOpened);
  library().openSample();
  EXPECT_EQ(library().state(), State::Opening);
  EXPECT_NE(library().what(), "");
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_EQ(opened.count(), 1);
  EXPECT_EQ(library().error(), "");
  EXPECT_EQ(library().title(), "Sample Device");
  EXPECT_EQ(library().subtitle(), "Device");
  EXPECT_TRUE(library().hasMessages());
  EXPECT_TRUE(library().hasPhone());
  EXPECT_TRUE(library().hasFaceTime());
  EXPECT_GT(engine->conversations().count(), 5);
  EXPECT_GT(engine->calls().count(), 5);
  EXPECT_EQ(engine->messages().state(), MessageModel::State::Empty);
  // The sample is always there to try, so nobody needs it among the recent ones.
  EXPECT_EQ(engine->sources().count(), 0);
  EXPECT_TRUE(engine->sources().isSampleAvailable());
}

TEST_F(OpeningTest, SaysWhatIsWrongWithAPlaceThatIsNoSource) {
  fs::create_directories(folder.path() + "/empty");
  library().open(shownText(folder.path() + "/empty"));
  ASSERT_TRUE(becomes(State::Failed));
  EXPECT_NE(library().error().indexOf(u"empty"), -1) << library().error().toStdString();
  EXPECT_EQ(library().title(), "");
  EXPECT_FALSE(library().hasMessages());
  EXPECT_EQ(engine->sources().count(), 0);
  // And something else can be opened then.
  EXPECT_TRUE(openSample());
  EXPECT_EQ(library().error(), "");
}

TEST_F(OpeningTest, AStoreThatIsDamagedIsNoSource) {
  fs::create_directories(folder.path() + "/file");
  std::ofstream(folder.path() + "/file/sms.db") << "no database at all";
  library().open(shownText(folder.path() + "/file/sms.db"));
  ASSERT_TRUE(becomes(State::Failed));
  EXPECT_NE(library().error().indexOf(u"sms.db"), -1) << library().error().toStdString();
}

TEST_F(OpeningTest, ASourceWithCallsOnlyIsOneToo) {
  const fs::path device = folder.path() + "/device";
  ASSERT_EQ(device::writeSampleDevice(device), std::nullopt);
  fs::remove(device::messageStorePath(device));
  library().open(shownText(device.string()));
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_FALSE(library().hasMessages());
  EXPECT_TRUE(library().hasPhone());
  EXPECT_EQ(engine->conversations().count(), 0);
  EXPECT_FALSE(library().notes().isEmpty());
}

TEST_F(OpeningTest, AnUnencryptedBackupSaysWhyItHasNoCalls) {
  library().open(shownText(writeBackup()));
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_EQ(library().title().toStdString(), test::kBackupDeviceName);
  EXPECT_TRUE(library().subtitle().startsWith("Backup · ")) << library().subtitle().toStdString();
  EXPECT_FALSE(library().hasPhone());
  EXPECT_FALSE(library().hasFaceTime());
  EXPECT_EQ(library().notes().filter("encrypted").size(), 1);
}

TEST_F(OpeningTest, AsksForAPasswordUntilItIsTheRightOne) {
  library().open(shownText(writeBackup("right")));
  ASSERT_TRUE(becomes(State::NeedsPassword));
  EXPECT_EQ(library().error(), "");
  library().givePassword("wrong");
  EXPECT_EQ(library().state(), State::Opening);
  ASSERT_TRUE(becomes(State::NeedsPassword));
  EXPECT_NE(library().error().indexOf(u"password"), -1) << library().error().toStdString();
  library().givePassword("right");
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_EQ(library().error(), "");
  EXPECT_TRUE(library().hasMessages());
  EXPECT_TRUE(library().hasPhone());
  EXPECT_TRUE(library().subtitle().startsWith("Encrypted backup")) << library().subtitle().toStdString();
}

TEST_F(OpeningTest, TellsHowFarThePasswordsWorkIs) {
  library().open(shownText(writeBackup("right")));
  ASSERT_TRUE(becomes(State::NeedsPassword));
  double most = -1;
  QObject::connect(&library(), &Library::progressChanged, &library(),
                   [&] { most = std::max(most, library().progress()); });
  library().givePassword("right");
  EXPECT_EQ(library().progress(), 0);
  EXPECT_NE(library().what().indexOf("Unlocking"), -1);
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_LE(most, 1);
  EXPECT_EQ(library().progress(), -1);
}

TEST_F(OpeningTest, APasswordThatNobodyAskedForIsNoAnswer) {
  library().givePassword("anything");
  EXPECT_EQ(library().state(), State::Closed);
  ASSERT_TRUE(openSample());
  library().givePassword("anything");
  EXPECT_EQ(library().state(), State::Open);
}

TEST_F(OpeningTest, CanBeCancelledWhileItAsks) {
  library().open(shownText(writeBackup("right")));
  ASSERT_TRUE(becomes(State::NeedsPassword));
  library().cancel();
  EXPECT_EQ(library().state(), State::Closed);
  ASSERT_TRUE(openSample());  // the worker waits for nobody any more
  EXPECT_EQ(library().title(), "Sample Device");
}

TEST_F(OpeningTest, CanBeCancelledAtAnyTimeWithoutATrace) {
  ASSERT_EQ(device::writeSampleDevice(folder.path() + "/device"), std::nullopt);
  for (int i = 0; i < 10; ++i) {
    library().open(shownText(folder.path() + "/device"));
    for (int turns = 0; turns < i; ++turns) runEvents();
    library().cancel();
    library().close();  // it may be open already
    EXPECT_EQ(library().state(), State::Closed);
  }
  ASSERT_TRUE(openSample());
  EXPECT_EQ(library().title(), "Sample Device");
}

TEST_F(OpeningTest, OnlyTheLastOfSeveralIsOpenInTheEnd) {
  ASSERT_EQ(device::writeSampleDevice(folder.path() + "/device"), std::nullopt);
  library().open(shownText(folder.path() + "/nowhere"));
  library().open(shownText(folder.path() + "/device"));
  library().openSample();
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_TRUE(library().isSample());
  library().open(shownText(folder.path() + "/device"));
  ASSERT_TRUE(becomes(State::Open));
  EXPECT_EQ(library().title(), "device");
}

TEST_F(OpeningTest, TellsBeforeItClosesAndLeavesNothingBehind) {
  platform::Platform* const before = platform::install(nullptr);
  platform::install(before);
  ASSERT_TRUE(openSample());
  ASSERT_TRUE(select("Maya Lindqvist"));
  ASSERT_GT(engine->selection().count(), 0);
  engine->conversations().setFilter("maya");
  bool wasTold = false;
  QObject::connect(&library(), &Library::deviceClosing, &library(), [&] {
    wasTold = true;
    // The library is still there for who uses it.
    EXPECT_NE(platform::current().files.homeDirectory(), "");
  });
  library().close();
  EXPECT_TRUE(wasTold);
  EXPECT_EQ(library().state(), State::Closed);
  EXPECT_EQ(engine->conversations().total(), 0);
  EXPECT_EQ(engine->conversations().filter(), "");
  EXPECT_EQ(engine->conversations().selectedGuid(), "");
  EXPECT_EQ(engine->messages().rowCount(), 0);
  EXPECT_EQ(engine->calls().count(), 0);
  EXPECT_EQ(engine->selection().count(), 0);
  engine.reset();
  EXPECT_EQ(platform::install(before), before);
}

TEST_F(OpeningTest, TheProgramMayEndAtAnyTime) {
  library().open(shownText(writeBackup("right")));
  engine.reset();  // before anything happened
  begin();
  library().open(shownText(folder.path() + "/user/Library/Application Support/MobileSync/Backup/"
                                           "00008110-0011223344556677"));
  ASSERT_TRUE(becomes(State::NeedsPassword));
  engine.reset();  // while it asks
  begin();
  ASSERT_TRUE(openSample());
  engine->conversations().select(engine->conversations().index(0, 0).data(ConversationModel::GuidRole).toString());
  engine->messages().search("a");
  engine.reset();  // while it reads
  runEvents();
}

TEST_F(OpeningTest, WhatTheLibraryPutsOnTheMainQueueRunsOnTheMainThread) {
  ASSERT_TRUE(openSample());
  std::thread::id thread;
  int runs = 0;
  platform::current().dispatch.asyncOnGlobal([&] {
    platform::current().dispatch.asyncOnMain([&] {
      thread = std::this_thread::get_id();
      ++runs;
      // One more from the inside, and one that closes the source under the queue.
      platform::current().dispatch.asyncOnMain([&] {
        ++runs;
        library().close();
        EXPECT_EQ(library().state(), State::Open);
      });
    });
  });
  ASSERT_TRUE(becomes(State::Closed));
  EXPECT_EQ(runs, 2);
  EXPECT_EQ(thread, std::this_thread::get_id());
}

}  // namespace
}  // namespace chatsum::desktop
