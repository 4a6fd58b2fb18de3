#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/images/ChildProgram.h"
#include "tests/unit/images/Pictures.h"

namespace chatsum::platform::system {
namespace {

/// A document made of its objects' contents (the first is the catalogue), with a right table of places.
std::string documentOf(const std::vector<std::string>& objects) {
  std::string text = "%PDF-1.4\n", table;
  std::size_t number = 0;
  for (const std::string& object : objects) {
    std::string place = std::to_string(text.size());
    table += std::string(10 - place.size(), '0') + place + " 00000 n \n";
    text += std::to_string(++number) + " 0 obj\n" + object + "\nendobj\n";
  }
  const std::string at = std::to_string(text.size()), count = std::to_string(number + 1);
  return text + "xref\n0 " + count + "\n0000000000 65535 f \n" + table + "trailer\n<</Size " + count +
         "/Root 1 0 R>>\nstartxref\n" + at + "\n%%EOF\n";
}

std::string streamOf(const std::string& content) {
  return "<</Length " + std::to_string(content.size()) + ">>\nstream\n" + content + "\nendstream";
}

/// One page with four quarters of the box 0 0 96 64; `facts` stand in the page.
std::string quarterPage(const std::string& facts = "/MediaBox[0 0 96 64]") {
  return documentOf({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                     "<</Type/Page/Parent 2 0 R" + facts + "/Contents 4 0 R>>",
                     streamOf(".878 .125 .125 rg 0 32 48 32 re f .125 .69 .188 rg 48 32 48 32 re f\n"
                              ".125 .251 .816 rg 0 0 48 32 re f .941 .816 .125 rg 48 0 48 32 re f")});
}

class PdfPage : public ::testing::Test {
 protected:
  std::string write(const std::string& bytes) { return writeFile(folder_.path() + "/a document.pdf", bytes); }
  PDFPageRef open(const std::string& bytes, int number = 1) { return artwork_.pageOfDocument(write(bytes), number); }
  /// The page drawn as onto a sheet of its box, upright.
  static BitmapRef drawn(const PDFPageRef& page) {
    if (!page) return nullptr;
    const Rect box = page->cropBox();
    ImageSurface surface(box.size, 1);
    surface.scale(1, -1);
    surface.translate(-box.origin.x, -box.origin.y - box.size.height);
    surface.drawPDFPage(*page);
    return SystemImage::of(surface.image())->pixels();
  }

  fake::TemporaryFolder folder_;
  SystemArtwork artwork_{{}};
};

TEST_F(PdfPage, IsDrawnWhereItsCoordinatesPutIt) {
  const PDFPageRef page = open(quarterPage());
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->cropBox(), (Rect{{0, 0}, {96, 64}}));
  expectQuarters(drawn(page), kQuarters, 2);
}

TEST_F(PdfPage, ShowsItsCropBox) {
  const PDFPageRef page = open(quarterPage("/MediaBox[0 0 96 64]/CropBox[48 0 96 64]"));
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->cropBox(), (Rect{{48, 0}, {48, 64}}));
  expectQuarters(drawn(page), {kGreen, kGreen, kYellow, kYellow}, 2);
}

TEST_F(PdfPage, LiesAsInTheDocumentWhenViewersTurnIt) {
  for (const char* turn : {"0", "90", "180", "270", "-90"}) {
    SCOPED_TRACE(turn);
    const PDFPageRef page = open(quarterPage(std::string("/MediaBox[0 0 96 64]/Rotate ") + turn));
    ASSERT_NE(page, nullptr);
    EXPECT_EQ(page->cropBox(), (Rect{{0, 0}, {96, 64}}));
    expectQuarters(drawn(page), kQuarters, 2);
  }
}

