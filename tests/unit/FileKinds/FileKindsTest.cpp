#include <gtest/gtest.h>

#include "libchatsum/ChatsumUtils/ChatsumUtils.h"
#include "platform/fake/FakePlatform.h"

namespace chatsum::test {
namespace {

class FileKinds : public ::testing::Test {
 protected:
  platform::fake::FakePlatform fake;
  platform::fake::ScopedPlatform scope{fake};
};

TEST_F(FileKinds, KnowPicturesByTheirExtensionIgnoringCase) {
  for (const char* name : {"photo.jpeg", "photo.jpg", "PHOTO.JPG", "a.Png", "a.gif", "a.tif", "a.tiff", "a.heic"}) {
    EXPECT_TRUE(ChatsumUtils::isImageFile(name)) << name;
  }
}

TEST_F(FileKinds, LookAtTheLastExtensionOfTheLastComponent) {
  EXPECT_TRUE(ChatsumUtils::isImageFile("/var/mobile/Library/SMS/Attachments/0a/photo.txt.png"));
  EXPECT_TRUE(ChatsumUtils::isImageFile("~/Library/SMS/my photo.jpeg"));
  EXPECT_TRUE(ChatsumUtils::isImageFile("photo.jpeg/"));
  EXPECT_FALSE(ChatsumUtils::isImageFile("/folder.jpeg/photo"));
  EXPECT_FALSE(ChatsumUtils::isImageFile("photo.jpeg.txt"));
}

TEST_F(FileKinds, TakeNamesWithoutExtensionForNoPicture) {
  for (const char* name : {"photo", "", ".", "..", "/", ".jpeg", "/a/.png", "photo.", "jpeg", "photo jpeg"}) {
    EXPECT_FALSE(ChatsumUtils::isImageFile(name)) << name;
  }
}

TEST_F(FileKinds, TakeOtherFilesForNoPicture) {
  for (const char* name : {"a.pdf", "a.mov", "a.mp4", "a.m4a", "a.vcf", "a.txt", "a.unknown", "a.jpeg ", "a. jpeg",
                           "a.jpeg\n", "See you at 7.30", "Well... ok", "photo.jp\xC3\xA9g"}) {
    EXPECT_FALSE(ChatsumUtils::isImageFile(name)) << name;
  }
}

TEST_F(FileKinds, TakeTextThatEndsLikeAPictureForOne) {
  EXPECT_TRUE(ChatsumUtils::isImageFile("have you seen cat.jpg"));
}

TEST_F(FileKinds, AskTheMessagingFrameworkWhichPicturesItHandles) {
  fake.messages.imageTypes = {"public.png"};
  EXPECT_TRUE(ChatsumUtils::isImageFile("a.png"));
  EXPECT_FALSE(ChatsumUtils::isImageFile("a.jpeg"));
  fake.messages.imageTypes = {};
  EXPECT_FALSE(ChatsumUtils::isImageFile("a.png"));
}

TEST_F(FileKinds, CountATypeBelowAPictureType) {
  fake.messages.imageTypes = {"public.image"};
  EXPECT_TRUE(ChatsumUtils::isImageFile("a.webp"));
  EXPECT_TRUE(ChatsumUtils::isImageFile("a.dng"));
  EXPECT_FALSE(ChatsumUtils::isImageFile("a.pdf"));
}

TEST_F(FileKinds, KnowPDFsIgnoringCase) {
  EXPECT_TRUE(ChatsumUtils::isPDFFile("report.PDF"));
  EXPECT_TRUE(ChatsumUtils::isPDFFile("/a/b/report.pdf"));
  EXPECT_TRUE(ChatsumUtils::isPDFFile("a.jpeg.Pdf"));
}

TEST_F(FileKinds, TakeOtherFilesForNoPDF) {
  for (const char* name :
       {"report.txt", "report", "", ".pdf", "pdf", "report.pdf.txt", "report.pdfx", "a.jpeg", "a.pdf ", "/"}) {
    EXPECT_FALSE(ChatsumUtils::isPDFFile(name)) << name;
  }
}

TEST_F(FileKinds, TakeNoPDFForAPicture) {
  EXPECT_FALSE(ChatsumUtils::isImageFile("report.pdf"));
  EXPECT_FALSE(ChatsumUtils::isPDFFile("photo.jpeg"));
}

TEST_F(FileKinds, NeverTouchTheFile) {
  ChatsumUtils::isImageFile("/var/mobile/photo.jpeg");
  ChatsumUtils::isPDFFile("/var/mobile/a.pdf");
  EXPECT_TRUE(fake.files.calls().empty());
  EXPECT_TRUE(fake.log.lines().empty());
}

}  // namespace
}  // namespace chatsum::test
