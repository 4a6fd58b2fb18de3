#include "platform/foundation/TextBuffer.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace chatsum {
namespace {

TEST(TextBuffer, IsEmptyAtFirst) {
  const TextBuffer buffer;
  EXPECT_EQ(buffer.size(), 0u);
  EXPECT_EQ(buffer.view(), "");
}

TEST(TextBuffer, KeepsEverythingWhileItGrows) {
  TextBuffer buffer;
  std::string expected;
  for (int i = 0; i < 5000; ++i) {
    const std::string part = std::to_string(i);
    buffer.append(part);
    buffer.append(';');
    expected += part + ';';
  }
  EXPECT_EQ(buffer.view(), expected);
}

TEST(TextBuffer, TakesOnePartLargerThanItself) {
  TextBuffer buffer;
  const std::string large(100000, 'x');
  buffer.append("a");
  buffer.append(large);
  EXPECT_EQ(buffer.view(), "a" + large);
}

TEST(TextBuffer, TakesNothing) {
  TextBuffer buffer;
  buffer.append(std::string_view());
  buffer.append("");
  EXPECT_EQ(buffer.size(), 0u);
}

TEST(TextBuffer, GivesRoomThatCountsOnceItIsFilled) {
  TextBuffer buffer;
  buffer.append("ab");
  char* room = buffer.room(1000);
  std::memcpy(room, "cdef", 4);
  EXPECT_EQ(buffer.view(), "ab");
  buffer.advance(2);
  EXPECT_EQ(buffer.view(), "abcd");
}

TEST(TextBuffer, StartsAnewWhenCleared) {
  TextBuffer buffer;
  buffer.append("abc");
  buffer.clear();
  EXPECT_EQ(buffer.view(), "");
  buffer.append("d");
  EXPECT_EQ(buffer.view(), "d");
}

}  // namespace
}  // namespace chatsum
