#include "hosts/device/source/MessagePaths.h"

#include <gtest/gtest.h>

#include <string>

namespace chatsum::device {
namespace {

TEST(MessagePaths, KnowTheUsersHomeByAllItsNames) {
  for (const std::string start : {"~/", "User/", "/User/", "/var/mobile/", "/private/var/mobile/", "/Users/maya/"}) {
    EXPECT_EQ(pathInUsersHome(start + "Library/SMS/a.png"), "Library/SMS/a.png") << start;
    EXPECT_EQ(pathBesideStore(start + "Library/SMS/Attachments/a.png"), "Attachments/a.png") << start;
    EXPECT_EQ(pathBesideStore(start + "Library/Messages/Attachments/a.png"), "Attachments/a.png") << start;
    EXPECT_EQ(pathBesideStore(start + "Library/Mail/a.png"), std::nullopt) << start;
  }
}

TEST(MessagePaths, KnowNothingElse) {
  for (const char* const path : {"", "/", "~", "User", "/etc/passwd", "Library/SMS/a.png", "/Users/", "/Users/maya",
                                 "/Users//a.png", "/Users/../a.png", "/Users/./a.png", "~maya/Library/SMS/a.png"}) {
    EXPECT_EQ(pathInUsersHome(path), std::nullopt) << path;
  }
}

}  // namespace
}  // namespace chatsum::device
