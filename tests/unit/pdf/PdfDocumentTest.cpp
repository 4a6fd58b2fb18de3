#include "platform/system/pdf/PdfDocument.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "tests/unit/pdf/Pieces.h"
#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

using ::testing::HasSubstr;
using ::testing::Not;

/// Some pages with texts of several fonts, numbered pieces beginning at `firstNumber`.
std::string sampleDocument(unsigned threads, std::uint32_t firstNumber, int pages = 100) {
  const auto face = openFace(fonts::kDejaVu), emoji = openFace(fonts::kEmoji), cjk = openFace(fonts::kCjk);
  Pieces pieces(firstNumber);
  Bitmap bitmap{20, 20, std::vector<std::uint8_t>(1600, 0xFF)};
  const auto& word = pieces.shape(*face, "naïve");
  const auto& smile = pieces.shape(*emoji, "😀");
  const auto& japanese = pieces.shape(*cjk, "日本語");
  return documentBytes(threads, [&](PdfDocument& document) {
    for (int page = 0; page < pages; ++page) {
      document.beginPage(kTestPage);
      document.showText(pieces.words(*face, "page " + std::to_string(page) + " (AVATAR)", 14), {50, 50}, 250, 0,
                        kBlackColor);
      document.showText(pieces.line({&word, &smile, &japanese}, 14), {50, 90}, 250, 0, kBlueColor);
      bitmap.rgba[0] = static_cast<std::uint8_t>(page / 2);
      document.drawBitmap(bitmap, {{50, 200}, {64, 64}});
    }
  });
}

TEST(PdfDocument, IsSound) {
  const PdfOnDisk file(sampleDocument(1, 0));
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  EXPECT_EQ(run("qpdf --show-npages " + file.path()).text, "100\n");
}

TEST(PdfDocument, IsTheSameWithAnyNumberOfThreadsAndAnyNumbersOfPieces) {
  const std::string bytes = sampleDocument(0, 0);
  EXPECT_EQ(sampleDocument(1, 0), bytes);
  EXPECT_EQ(sampleDocument(4, 0), bytes);
  EXPECT_EQ(sampleDocument(1, 5000), bytes);
}

TEST(PdfDocument, WithoutPagesHasAnEmptyOne) {
  const PdfOnDisk file([](PdfDocument&) {});
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(run("qpdf --show-npages " + file.path()).text, "1\n");
  EXPECT_EQ(file.rendererWarnings(), "");
}

TEST(PdfDocument, DrawsNothingWithoutAPage) {
  const auto face = openFace(fonts::kDejaVu);
  Pieces pieces;
  const std::string bytes = documentBytes(1, [&](PdfDocument& document) {
    document.showText(pieces.words(*face, "lost", 14), {50, 50}, 250, 0, kBlackColor);
    document.strokeLine({0, 0}, {1, 1}, 1, kBlackColor);
    document.drawBitmap({1, 1, {0, 0, 0, 255}}, {{0, 0}, {1, 1}});
  });
  EXPECT_EQ(bytes, documentBytes(1, [](PdfDocument&) {}));
}

TEST(PdfDocument, TellsNothingAboutItsMaker) {
  const PdfOnDisk file(sampleDocument(1, 0, 1));
  const std::string info = run("pdfinfo " + file.path()).text;
  EXPECT_THAT(info, HasSubstr("Producer:        Chatsum\n"));
  for (const char* entry : {"Author", "CreationDate", "ModDate", "Title"}) EXPECT_THAT(info, Not(HasSubstr(entry)));
  EXPECT_THAT(info, HasSubstr("PDF version:     1.5"));
}

TEST(PdfDocument, SaysWhatItIsCalledWhenItWasMadeAndItsLanguage) {
  const PdfOnDisk file([](PdfDocument& document) {
    document.beginPage(kTestPage);
    document.describe({.title = "Zoë (\\ work) 🌍", .language = "de-AT", .created = Date{1700000000.75}});
  });
  EXPECT_EQ(file.complaints(), "");
  const std::string info = run("TZ=UTC pdfinfo " + file.path()).text;
  EXPECT_THAT(info, HasSubstr("Title:           Zoë (\\ work) 🌍\n"));
  EXPECT_THAT(info, HasSubstr("Creator:         Chatsum\n"));
  EXPECT_THAT(info, HasSubstr("CreationDate:    Tue Nov 14 22:13:20 2023"));
  const std::string objects = file.objects();
  EXPECT_THAT(objects, HasSubstr("/Lang (de-AT)"));
  EXPECT_THAT(objects, HasSubstr("/DisplayDocTitle true"));
}

