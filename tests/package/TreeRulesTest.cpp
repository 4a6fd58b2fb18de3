#include "tests/package/TreeRules.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>

namespace chatsum::tests {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// A small tree that keeps every rule, in a folder of its own; a test plants one break.
class PlantedTree : public ::testing::Test {
 protected:
  void SetUp() override {
    auto pattern = (std::filesystem::temp_directory_path() / "chatsum-tree-XXXXXX").string();
    ASSERT_NE(mkdtemp(pattern.data()), nullptr);
    root_ = pattern;
    plant("platform/foundation/Value.h", "#pragma once\n#include <string>\n");
    plant("platform/interfaces/Clock.h", "#include \"platform/foundation/Value.h\"\n");
    plant("platform/system/SystemClock.h", "#include \"platform/interfaces/Clock.h\"\n");
    plant("libchatsum/ChatsumUtils/ChatsumUtils.h", "#include \"platform/interfaces/Clock.h\"\n");
    plant("libchatsum/CSReportsGenerator/CSReportsGenerator.h",
          "#include \"libchatsum/ChatsumUtils/ChatsumUtils.h\"\n");
    plant("hosts/cli/main.cpp",
          "#include \"libchatsum/CSReportsGenerator/CSReportsGenerator.h\"\n"
          "#include \"platform/system/SystemClock.h\"\n"
          "auto now = time(nullptr);\n");
  }
  void TearDown() override { std::filesystem::remove_all(root_); }

  void plant(const std::string& path, const std::string& text) {
    std::filesystem::create_directories((root_ / path).parent_path());
    std::ofstream(root_ / path) << text;
  }
  [[nodiscard]] std::vector<std::string> broken() const { return brokenTreeRules(root_); }

  std::filesystem::path root_;
};

TEST(TreeRules, TheTreeKeepsThem) { EXPECT_THAT(brokenTreeRules(CHATSUM_SOURCE_ROOT), IsEmpty()); }

TEST_F(PlantedTree, IsCleanWithoutABreak) { EXPECT_THAT(broken(), IsEmpty()); }

TEST_F(PlantedTree, TheLibraryIncludingTheRealServicesIsFound) {
  plant("libchatsum/CSReportsGenerator/Writer.cpp", "\n#include \"platform/system/SystemClock.h\"\n");
  EXPECT_THAT(broken(), ElementsAre("libchatsum/CSReportsGenerator/Writer.cpp:2: libchatsum/ never includes "
                                    "platform/system/SystemClock.h"));
}

TEST_F(PlantedTree, TheLibraryIncludingAForeignLibraryIsFound) {
  for (const std::string header : {"unicode/unistr.h", "QString", "QtCore/QFile", "cairo.h", "plist/plist.h"}) {
    plant("libchatsum/ChatsumUtils/Words.cpp", "#include <" + header + ">\n");
    EXPECT_THAT(broken(), ElementsAre("libchatsum/ChatsumUtils/Words.cpp:1: libchatsum/ never includes " + header));
  }
}

TEST_F(PlantedTree, TheLibraryReadingTheClockTheEnvironmentOrPrintingIsFound) {
  const std::pair<std::string, std::string> breaks[] = {{"auto now = time(nullptr);", "time"},
                                                        {"return ::time(nullptr);", "time"},
                                                        {"return std::time(nullptr);", "time"},
                                                        {"if (getenv(\"TZ\")) return;", "getenv"},
                                                        {"std::cout << 1;", "cout"}};
  for (const auto& [line, name] : breaks) {
    plant("libchatsum/ChatsumUtils/Words.cpp", line + "\n");
    EXPECT_THAT(broken(), ElementsAre("libchatsum/ChatsumUtils/Words.cpp:1: libchatsum/ never calls " + name));
  }
}

TEST_F(PlantedTree, MembersCommentsAndTextsOfThoseNamesAreNoBreak) {
  plant("libchatsum/ChatsumUtils/Words.cpp",
        "auto a = row.time(1); auto b = row->time(2); auto c = lifetime(3);\n"
        "// time(nullptr) is the platform's\n"
        "/* getenv(x)\n std::cout */ log(\"std::cout time(1)\");\n"
        "double time(int row);\n");
  EXPECT_THAT(broken(), IsEmpty());
}

TEST_F(PlantedTree, InterfacesIncludingTheLibraryAreFound) {
  plant("platform/interfaces/Log.h", "#include \"hosts/cli/main.cpp\"\n");
  const auto found = broken();
  ASSERT_FALSE(found.empty());
  EXPECT_EQ(found[0], "platform/interfaces/Log.h:1: platform/interfaces/ never includes hosts/cli/main.cpp");
}

TEST_F(PlantedTree, TheUtilitiesIncludingAWriterIsFoundAndIsACycle) {
  plant("libchatsum/ChatsumUtils/MessageStore.cpp",
        "#include \"libchatsum/CSReportsGenerator/CSReportsGenerator.h\"\n");
  EXPECT_THAT(broken(),
              ElementsAre("libchatsum/ChatsumUtils/MessageStore.cpp:1: libchatsum/ChatsumUtils/ never includes "
                          "libchatsum/CSReportsGenerator/CSReportsGenerator.h",
                          "libchatsum/CSReportsGenerator/CSReportsGenerator.h:1: libchatsum/CSReportsGenerator "
                          "includes libchatsum/ChatsumUtils, which leads back to libchatsum/CSReportsGenerator"));
}

TEST_F(PlantedTree, TheEngineIncludingTheScreenIsFound) {
  plant("libchatsum/CSReportGenerationViewController/Cell.h", "");
  plant("libchatsum/ChatsumSettings/Settings.h", "#include \"libchatsum/CSReportGenerationViewController/Cell.h\"\n");
  EXPECT_THAT(broken(),
              ElementsAre("libchatsum/ChatsumSettings/Settings.h:1: libchatsum/ChatsumSettings/ never includes "
                          "libchatsum/CSReportGenerationViewController/Cell.h"));
}

TEST_F(PlantedTree, AnIncludeThatIsNotFromTheRootIsFound) {
  plant("hosts/cli/Help.cpp", "#include \"Help.h\"\n");
  EXPECT_THAT(broken(), ElementsAre("hosts/cli/Help.cpp:1: Help.h does not stand below the root"));
}

TEST_F(PlantedTree, ATooLongFileIsFound) {
  std::string lines;
  for (int i = 0; i < 601; ++i) lines += "\n";
  plant("hosts/cli/Long.cpp", lines);
  EXPECT_THAT(broken(), ElementsAre("hosts/cli/Long.cpp:601: the file is longer than 600 lines"));
}

TEST_F(PlantedTree, AMentionOfPapersOrPlacesOutsideTheTreeIsFound) {
  const std::string rule = ": mentions '";
  for (const auto& words : {std::string("Spe") + "cification", std::string("Part ") + "2.1",
                            std::string("notes") + ".md", std::string("issue ") + "7"}) {
    plant("hosts/cli/Help.cpp", "\n\n// as the " + words + " says\n");
    EXPECT_THAT(broken(), ElementsAre(::testing::StartsWith("hosts/cli/Help.cpp:3" + rule + words.substr(0, 5))));
  }
}

}  // namespace
}  // namespace chatsum::tests
