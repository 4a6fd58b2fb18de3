#include "hosts/device/source/SourceFiles.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace chatsum::device {
namespace {

TEST(SourceFiles, NameFullDiskAccessWhenAMacRefuses) {
  const std::string sentence = describeUnreadable("/Users/maya/Library/Messages/chat.db", EPERM).sentence;
  EXPECT_NE(sentence.find("'/Users/maya/Library/Messages/chat.db' may not be read"), std::string::npos) << sentence;
  EXPECT_NE(sentence.find("Full Disk Access"), std::string::npos) << sentence;
  EXPECT_EQ(describeUnreadable("x", EACCES).sentence.find("Full Disk Access"), std::string::npos);
}

TEST(SourceFiles, AreNamedByTheirPathsBelowTheSource) {
  EXPECT_EQ(nameBelow("/source", "/source/a/b"), "a/b");
  EXPECT_EQ(nameBelow("/", "/a/b"), "a/b");
  EXPECT_EQ(nameBelow("/source", "/source2/a"), "/source2/a");
  EXPECT_EQ(nameBelow("/source", "/elsewhere/a"), "/elsewhere/a");
}

}  // namespace
}  // namespace chatsum::device
