#include "platform/foundation/Error.h"

#include <gtest/gtest.h>

#include <cerrno>

namespace chatsum {
namespace {

TEST(Error, OfTheSystemSaysWhatWasTriedAndWhatIsWrong) {
  const Error error = Error::posix(ENOENT, "The file “a.txt” couldn’t be opened");
  EXPECT_EQ(error.domain, "NSPOSIXErrorDomain");
  EXPECT_EQ(error.code, ENOENT);
  EXPECT_EQ(error.localizedDescription(), "The file “a.txt” couldn’t be opened: No such file or directory");
  EXPECT_EQ(
      error.description(),
      "Error Domain=NSPOSIXErrorDomain Code=2 \"The file “a.txt” couldn’t be opened: No such file or directory\"");
}

TEST(Error, WithoutATextNamesDomainAndCode) {
  const Error error{.domain = std::nullopt, .code = 1212, .userInfo = Record{{kUnderlyingErrorKey, "words"}}};
  EXPECT_EQ(error.localizedDescription(), "The operation couldn’t be completed. ((null) error 1212.)");
  EXPECT_EQ(error.userInfo[kUnderlyingErrorKey], Value("words"));
}

}  // namespace
}  // namespace chatsum
