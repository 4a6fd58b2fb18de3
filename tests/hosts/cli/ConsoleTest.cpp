#include "hosts/cli/Console.h"

#include <gtest/gtest.h>

#include <sstream>

namespace chatsum::cli {
namespace {

constexpr const char* kHostile = "a\x1b]0;title\x07\u202Eb\nc";
constexpr const char* kHarmless = "a ]0;title  b c";

class ConsoleTest : public ::testing::Test {
 protected:
  std::ostringstream out, err;
  Console terminal{Streams{.out = out, .err = err, .errIsTerminal = true, .outIsTerminal = true}};
  Console pipe{Streams{.out = out, .err = err}};
};

TEST_F(ConsoleTest, CleansEverySentenceWhereverItGoes) {
  const std::string line = kHarmless;
  for (const Console* console : {&terminal, &pipe}) {
    err.str("");
    EXPECT_EQ(console->fail(kHostile), kFailed);
    EXPECT_EQ(console->refuse(kHostile, ""), kWrongUsage);
    console->note(kHostile);
    console->tell(kHostile);
    EXPECT_EQ(err.str(),
              "chatsum: " + line + "\nchatsum: " + line + "\nTry 'chatsum --help'.\n" + line + "\n" + line + "\n");
  }
}

TEST_F(ConsoleTest, CleansWhatIsWrittenPastTheSentences) {
  pipe.err << kHostile << 7 << '\x1b' << "\n" << std::flush;
  terminal.out << kHostile << 7 << '\x1b' << "\n" << std::flush;
  EXPECT_EQ(err.str(), "a ]0;title  b\nc7 \n");
  EXPECT_EQ(out.str(), "a ]0;title  b\nc7 \n");
}

TEST_F(ConsoleTest, CleansCharactersThatComeInPieces) {
  for (const char byte : std::string("a\u202Eb\u2029é\u009B.")) terminal.out << byte;
  EXPECT_EQ(out.str(), "a b é .");
}

TEST_F(ConsoleTest, KeepsResultsForFilesAndPipesByteForByte) {
  const std::string bytes("\x1b\xff\xe2\x80\xae\0z", 7);
  pipe.out << bytes;
  pipe.result(bytes);
  EXPECT_EQ(out.str(), bytes + bytes + "\n");
}

TEST_F(ConsoleTest, PutsAResultOnOneLineOfATerminal) {
  terminal.result(kHostile);
  EXPECT_EQ(out.str(), std::string(kHarmless) + "\n");
}

TEST_F(ConsoleTest, EndsLinesOfATerminalOnly) {
  terminal.endLine();
  terminal.out << "begun";
  terminal.endLine();
  terminal.endLine();
  EXPECT_EQ(out.str(), "begun\n");
  pipe.out << "begun";
  pipe.endLine();
  EXPECT_EQ(out.str(), "begun\nbegun");
}

TEST_F(ConsoleTest, CleansWhatProgressShows) {
  terminal.overwrite(kHostile);
  EXPECT_EQ(err.str(), std::string("\r\x1b[K") + kHarmless);
}

TEST_F(ConsoleTest, TellsWhenResultsCannotBeWritten) {
  out.setstate(std::ios::badbit);
  terminal.out << "x";
  EXPECT_FALSE(terminal.out.flush());
}

}  // namespace
}  // namespace chatsum::cli
