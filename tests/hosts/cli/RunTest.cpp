#include "hosts/cli/Cli.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

namespace chatsum::cli {
namespace {

TEST(Run, AnswersInTheStreamsItIsGiven) {
  const std::array<const char*, 2> arguments = {"chatsum", "--version"};
  std::ostringstream out, err;
  EXPECT_EQ(run(2, arguments.data(), out, err), 0);
  EXPECT_TRUE(out.str().starts_with("chatsum "));
  EXPECT_EQ(err.str(), "");
}

TEST(Run, FailsWhenItsResultsCannotBeWritten) {
  const std::array<const char*, 2> arguments = {"chatsum", "--version"};
  std::ostringstream out, err;
  out.setstate(std::ios::badbit);
  EXPECT_EQ(run(2, arguments.data(), out, err), 1);
  EXPECT_NE(err.str().find("could not be written"), std::string::npos);
}

}  // namespace
}  // namespace chatsum::cli