TEST(PdfDocument, KeepsTheSizesOfPages) {
  const PdfOnDisk file([](PdfDocument& document) {
    document.beginPage({{0, 0}, {762, 792}});
    document.beginPage({{5, 5}, {100.5, 200}});
    document.beginPage({{0, 0}, {762, 792}});
    document.beginPage({{0, 0}, {-1, std::nan("")}});
    document.beginPage({{0, 0}, {1e9, std::numeric_limits<double>::infinity()}});
  });
  EXPECT_EQ(file.complaints(), "");
  const std::string info = run("pdfinfo -l 5 " + file.path()).text;
  EXPECT_THAT(info, HasSubstr("Page    1 size:  762 x 792 pts"));
  EXPECT_THAT(info, HasSubstr("Page    2 size:  100.5 x 200 pts"));
  EXPECT_THAT(info, HasSubstr("Page    3 size:  762 x 792 pts"));
  EXPECT_THAT(info, HasSubstr("Page    4 size:  3 x 3 pts"));
  EXPECT_THAT(info, HasSubstr("Page    5 size:  14400 x 14400 pts"));
}

TEST(PdfDocument, AnswersTheErrorOfTheFirstWriteThatFails) {
  const std::size_t whole = sampleDocument(1, 0, 40).size();
  const auto face = openFace(fonts::kDejaVu);
  for (std::size_t most = 0; most < whole; most += whole / 5) {
    auto bytes = std::make_shared<std::string>();
    WorkPool pool(1);
    Pieces pieces;
    PdfDocument document(std::make_unique<MemoryFile>(bytes, most), pool);
    for (std::uint8_t page = 0; page < 40; ++page) {
      document.beginPage(kTestPage);
      document.showText(pieces.words(*face, "Some text ü", 14), {50, 50}, 250, 0, kBlackColor);
      Bitmap noise{100, 100, {}};
      for (std::uint32_t i = 0, state = page + 1; i < 40000; ++i, state = state * 1664525 + 1013904223) {
        noise.rgba.push_back(static_cast<std::uint8_t>(state >> 24));
      }
      document.drawBitmap(noise, {{0, 0}, {10, 10}});
    }
    const auto error = document.finish();
    ASSERT_TRUE(error);
    EXPECT_EQ(error->code, 28);
    EXPECT_LE(bytes->size(), most);
  }
}

TEST(PdfDocument, MayBeGivenUp) {
  const auto face = openFace(fonts::kEmoji);
  WorkPool pool(2);
  Pieces pieces;
  auto bytes = std::make_shared<std::string>();
  {
    PdfDocument document(std::make_unique<MemoryFile>(bytes), pool);
    for (int page = 0; page < 70; ++page) {
      document.beginPage(kTestPage);
      document.showText(pieces.words(*face, "😀 🎉 🇩🇪", 14), {50, 50}, 250, 0, kBlackColor);
    }
  }
  EXPECT_EQ(bytes->find("%%EOF"), std::string::npos);
}

TEST(PdfDocument, WritesALongDocumentWhileItGrows) {
  const auto face = openFace(fonts::kDejaVu);
  Pieces pieces;
  auto bytes = std::make_shared<std::string>();
  WorkPool pool(0);
  PdfDocument document(std::make_unique<MemoryFile>(bytes), pool);
  std::vector<TextLayout> layouts;
  for (int i = 0; i < 40; ++i) {
    std::string text;
    for (int word = 0; word < 12; ++word) text += std::to_string(i * 7919 + word * 104729) + " ";
    layouts.push_back(pieces.words(*face, text, 14));
  }
  for (std::size_t page = 0; page < 3000; ++page) {
    document.beginPage(kTestPage);
    for (std::size_t i = 0; i < layouts.size(); ++i) {
      document.showText(layouts[(i * (page + 1)) % layouts.size()], {50, 17.0 * static_cast<double>(i)}, 250, 0,
                        kBlackColor);
    }
  }
  const std::size_t before = bytes->size();
  ASSERT_FALSE(document.finish());
  // What waits is some groups of pages and one block, however long the document is.
  EXPECT_GT(before, bytes->size() * 2 / 3);
  const PdfOnDisk file(*bytes);
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(run("qpdf --show-npages " + file.path()).text, "3000\n");
}

TEST(PdfDocument, DrawsWhereItIsTold) {
  const PdfOnDisk file([](PdfDocument& document) {
    document.beginPage({{0, 0}, {100, 50}});
    document.drawBitmap({1, 1, {255, 0, 0, 255}}, {{10, 5}, {20, 10}});
    document.strokeLine({50, 30}, {90, 30}, 4, kBlueColor);
  });
  const std::string pixels = run("pdftoppm -r 72 -aa no -aaVector no " + file.path()).text;
  ASSERT_THAT(pixels, ::testing::StartsWith("P6\n100 50\n255\n"));
  const auto at = [&pixels](std::size_t x, std::size_t y) { return pixels.substr(14 + (y * 100 + x) * 3, 3); };
  const std::string red("\xFF\0\0", 3), blue("\0\0\xFF", 3), white("\xFF\xFF\xFF");
  EXPECT_EQ(at(11, 6), red);
  EXPECT_EQ(at(28, 13), red);
  EXPECT_EQ(at(8, 6), white);
  EXPECT_EQ(at(11, 17), white);
  EXPECT_EQ(at(52, 30), blue);
  EXPECT_EQ(at(88, 29), blue);
  EXPECT_EQ(at(48, 30), white);
  EXPECT_EQ(at(52, 25), white);
}

}  // namespace
}  // namespace chatsum::platform::system