TEST_F(PdfPage, StandsOnAWhiteSheet) {
  const PDFPageRef page = open(quarterPage("/MediaBox[0 0 200 200]"));
  const BitmapRef bitmap = drawn(page);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(pixelAt(*bitmap, 150, 20), (Pixel{255, 255, 255}));
  EXPECT_TRUE(isNear(pixelAt(*bitmap, 10, 190), kBlue, 2));
}

TEST_F(PdfPage, OfAHugeBoxCostsLittle) {
  const PDFPageRef page = open(quarterPage("/MediaBox[0 0 14400 14400]"));
  ASSERT_NE(page, nullptr);
  EXPECT_EQ(page->cropBox().size, (Size{14400, 14400}));
  ImageSurface surface({14400, 14400}, 1);
  surface.drawPDFPage(*page);
  EXPECT_EQ(surface.image()->size(), (Size{14400, 14400}));
  EXPECT_LE(SystemImage::of(surface.image())->pixels()->rgba.size(), std::size_t{20} << 20);
  EXPECT_EQ(pixelAt(*drawnOn({16, 16}, surface.image()), 8, 8), (Pixel{255, 255, 255}));
}

TEST_F(PdfPage, ThatDoesNotExistIsNone) {
  EXPECT_EQ(open(quarterPage(), 2), nullptr);
  EXPECT_EQ(open(quarterPage(), 0), nullptr);
  EXPECT_EQ(open(quarterPage(), -1), nullptr);
  EXPECT_EQ(artwork_.pageOfDocument(folder_.path() + "/missing.pdf", 1), nullptr);
  EXPECT_EQ(artwork_.pageOfDocument(folder_.path(), 1), nullptr);
}

TEST_F(PdfPage, OfGarbageIsNone) {
  EXPECT_EQ(open("this is no document"), nullptr);
  EXPECT_EQ(open("%PDF-1.4\n"), nullptr);
  EXPECT_EQ(open("%PDF-1.4\n" + std::string(100000, 'x')), nullptr);
  EXPECT_EQ(open(readFile(picturePath("plain.jpg"))), nullptr);
  EXPECT_EQ(open(quarterPage("/MediaBox[0 0 0 0]/CropBox[0 0 0 0]").substr(0, 60)), nullptr);
}

TEST_F(PdfPage, OfATreeThatHoldsItselfEndsSoon) {
  // Kids that are their own parents; whatever is shown of that, it must come back.
  const std::string loop = documentOf({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[2 0 R 3 0 R]/Count 2>>",
                                       "<</Type/Pages/Parent 2 0 R/Kids[2 0 R 3 0 R]/Count 99999999>>"});
  (void)drawn(open(loop));
  const std::string self = documentOf({"<</Type/Catalog/Pages 1 0 R>>"});
  (void)drawn(open(self));
  // A drawing that draws itself.
  const std::string form =
      documentOf({"<</Type/Catalog/Pages 2 0 R>>", "<</Type/Pages/Kids[3 0 R]/Count 1>>",
                  "<</Type/Page/Parent 2 0 R/MediaBox[0 0 96 64]/Resources<</XObject<</A 5 0 R>>>>/Contents 4 0 R>>",
                  streamOf("/A Do"),
                  "<</Type/XObject/Subtype/Form/BBox[0 0 96 64]/Resources<</XObject<</A 5 0 R>>>>/Length 11>>\nstream\n"
                  "/A Do /A Do\nendstream"});
  const BitmapRef bitmap = drawn(open(form));
  EXPECT_TRUE(!bitmap || bitmap->width == 96);
}

TEST_F(PdfPage, DoesNotRunScripts) {
  const std::string mark = folder_.path() + "/mark";
  const std::string script = documentOf(
      {"<</Type/Catalog/Pages 2 0 R/OpenAction<</S/JavaScript/JS(app.launchURL\\(\"file://" + mark + "\"\\))>>>>",
       "<</Type/Pages/Kids[3 0 R]/Count 1>>",
       "<</Type/Page/Parent 2 0 R/MediaBox[0 0 96 64]/AA<</O<</S/Launch/F(/usr/bin/touch)/P(" + mark +
           ")>>>>/Contents 4 0 R>>",
       streamOf("1 0 0 rg 0 0 96 64 re f")});
  const BitmapRef bitmap = drawn(open(script));
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(pixelAt(*bitmap, 48, 32), (Pixel{255, 0, 0}));
  EXPECT_EQ(PictureBytes::open(mark), nullptr);
}

