#include "hosts/device/stores/FileDigest.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "platform/fake/TemporaryFolder.h"

namespace chatsum::device {
namespace {

TEST(FileDigest, IsThatOfThePublishedExamples) {
  EXPECT_EQ(digestOf("").sha256, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855");
  EXPECT_EQ(digestOf("abc").sha256, "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad");
  EXPECT_EQ(digestOf("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq").sha256,
            "248d6a61d20638b8e5c026930c3e6039a33ce45964ff2167f6ecedd419db06c1");
}

TEST(FileDigest, OfAFileLongerThanAPieceTellsItsBytes) {
  const platform::fake::TemporaryFolder folder;
  const std::string path = folder.path() + "/file";
  const std::string bytes((std::size_t{3} << 20) + 17, 'x');
  std::ofstream(path, std::ios::binary) << bytes;
  std::uint64_t told = 0;
  const auto digest = digestOfFile(path, [&](std::uint64_t piece) { told += piece; });
  ASSERT_TRUE(digest);
  EXPECT_EQ(digest.value(), digestOf(bytes));
  EXPECT_EQ(told, bytes.size());
}

TEST(FileDigest, IsRefusedForWhatIsNoFile) {
  const platform::fake::TemporaryFolder folder;
  EXPECT_NE(digestOfFile(folder.path() + "/none").problem().sentence.find("There is no file"), std::string::npos);
  EXPECT_NE(digestOfFile(folder.path()).problem().sentence.find("not an ordinary file"), std::string::npos);
  const std::string pipe = folder.path() + "/pipe";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  EXPECT_NE(digestOfFile(pipe).problem().sentence.find("not an ordinary file"), std::string::npos);
}

}  // namespace
}  // namespace chatsum::device
