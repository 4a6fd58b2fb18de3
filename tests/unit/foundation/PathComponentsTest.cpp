#include "platform/foundation/PathComponents.h"

#include <gtest/gtest.h>

namespace chatsum::path {
namespace {

TEST(PathComponents, JoinWithExactlyOneSlash) {
  EXPECT_EQ(appending("/tmp", "a.txt"), "/tmp/a.txt");
  EXPECT_EQ(appending("/tmp/", "a.txt"), "/tmp/a.txt");
  EXPECT_EQ(appending("/tmp//", "//a//b/"), "/tmp/a/b");
  EXPECT_EQ(appending("/", "a"), "/a");
  EXPECT_EQ(appending("", "a"), "a");
  EXPECT_EQ(appending("", "/a/"), "/a");
  EXPECT_EQ(appending("/a", ""), "/a");
  EXPECT_EQ(appending("/a/", ""), "/a");
  EXPECT_EQ(appending("/a", "/"), "/a");
  EXPECT_EQ(appending("/", "/"), "/");
  EXPECT_EQ(appending("", ""), "");
  EXPECT_EQ(appending("a", ".."), "a/..");
}

TEST(PathComponents, HaveALastOne) {
  EXPECT_EQ(lastComponent("/a/b/c/"), "c");
  EXPECT_EQ(lastComponent("/a/b/c"), "c");
  EXPECT_EQ(lastComponent("c"), "c");
  EXPECT_EQ(lastComponent("/"), "/");
  EXPECT_EQ(lastComponent("//"), "/");
  EXPECT_EQ(lastComponent(""), "");
}

TEST(PathComponents, LoseTheirLastOne) {
  EXPECT_EQ(deletingLastComponent("/a/b"), "/a");
  EXPECT_EQ(deletingLastComponent("/a/b/"), "/a");
  EXPECT_EQ(deletingLastComponent("/a//b"), "/a");
  EXPECT_EQ(deletingLastComponent("/a"), "/");
  EXPECT_EQ(deletingLastComponent("/"), "/");
  EXPECT_EQ(deletingLastComponent("a"), "");
  EXPECT_EQ(deletingLastComponent("a/b"), "a");
  EXPECT_EQ(deletingLastComponent(""), "");
}

TEST(PathComponents, HaveExtensions) {
  EXPECT_EQ(extension("/tmp/photo.JPG"), "JPG");
  EXPECT_EQ(extension("photo..jpg"), "jpg");
  EXPECT_EQ(extension("a.b.c"), "c");
  EXPECT_EQ(extension("a.b/c"), "");
  EXPECT_EQ(extension("a.tiff/"), "tiff");
  EXPECT_EQ(extension(".profile"), "");
  EXPECT_EQ(extension("/x/.profile"), "");
  EXPECT_EQ(extension("a."), "");
  EXPECT_EQ(extension("."), "");
  EXPECT_EQ(extension(".."), "");
  EXPECT_EQ(extension("/"), "");
  EXPECT_EQ(extension(""), "");
  EXPECT_EQ(extensionView("/tmp/photo.JPG"), "JPG");
}

TEST(PathComponents, LoseTheirExtension) {
  EXPECT_EQ(deletingExtension("/tmp/photo.jpg"), "/tmp/photo");
  EXPECT_EQ(deletingExtension("photo..jpg"), "photo.");
  EXPECT_EQ(deletingExtension("/tmp/"), "/tmp");
  EXPECT_EQ(deletingExtension("a.bundle/"), "a");
  EXPECT_EQ(deletingExtension(".tiff"), ".tiff");
  EXPECT_EQ(deletingExtension("/"), "/");
  EXPECT_EQ(deletingExtension(""), "");
}

TEST(PathComponents, GainAnExtension) {
  EXPECT_EQ(appendingExtension("/tmp/report", "txt"), "/tmp/report.txt");
  EXPECT_EQ(appendingExtension("/tmp/", "txt"), "/tmp.txt");
  EXPECT_EQ(appendingExtension("a.", "txt"), "a..txt");
}

}  // namespace
}  // namespace chatsum::path
