#include "platform/system/pdf/PdfFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "platform/system/pdf/PageTree.h"
#include "platform/system/pdf/PdfSyntax.h"
#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;

/// A file with that many empty pages, and some objects more.
std::string fileOf(int pages, int streams) {
  auto bytes = std::make_shared<std::string>();
  PdfFile file(std::make_unique<MemoryFile>(bytes));
  PageTree tree;
  for (int i = 0; i < pages; ++i) tree.addPage(file, "");
  for (int i = 0; i < streams; ++i) {
    static_cast<void>(file.newObject());  // never written
    file.writeStream(file.newObject(), "", std::string(5000, 'x'));
  }
  const int catalog = file.newObject(), information = file.newObject();
  const int root = tree.finish(file, "/MediaBox[0 0 10 10]");
  file.writeObject(catalog, "<</Type/Catalog/Pages " + pdf::reference(root) + ">>");
  file.writeObject(information, "<</Producer(x)>>");
  EXPECT_FALSE(file.finish(catalog, information));
  return *bytes;
}

TEST(PdfFile, IsSoundWithFewObjectsAndWithMany) {
  for (const int pages : {1, 64, 65, 300, 5000}) {
    const PdfOnDisk file(fileOf(pages, 3));
    EXPECT_EQ(file.complaints(), "") << pages;
    EXPECT_EQ(run("qpdf --show-npages " + file.path()).text, std::to_string(pages) + "\n");
  }
}

TEST(PdfFile, KeepsThePageTreeFlat) {
  const PdfOnDisk file(fileOf(5000, 0));
  std::size_t steps = 0;
  std::string page = run("qpdf --show-pages " + file.path()).text;
  page = page.substr(page.rfind("page 5000: ") + 11);
  for (std::string object = page.substr(0, page.find(' ')); steps < 10; ++steps) {
    const std::string shown = run("qpdf --show-object=" + object + " " + file.path()).text;
    const std::size_t parent = shown.find("/Parent ");
    if (parent == std::string::npos) break;
    object = shown.substr(parent + 8, shown.find(' ', parent + 8) - parent - 8);
  }
  EXPECT_EQ(steps, 3U);
}

TEST(PdfFile, FindsObjectsBeyondSixtyFourKilobytes) {
  const PdfOnDisk file(fileOf(2, 200));
  EXPECT_EQ(file.complaints(), "");
  EXPECT_GT(fileOf(2, 200).size(), 1000000U);
}

TEST(PdfFile, IsIdentifiedByWhatStandsInIt) {
  const auto identifier = [](const std::string& bytes) {
    const std::size_t at = bytes.rfind("/ID[<");
    return bytes.substr(at, 75);
  };
  EXPECT_EQ(identifier(fileOf(3, 1)), identifier(fileOf(3, 1)));
  EXPECT_NE(identifier(fileOf(3, 1)), identifier(fileOf(3, 2)));
  EXPECT_NE(identifier(fileOf(3, 0)), identifier(fileOf(2, 0)));
}

TEST(PdfFile, AnswersTheFirstErrorAndWritesNoMore) {
  const auto write = [](std::size_t most) {
    auto bytes = std::make_shared<std::string>();
    PdfFile file(std::make_unique<MemoryFile>(bytes, most));
    for (int i = 0; i < 200; ++i) file.writeStream(file.newObject(), "", std::string(5000, 'x'));
    const int catalog = file.newObject();
    file.writeObject(catalog, "<<>>");
    const auto error = file.finish(catalog, catalog);
    return std::pair(error, bytes->size());
  };
  const std::size_t whole = write(SIZE_MAX).second;
  ASSERT_GT(whole, 1000000U);
  for (std::size_t most = 0; most < whole; most += whole / 7) {
    const auto [error, size] = write(most);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, 28);
    EXPECT_LE(size, most);
  }
  EXPECT_FALSE(write(whole).first);
}

}  // namespace
}  // namespace chatsum::platform::system