TEST_F(PdfPage, DrawsNothingWhenTheFileChangesMeanwhile) {
  const PDFPageRef page = open(quarterPage());
  ASSERT_NE(page, nullptr);
  write(quarterPage() + "\n");
  const BitmapRef bitmap = drawn(page);
  ASSERT_NE(bitmap, nullptr);
  EXPECT_EQ(pixelAt(*bitmap, 10, 10), kClear);
}

TEST_F(PdfPage, IsFoundUnderANameLikeAnOption) {
  const std::string path = writeFile(folder_.path() + "/-q.pdf", quarterPage());
  ASSERT_EQ(chdir(folder_.path().c_str()), 0);
  expectQuarters(drawn(artwork_.pageOfDocument("-q.pdf", 1)), kQuarters, 2);
}

TEST_F(PdfPage, IsNoneWhereTheProgramsAreNotInstalled) {
  const std::string path = std::getenv("PATH");
  setenv("PATH", folder_.path().c_str(), 1);
  EXPECT_EQ(open(quarterPage()), nullptr);
  setenv("PATH", path.c_str(), 1);
  EXPECT_NE(open(quarterPage()), nullptr);
}

TEST(ChildProgram, AnswersWhatIsWritten) {
  EXPECT_EQ(outputOf("printf", {"%s|", "a b", "$HOME", "*"}, 100), "a b|$HOME|*|");
  EXPECT_EQ(outputOf("true", {}, 0), "");
}

TEST(ChildProgram, ThatFailsOrIsMissingHasNoAnswer) {
  EXPECT_EQ(outputOf("false", {}, 100), std::nullopt);
  EXPECT_EQ(outputOf("no-program-of-this-name", {}, 100), std::nullopt);
  EXPECT_EQ(outputOf("sh", {"-c", "kill -9 $$"}, 100), std::nullopt);
}

TEST(ChildProgram, ThatWritesWithoutEndIsStopped) { EXPECT_EQ(outputOf("yes", {}, 100000), std::nullopt); }

TEST(ChildProgram, GetsNoInputNoFilesAndNoEnvironment) {
  setenv("SECRET", "a", 1);
  const int file = open("/dev/null", O_RDONLY);  // without close-on-exec
  ASSERT_GE(file, 0);
  EXPECT_EQ(outputOf("sh", {"-c", "cat; echo \"[$SECRET$HOME]\"; ls /proc/self/fd | wc -l"}, 100), "[]\n4\n");
  close(file);
}

TEST(ChildProgram, MayNotWriteFilesNorTakeMuchMemory) {
  const fake::TemporaryFolder folder;
  EXPECT_EQ(outputOf("sh", {"-c", "echo aaaa > '" + folder.path() + "/a' && echo written"}, 100), std::nullopt);
  const auto limits = outputOf("sh", {"-c", "ulimit -v; ulimit -t; ulimit -c"}, 100);
  EXPECT_EQ(limits, "1048576\n5\n0\n");
}

TEST(ChildProgram, WorksWithoutStandardDescriptors) {
  // A host may have been started with its standard input and output closed; pipes then get their numbers.
  const int in = dup(STDIN_FILENO), out = dup(STDOUT_FILENO);
  close(STDIN_FILENO);
  close(STDOUT_FILENO);
  const auto answer = outputOf("printf", {"here"}, 100);
  dup2(in, STDIN_FILENO);
  dup2(out, STDOUT_FILENO);
  EXPECT_EQ(answer, "here");
}

}  // namespace
}  // namespace chatsum::platform::system
