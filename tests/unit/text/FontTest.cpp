#include "platform/system/text/FontLibrary.h"
#include "tests/unit/text/TextFixture.h"

namespace chatsum::platform::system {
namespace {

class FontTest : public TextEngineTest {
 protected:
  const FontFace& faceOf(std::string_view text, const std::string& name) {
    font_.name = name;
    return *layOut(text).pieces[0].piece->face;
  }
};

TEST_F(FontTest, NamesFindStandInsOfTheSameWidths) {
  EXPECT_EQ(faceOf("Title", "Helvetica-Bold").postScriptName(), "LiberationSans-Bold");
  EXPECT_EQ(faceOf("Cell", "Verdana").postScriptName(), "DejaVuSans");
  EXPECT_EQ(faceOf("1", "").postScriptName(), "LiberationSans");
  EXPECT_EQ(faceOf("x", "Verdana-BoldItalic").postScriptName(), "DejaVuSans-BoldOblique");
}

TEST_F(FontTest, InstalledFamiliesStandForThemselves) {
  EXPECT_EQ(faceOf("x", "DejaVu Serif-Bold").postScriptName(), "DejaVuSerif-Bold");
  EXPECT_EQ(faceOf("x", "NotoSans").postScriptName(), "NotoSans-Regular");
  EXPECT_EQ(faceOf("x", "Noto Sans-Italic").postScriptName(), "NotoSans-Italic");
}

TEST_F(FontTest, UnknownFamiliesStillShowText) {
  EXPECT_GT(layOut("x").size.width, 0);
  EXPECT_GT(faceOf("x", "No Such Family-Bold").unitsPerEm(), 0);
}

TEST_F(FontTest, StandInsShowOnlyTheScriptsOfTheRealFont) {
  // DejaVu Sans has Arabic letters and Liberation Sans Hebrew ones; Verdana and Helvetica have neither.
  EXPECT_EQ(faceOf("Ж", "Verdana").postScriptName(), "DejaVuSans");
  EXPECT_EQ(faceOf("λ", "Verdana").postScriptName(), "DejaVuSans");
  EXPECT_EQ(faceOf("→", "Verdana").postScriptName(), "DejaVuSans");
  FontLibrary library;
  EXPECT_FALSE(library.fontNamed("Helvetica").shows(U'\u05D0'));
  EXPECT_FALSE(library.fontNamed("Verdana").shows(U'\u0639'));
  EXPECT_FALSE(library.fontNamed("Verdana").shows(U'\u0661'));
  EXPECT_TRUE(library.fontNamed("Verdana").shows(U'\u2019'));
  EXPECT_TRUE(library.fontNamed("DejaVu Sans").shows(U'\u0639'));
}

TEST_F(FontTest, LinesOfTheThreeRolesAreAsHighAsTheirFaces) {
  struct Role {
    UIFont font;
    double height;
    double baseline;
  };
  // Liberation Sans: 0.905 + 0.212 + 0.033; DejaVu Sans: 0.928 + 0.236.
  for (const Role& role :
       {Role{{"Helvetica-Bold", 20}, 23, 18.1}, Role{{"Helvetica-Bold", 16}, 19, 14.48},
        Role{{"Verdana", 14}, 17, 12.99}, Role{{"Verdana", 10}, 12, 9.28}, Role{{"", 12}, 14, 10.86}}) {
    font_ = role.font;
    const TextLayout layout = layOut("Text");
    EXPECT_EQ(layout.size.height, role.height);
    EXPECT_NEAR(layout.lines[0].baseline, role.baseline, 0.01);
  }
}

TEST_F(FontTest, WidthsAreThoseOfTheGlyphs) {
  font_ = {"Helvetica", 2048};
  // Liberation Sans counts 2048 units: "H" 1479, "i" 455.
  EXPECT_FLOAT_EQ(layOut("Hi").lines[0].width, 1479 + 455);
  font_.size = 1024;
  EXPECT_EQ(layOut("Hi").size.width, 967);
}

TEST_F(FontTest, KerningStaysAndLigaturesOfStyleDoNot) {
  font_ = {"Helvetica", 100};
  EXPECT_LT(layOut("AV").lines[0].width, layOut("A").lines[0].width + layOut("V").lines[0].width);
  font_ = {"Verdana", 100};
  const TextLayout layout = layOut("office");
  ASSERT_EQ(layout.pieces.size(), 1U);
  EXPECT_EQ(layout.pieces[0].piece->glyphs.size(), 6U);
  EXPECT_TRUE(layout.pieces[0].piece->isAscii);
}

TEST_F(FontTest, CharactersThatNoFontHasShowTheNamedFontsOwnMark) {
  const TextLayout layout = layOut("\xF3\xB0\x80\x80");  // U+F0000, private
  ASSERT_EQ(layout.pieces.size(), 1U);
  EXPECT_EQ(layout.pieces[0].piece->face->postScriptName(), "DejaVuSans");
  EXPECT_EQ(layout.pieces[0].piece->glyphs[0].id, 0U);
}

TEST_F(FontTest, TallFallbackFacesMakeTheirLineHigher) {
  const TextLayout layout = layOut("plain\n日本\nplain");
  ASSERT_EQ(layout.lines.size(), 3U);
  EXPECT_EQ(layout.lines[0].height, 17);
  EXPECT_GT(layout.lines[1].height, 17);
  EXPECT_GT(layout.lines[1].baseline, layout.lines[0].baseline);
  EXPECT_EQ(layout.lines[2].height, 17);
}

TEST_F(FontTest, VariableFontsAndTextFilesAreRefused) {
  EXPECT_EQ(FontFace::open("/etc/passwd", 0), nullptr);
  EXPECT_EQ(FontFace::open("/no/such/file", 0), nullptr);
  EXPECT_NE(FontFace::open("/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf", 0), nullptr);
}

TEST(NoFontTest, WithoutAnyFontTextHasNoSize) {
  const test::PinnedFonts fonts{std::vector<std::string>{}};
  TextEngine engine;
  LayoutStore store;
  for (const char* text : {"Text", "日本", "a\nb", "😀", ""}) {
    for (const char* name : {"Verdana", "Helvetica-Bold", ""}) {
      engine.layOut(text, {name, 14}, 250, LineBreakMode::kWordWrap, store);
      engine.layOutLine(text, {name, 14}, 250, LineBreakMode::kTailTruncation, store);
    }
  }
  for (std::size_t i = 0; i < store.count(); ++i) {
    EXPECT_EQ(store[i].size, Size{});
    EXPECT_TRUE(store[i].lines.empty());
  }
}

}  // namespace
}  // namespace chatsum::platform::system
