// Reports of the sample device, byte for byte. Set CHATSUM_UPDATE_GOLDEN to write what the program makes now; read the
// difference before it is kept.
#include <cctype>
#include <cstdlib>

#include "tests/hosts/cli/ProgramTest.h"

namespace chatsum::cli {
namespace {

struct GoldenReport {
  const char* file;
  const char* conversation;
  const char* format;
  const char* sort;
};

class Golden : public testing::ProgramTest, public ::testing::WithParamInterface<GoldenReport> {};

TEST_P(Golden, IsWhatTheProgramWrites) {
  const GoldenReport& golden = GetParam();
  writeSample();
  const std::string written = report(golden.conversation, {"--format", golden.format, "--sort", golden.sort});
  const std::filesystem::path path = std::filesystem::path(CHATSUM_TEST_GOLDEN) / "cli" / golden.file;
  if (std::getenv("CHATSUM_UPDATE_GOLDEN")) testing::putBytes(path, written);
  ASSERT_TRUE(std::filesystem::exists(path)) << path;
  EXPECT_EQ(written, testing::bytesOf(path));
}

std::string nameOf(const ::testing::TestParamInfo<GoldenReport>& golden) {
  std::string name;
  for (const char c : std::string(golden.param.file)) name += std::isalnum(static_cast<unsigned char>(c)) ? c : '_';
  return name;
}

INSTANTIATE_TEST_SUITE_P(Sample, Golden,
                         ::testing::Values(GoldenReport{"maya.txt", "Maya Lindqvist", "text", "asc"},
                                           GoldenReport{"maya.csv", "Maya Lindqvist", "csv", "asc"},
                                           GoldenReport{"maya-newest-first.csv", "Maya Lindqvist", "csv", "desc"},
                                           GoldenReport{"daniel.txt", "Daniel Okafor", "text", "asc"},
                                           GoldenReport{"hikers-newest-first.txt", "Sunday Hikers", "text", "desc"},
                                           GoldenReport{"languages.txt", "Language table 🌍", "text", "asc"},
                                           GoldenReport{"languages.csv", "Language table 🌍", "csv", "asc"},
                                           GoldenReport{"deliveries.csv", "55501", "csv", "asc"}),
                         nameOf);

}  // namespace
}  // namespace chatsum::cli
