#include "hosts/cli/PasswordInput.h"

#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <fstream>
#include <string>
#include <thread>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::cli {
namespace {

std::string passwordIn(const std::string& bytes) {
  const platform::fake::TemporaryFolder folder;
  std::ofstream(folder.path() + "/password", std::ios::binary) << bytes;
  const auto password = passwordOfFile(folder.path() + "/password");
  return password ? password.value() : "problem: " + password.problem().sentence;
}

bool showsWhatIsTyped(int terminal) {
  termios settings{};
  EXPECT_EQ(::tcgetattr(terminal, &settings), 0);
  return (settings.c_lflag & static_cast<tcflag_t>(ECHO)) != 0;
}

TEST(PasswordOfAFile, IsItsFirstLine) {
  EXPECT_EQ(passwordIn("secret-Pa55\n"), "secret-Pa55");
  EXPECT_EQ(passwordIn("secret-Pa55"), "secret-Pa55");
  EXPECT_EQ(passwordIn("secret-Pa55\r\nmore\n"), "secret-Pa55");
  EXPECT_EQ(passwordIn(" pässwörd with blanks \n"), " pässwörd with blanks ");
}

TEST(PasswordOfAFile, IsNeitherEmptyNorEndless) {
  EXPECT_NE(passwordIn("").find("There is no password"), std::string::npos);
  EXPECT_NE(passwordIn("\nsecond\n").find("There is no password"), std::string::npos);
  EXPECT_NE(passwordIn(std::string(5000, 'x')).find("too long"), std::string::npos);
}

TEST(PasswordOfAFile, ThatCannotBeReadIsAProblem) {
  const auto password = passwordOfFile("/nowhere/at/all");
  ASSERT_FALSE(password);
  EXPECT_NE(password.problem().sentence.find("cannot be read"), std::string::npos);
}

TEST(PasswordOfADescriptor, IsTheFirstLineOfAPipe) {
  std::array<int, 2> ends{};
  ASSERT_EQ(::pipe(ends.data()), 0);
  ASSERT_EQ(::write(ends[1], "through a pipe\n", 15), 15);
  ::close(ends[1]);
  const auto password = passwordOfDescriptor(ends[0]);
  ::close(ends[0]);
  ASSERT_TRUE(password);
  EXPECT_EQ(password.value(), "through a pipe");
  EXPECT_FALSE(passwordOfDescriptor(987));
}

TEST(PasswordOfATerminal, IsAskedForAndNeverShown) {
  int person = -1, terminal = -1;
  ASSERT_EQ(::openpty(&person, &terminal, nullptr, nullptr, nullptr), 0);
  ASSERT_TRUE(showsWhatIsTyped(terminal));
  std::thread typing([&] {
    // Typed once the question stands there: what was typed before it is thrown away.
    std::string shown;
    char c = 0;
    while (!shown.ends_with("Password: ") && ::read(person, &c, 1) == 1) shown += c;
    EXPECT_EQ(::write(person, "unseen\n", 7), 7);
  });
  const auto password = passwordOfTerminal(terminal, "Password: ");
  typing.join();
  EXPECT_EQ(password, "unseen");
  EXPECT_TRUE(showsWhatIsTyped(terminal));
  std::array<char, 100> rest{};
  const auto length = ::read(person, rest.data(), rest.size());
  EXPECT_EQ(std::string(rest.data(), length > 0 ? static_cast<std::size_t>(length) : 0), "\r\n");
  ::close(person);
  ::close(terminal);
}

}  // namespace
}  // namespace chatsum::cli
