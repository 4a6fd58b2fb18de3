// Documents drawn through the platform's graphics, looked at as files.

#include "platform/system/graphics/SystemGraphics.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>
#include <limits>
#include <new>
#include <string>
#include <thread>
#include <vector>

#include "platform/fake/TemporaryFolder.h"
#include "platform/system/SystemPlatform.h"
#include "tests/support/PinnedFonts.h"

namespace chatsum::platform::system {
namespace {

const UIFont kFont{"Verdana", 14};
constexpr Rect kPage{{0, 0}, {762, 792}};
constexpr double kWidth = 250;

class Texts final : public ExpectedRows {
 public:
  explicit Texts(std::vector<std::string> texts) : texts_(std::move(texts)) {}
  [[nodiscard]] std::size_t count() const override { return texts_.size(); }
  [[nodiscard]] std::unique_ptr<ExpectedRowReader> reader() const override {
    struct Reader final : ExpectedRowReader {
      explicit Reader(const std::vector<std::string>& all) : texts(all) {}
      void read(std::size_t row, ExpectedCells& cells) override { cells.text(texts[row]); }
      const std::vector<std::string>& texts;
    };
    return std::make_unique<Reader>(texts_);
  }

 private:
  std::vector<std::string> texts_;
};

std::vector<std::string> manyTexts() {
  std::vector<std::string> texts;
  for (int i = 0; i < 2000; ++i) {
    texts.push_back("Row " + std::to_string(i) + std::string(static_cast<std::size_t>(i % 5), 'x') + " שלום 😀 words");
  }
  return texts;
}

SystemOptions optionsFor(const std::string& home) {
  SystemOptions options;
  options.homeDirectory = home;
  return options;
}

class SystemGraphicsTest : public ::testing::Test {
 protected:
  test::PinnedFonts fonts;
  fake::TemporaryFolder folder;
  SystemPlatform system{optionsFor(folder.path())};
  Graphics& graphics = system.platform().graphics;

