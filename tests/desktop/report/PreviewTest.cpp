#include "hosts/desktop/report/Preview.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFileInfo>
#include <QSignalSpy>

#include "tests/desktop/report/PreviewFiles.h"

namespace chatsum::desktop {
namespace {

class PreviewTest : public ::testing::Test {
 protected:
  /// Exports and waits; answers the sentence of a failure, empty for none.
  QString exportTo(const QUrl& target) {
    const QSignalSpy exported(&preview, &Preview::exported);
    QSignalSpy failed(&preview, &Preview::exportFailed);
    preview.exportTo(target);
    test::waitUntil([&] { return exported.size() + failed.size() > 0; }, "the copy");
    return failed.isEmpty() ? QString() : failed[0][0].toString();
  }

  test::PreviewFiles files;
  Preview preview;
};

TEST_F(PreviewTest, TellsTheKindByTheExtension) {
  for (const auto& [name, kind] : {std::pair{"a.pdf", "pdf"},
                                   {"a.PDF", "pdf"},
                                   {"a.csv", "csv"},
                                   {"a.txt", "text"},
                                   {"a", "text"},
                                   {"a.json", "text"}}) {
    preview.open(files.put(name, "some bytes"));
    EXPECT_EQ(preview.kind(), kind) << name;
    EXPECT_EQ(preview.name(), name);
    EXPECT_EQ(preview.path(), files.path(name));
    EXPECT_EQ(preview.problem(), "");
  }
}

TEST_F(PreviewTest, TellsOfAFileThatIsGone) {
  for (const char* name : {"a.pdf", "a.csv", "a.txt"}) {
    preview.open(files.path(name));
    EXPECT_TRUE(preview.isOpen());
    EXPECT_TRUE(preview.problem().contains(files.path(name))) << preview.problem().toStdString();
  }
}

TEST_F(PreviewTest, IsClosedOnce) {
  const QSignalSpy closed(&preview, &Preview::closed);
  preview.open(files.put("a.txt", "one\n"));
  test::waitUntil([&] { return preview.textModel()->rowCount() == 1; });
  preview.close();
  preview.close();
  EXPECT_EQ(closed.size(), 1);
  EXPECT_FALSE(preview.isOpen());
  EXPECT_EQ(preview.kind(), "");
  EXPECT_EQ(preview.path(), "");
  EXPECT_EQ(preview.suggestedCopy(), QUrl());
  EXPECT_EQ(preview.textModel()->rowCount(), 0);
}

TEST_F(PreviewTest, ExportsACopyInPlaceOfAnOlderFileOnceThatIsWanted) {
  preview.open(files.put("a.txt", "all of it"));
  const QString target = files.put("copy.txt", "older");
  QSignalSpy exported(&preview, &Preview::exported);
  const auto* const question = [&] {
    preview.exportTo(QUrl::fromLocalFile(target));
    return qobject_cast<DesktopAlert*>(preview.question());
  }();
  ASSERT_TRUE(question);
  EXPECT_EQ(question->message().toStdString(), "“copy.txt” already exists. Do you want to replace it?");
  preview.answer(question->cancelIndex());
  EXPECT_FALSE(preview.question());
  EXPECT_FALSE(preview.isExporting());
  EXPECT_EQ(files.read(target), "older");

  preview.exportTo(QUrl::fromLocalFile(target));
  preview.answer(2);  // there is none
  EXPECT_TRUE(preview.question());
  preview.answer(1);
  EXPECT_FALSE(preview.question());
  test::waitUntil([&] { return exported.size() == 1; }, "the copy");
  EXPECT_EQ(files.read(target), "all of it");
  EXPECT_EQ(exported[0][0].toString(), target);
  EXPECT_FALSE(preview.isExporting());
  EXPECT_EQ(files.read(preview.path()), "all of it");
}

TEST_F(PreviewTest, AsksNothingOnceItIsClosed) {
  preview.open(files.put("a.txt", "all of it"));
  const QString target = files.put("copy.txt", "older");
  preview.exportTo(QUrl::fromLocalFile(target));
  preview.close();
  EXPECT_FALSE(preview.question());
  preview.answer(1);
  EXPECT_FALSE(preview.isExporting());
  EXPECT_EQ(files.read(target), "older");
}

TEST_F(PreviewTest, TellsWhyNoCopyCanBeMade) {
  preview.open(files.put("a.txt", "all of it"));
  EXPECT_TRUE(exportTo(QUrl::fromLocalFile(files.path("no/such/folder.txt"))).contains("No such file"));
  EXPECT_TRUE(exportTo(QUrl("https://example.com/a.txt")).contains("this computer"));
  EXPECT_NE(exportTo(QUrl::fromLocalFile(files.path(""))), "");  // a folder
  EXPECT_FALSE(preview.isExporting());
}

TEST_F(PreviewTest, ExportsNothingWhereItMayNot) {
  preview.setGuard([&](const std::string& target) -> std::optional<device::StoreProblem> {
    if (target != files.path("source/sms.db").toStdString()) return std::nullopt;
    return device::StoreProblem{"It is inside \u202Ethe source."};
  });
  preview.open(files.put("a.txt", "all of it"));
  QDir().mkpath(files.path("source"));
  const QString store = files.put("source/sms.db", "the only copy");
  preview.exportTo(QUrl::fromLocalFile(store));
  QSignalSpy failed(&preview, &Preview::exportFailed);
  preview.answer(1);
  test::waitUntil([&] { return failed.size() == 1; }, "the failure");
  EXPECT_EQ(failed[0][0].toString(), "It is inside the source.");
  EXPECT_EQ(files.read(store), "the only copy");
  EXPECT_EQ(exportTo(QUrl::fromLocalFile(files.path("copy.txt"))), "");
}

TEST_F(PreviewTest, SuggestsTheReportsOwnName) {
  preview.open(files.put("Anna – 1.pdf", ""));
  EXPECT_EQ(preview.suggestedCopy().fileName(), "Anna – 1.pdf");
  EXPECT_TRUE(QFileInfo(QFileInfo(preview.suggestedCopy().toLocalFile()).path()).isDir());
}

TEST_F(PreviewTest, ExportsNothingWhenNothingIsOpen) {
  const QSignalSpy failed(&preview, &Preview::exportFailed);
  preview.exportTo(QUrl::fromLocalFile(files.path("b.txt")));
  EXPECT_FALSE(preview.isExporting());
  EXPECT_EQ(failed.size(), 0);
}

}  // namespace
}  // namespace chatsum::desktop
