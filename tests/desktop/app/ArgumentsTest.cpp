#include "hosts/desktop/app/Arguments.h"

#include <gtest/gtest.h>

namespace chatsum::desktop {
namespace {

Arguments parsed(const QStringList& words) {
  return Arguments::parse(QStringList{QStringLiteral("chatsum-desktop")} + words);
}

TEST(Arguments, NothingAtAllIsFine) {
  const Arguments arguments = parsed({});
  EXPECT_FALSE(arguments.ending);
  EXPECT_TRUE(arguments.source.isEmpty());
  EXPECT_FALSE(arguments.usesSample);
  EXPECT_FALSE(arguments.isDark);
}

TEST(Arguments, TakesASourceAndAHome) {
  const Arguments arguments = parsed({"--home", "/tmp/home", "/backups/alex", "--dark"});
  EXPECT_FALSE(arguments.ending);
  EXPECT_EQ(arguments.source, "/backups/alex");
  EXPECT_EQ(arguments.home, "/tmp/home");
  EXPECT_EQ(arguments.isDark, true);
}

TEST(Arguments, TakesTheSampleAndAPicture) {
  const Arguments arguments = parsed({"--sample", "--screenshot=window.png", "--light"});
  EXPECT_FALSE(arguments.ending);
  EXPECT_TRUE(arguments.usesSample);
  EXPECT_EQ(arguments.screenshot, "window.png");
  EXPECT_EQ(arguments.isDark, false);
}

TEST(Arguments, HelpAndVersionEndWell) {
  for (const char* word : {"--help", "-h", "--version"}) {
    const Arguments arguments = parsed({QString::fromUtf8(word)});
    ASSERT_TRUE(arguments.ending) << word;
    EXPECT_EQ(arguments.ending->code, 0);
    EXPECT_TRUE(arguments.ending->text.contains(QStringLiteral("chatsum-desktop")) ||
                arguments.ending->text.contains(QStringLiteral("--sample")))
        << word;
  }
}

TEST(Arguments, WrongUseIsRefusedWithOneSentence) {
  const QList<QStringList> wrong = {
      {"--nonsense"}, {"one", "two"}, {"--sample", "one"}, {"--light", "--dark"}, {"--home="}};
  for (const QStringList& words : wrong) {
    const Arguments arguments = parsed(words);
    ASSERT_TRUE(arguments.ending) << words.join(' ').toStdString();
    EXPECT_EQ(arguments.ending->code, 2);
    EXPECT_TRUE(arguments.ending->text.endsWith(QStringLiteral("See chatsum-desktop --help.\n")));
  }
}

}  // namespace
}  // namespace chatsum::desktop