  [[nodiscard]] std::string pathOf(const std::string& name) const { return folder.path() + "/" + name; }
  [[nodiscard]] static std::string bytesOf(const std::string& path) {
    std::ifstream stream(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  /// Draws texts below each other, measured first, a new page for each hundred.
  void draw(const std::string& name, const std::vector<std::string>& texts, const ExpectedRows* expected) {
    graphics.beginPDFContextToFile(pathOf(name), {});
    graphics.beginPDFPage(kPage);
    if (expected) graphics.expectRows(*expected, kFont, kWidth);
    double y = 50;
    for (std::size_t i = 0; i < texts.size(); ++i) {
      const Size size =
          graphics.sizeOfText(texts[i], kFont, {kWidth, std::numeric_limits<float>::max()}, LineBreakMode::kWordWrap);
      if (y + size.height > 692) {
        graphics.beginPDFPage(kPage);
        y = 50;
      }
      graphics.drawText(texts[i], {{50, y}, size}, kFont, LineBreakMode::kWordWrap, TextAlignment::kLeft);
      y += size.height;
    }
    graphics.endPDFContext();
  }
};

TEST_F(SystemGraphicsTest, DrawTheSameDocumentWithTheHintAndWithoutIt) {
  const std::vector<std::string> texts = manyTexts();
  const Texts expected(texts);
  draw("plain.pdf", texts, nullptr);
  draw("hinted.pdf", texts, &expected);
  const std::string plain = bytesOf(pathOf("plain.pdf"));
  EXPECT_GT(plain.size(), 10'000U);
  EXPECT_TRUE(plain == bytesOf(pathOf("hinted.pdf")));
}

TEST_F(SystemGraphicsTest, DrawTheSameDocumentWhenOtherRowsWereExpected) {
  const std::vector<std::string> texts = manyTexts();
  const Texts expected({"something else", "Row 0 שלום 😀 words", "never drawn"});
  draw("plain.pdf", texts, nullptr);
  draw("hinted.pdf", texts, &expected);
  // A text that nobody draws may leave its glyphs in the fonts: what is shown is compared elsewhere, its size here.
  EXPECT_NEAR(static_cast<double>(bytesOf(pathOf("plain.pdf")).size()),
              static_cast<double>(bytesOf(pathOf("hinted.pdf")).size()), 4096);
}

/// Runs out of memory at a row, on the thread that reads ahead.
class FailingTexts final : public ExpectedRows {
 public:
  FailingTexts(const std::vector<std::string>& texts, std::size_t row) : texts_(texts), row_(row) {}
  [[nodiscard]] std::size_t count() const override { return texts_.size(); }
  [[nodiscard]] std::unique_ptr<ExpectedRowReader> reader() const override {
    struct Reader final : ExpectedRowReader {
      explicit Reader(const FailingTexts& all) : rows(all) {}
      void read(std::size_t row, ExpectedCells& cells) override {
        if (row == rows.row_) throw std::bad_alloc();
        cells.text(rows.texts_[row]);
      }
      const FailingTexts& rows;
    };
    return std::make_unique<Reader>(*this);
  }

 private:
  const std::vector<std::string>& texts_;
  const std::size_t row_;
};

TEST_F(SystemGraphicsTest, HandOverTheMissingMemoryOfTheRowsAheadAndGiveTheDocumentUp) {
  const std::vector<std::string> texts = manyTexts();
  for (const std::size_t row : {0, 700, 1999}) {
    {
      const FailingTexts expected(texts, row);
      EXPECT_THROW(draw("given up.pdf", texts, &expected), std::bad_alloc);
      graphics.beginImageContext({64, 64}, 1);  // as one that could not be ended
      graphics.abandonPDFContext();
    }  // nobody may read the rows from here on
    EXPECT_EQ(graphics.currentContext(), nullptr);
  }
  draw("next.pdf", texts, nullptr);
  draw("plain.pdf", texts, nullptr);
  EXPECT_TRUE(bytesOf(pathOf("next.pdf")) == bytesOf(pathOf("plain.pdf")));
}

TEST_F(SystemGraphicsTest, DrawARepeatedTextOnceOnAPage) {
  const auto sizeWith = [&](int repeats) {
    const std::string name = std::to_string(repeats) + ".pdf";
    graphics.beginPDFContextToFile(pathOf(name), {});
    graphics.beginPDFPage(kPage);
    for (int i = 0; i < repeats; ++i) {
      graphics.drawText("17", {{300, 720}, {50, 50}}, kFont, LineBreakMode::kWordWrap, TextAlignment::kLeft);
    }
    graphics.endPDFContext();
    return bytesOf(pathOf(name)).size();
  };
  EXPECT_EQ(sizeWith(1), sizeWith(500));
}

TEST_F(SystemGraphicsTest, DrawATextAgainThatSomethingElseMayCover) {
  const auto sizeWith = [&](const std::string& name, auto between) {
    graphics.beginPDFContextToFile(pathOf(name), {});
    graphics.beginPDFPage(kPage);
    for (int i = 0; i < 2; ++i) {
      graphics.drawText("17", {{300, 720}, {50, 50}}, kFont, LineBreakMode::kWordWrap, TextAlignment::kLeft);
      if (i == 0) between();
    }
    graphics.endPDFContext();
    return bytesOf(pathOf(name)).size();
  };
  const std::size_t plain = sizeWith("plain.pdf", [] {});
  const auto strokeAt = [&](double y) {
    graphics.currentContext()->moveTo({0, y});
    graphics.currentContext()->addLineTo({700, y});
    graphics.currentContext()->strokePath();
  };
  // Both lines take the same bytes; only one of them goes through the text.
  const std::size_t beside = sizeWith("beside.pdf", [&] { strokeAt(110); });
  const std::size_t through = sizeWith("through.pdf", [&] { strokeAt(725); });
  EXPECT_GT(beside, plain);
  EXPECT_GT(through, beside);
}

TEST_F(SystemGraphicsTest, HaveNoContextForAFileThatCannotBeMade) {
  graphics.beginPDFContextToFile(pathOf("no such folder/report.pdf"), {});
  EXPECT_EQ(graphics.currentContext(), nullptr);
  graphics.beginPDFPage(kPage);  // nothing happens
  graphics.endPDFContext();
}

TEST_F(SystemGraphicsTest, GoBackToTheOuterContextWhenTheInnerOneEnds) {
  graphics.beginPDFContextToFile(pathOf("report.pdf"), {});
  GraphicsContext* document = graphics.currentContext();
  ASSERT_NE(document, nullptr);
  graphics.beginImageContext({64, 64}, 1);
  EXPECT_NE(graphics.currentContext(), document);
  const UIImageRef image = graphics.imageFromCurrentContext();
  ASSERT_NE(image, nullptr);
  EXPECT_EQ(image->size(), (Size{64, 64}));
  graphics.endImageContext();
  EXPECT_EQ(graphics.currentContext(), document);
  EXPECT_EQ(graphics.imageFromCurrentContext(), nullptr);
  graphics.endPDFContext();
  EXPECT_EQ(graphics.currentContext(), nullptr);
}

TEST_F(SystemGraphicsTest, KeepTheContextsOfThreadsApart) {
  graphics.beginPDFContextToFile(pathOf("report.pdf"), {});
  std::jthread([&] {
    EXPECT_EQ(graphics.currentContext(), nullptr);
    graphics.beginPDFContextToFile(pathOf("left open.pdf"), {});  // ends with its thread
  }).join();
  EXPECT_NE(graphics.currentContext(), nullptr);
  graphics.endPDFContext();
}

TEST_F(SystemGraphicsTest, MeasureTheSameWithADocumentAndWithoutOne) {
  const Size without = graphics.sizeOfText("Some words to measure", kFont, {100, 1000}, LineBreakMode::kWordWrap);
  const Size line = graphics.sizeOfLine("Some words", kFont, 1000, LineBreakMode::kWordWrap);
  EXPECT_GT(without.height, line.height);
  graphics.beginPDFContextToFile(pathOf("report.pdf"), {});
  EXPECT_EQ(graphics.sizeOfText("Some words to measure", kFont, {100, 1000}, LineBreakMode::kWordWrap), without);
  EXPECT_EQ(graphics.sizeOfLine("Some words", kFont, 1000, LineBreakMode::kWordWrap), line);
  graphics.endPDFContext();
}

TEST_F(SystemGraphicsTest, BeginNoDocumentWithoutAFont) {
  auto& own = dynamic_cast<SystemGraphics&>(graphics);
  {
    const test::PinnedFonts none({folder.path() + "/none"});
    graphics.beginPDFContextToFile(pathOf("a.pdf"), {});
  }
  EXPECT_EQ(graphics.currentContext(), nullptr);
  EXPECT_TRUE(own.lacksFonts());
  EXPECT_FALSE(std::ifstream(pathOf("a.pdf")).good());
  const test::PinnedFonts all;
  graphics.beginPDFContextToFile(pathOf("a.pdf"), {});
  EXPECT_NE(graphics.currentContext(), nullptr);
  EXPECT_FALSE(own.lacksFonts());
  graphics.endPDFContext();
}

TEST_F(SystemGraphicsTest, CountCharactersThatNoFontHasByTheirScripts) {
  auto& own = dynamic_cast<SystemGraphics&>(graphics);
  const std::vector<std::string> texts = {"plain", "กข", "a \U0001F95D \U0001F1E9\U0001F1EA", "\U0002A6B2 \uE123 ก",
                                          "กข"};
  draw("all.pdf", {"plain", "กข", "a \U0001F95D"}, nullptr);
  EXPECT_EQ(own.takeUnshownCharacters(), UnshownCharacters());
  const test::PinnedFonts few({"/usr/share/fonts/truetype/liberation2"});
  const Texts expected(texts);
  const UnshownCharacters unshown = {{"Hani", 1}, {"Thai", 5}, {"Zsye", 3}, {"Zzzz", 1}};
  for (const Texts* hint : {static_cast<const Texts*>(nullptr), &expected}) {
    draw("few.pdf", texts, hint);
    EXPECT_EQ(own.takeUnshownCharacters(), unshown);
    EXPECT_EQ(own.takeUnshownCharacters(), UnshownCharacters());
  }
  EXPECT_EQ(nameOfScript("Thai", "en"), "Thai");
  EXPECT_EQ(nameOfScript("Zsye", "de_AT"), "Emoji");
  EXPECT_EQ(nameOfScript("Hani", "fr"), "sinogrammes");
}

}  // namespace
}  // namespace chatsum::platform::system
