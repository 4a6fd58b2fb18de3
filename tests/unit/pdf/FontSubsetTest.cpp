#include "platform/system/pdf/FontSubset.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <hb-ot.h>
#include <hb-subset.h>

#include <fstream>

#include "platform/system/pdf/CffCharset.h"
#include "tests/unit/pdf/Pieces.h"
#include "tests/unit/pdf/Tools.h"

namespace chatsum::platform::system {
namespace {

struct FreeFace {
  void operator()(hb_face_t* face) const { hb_face_destroy(face); }
};
struct FreeBlob {
  void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
};

std::unique_ptr<hb_face_t, FreeFace> faceOf(const std::string& bytes) {
  const std::unique_ptr<hb_blob_t, FreeBlob> blob(
      hb_blob_create(bytes.data(), static_cast<unsigned>(bytes.size()), HB_MEMORY_MODE_DUPLICATE, nullptr, nullptr));
  return std::unique_ptr<hb_face_t, FreeFace>(hb_face_create(blob.get(), 0));
}

std::vector<std::uint8_t> cffTable(hb_face_t* face) {
  const std::unique_ptr<hb_blob_t, FreeBlob> blob(hb_face_reference_table(face, HB_TAG('C', 'F', 'F', ' ')));
  unsigned length = 0;
  const char* bytes = hb_blob_get_data(blob.get(), &length);
  return {bytes, bytes + length};
}

TEST(FontSubset, MapsJustTheCharactersThatAreNeeded) {
  const auto face = openFace(fonts::kDejaVu);
  std::vector<std::uint32_t> glyphs;
  for (const char c : std::string("!Aaz~")) glyphs.push_back(face->asciiGlyph(c));
  const auto made = faceOf(trueTypeSubset(*face, {glyphs, "!Aaz~"}));
  hb_font_t* font = hb_font_create(made.get());
  for (hb_codepoint_t c = 0; c < 0x200; ++c) {
    hb_codepoint_t glyph = 0;
    const bool isNeeded = c < 0x7F && std::string("!Aaz~").find(static_cast<char>(c)) != std::string::npos && c > 0;
    EXPECT_EQ(hb_font_get_nominal_glyph(font, c, &glyph) != 0, isNeeded) << c;
    EXPECT_EQ(glyph, isNeeded ? face->asciiGlyph(static_cast<char>(c)) : 0);
  }
  // Glyphs keep their numbers and widths, and the others have no outline.
  EXPECT_EQ(hb_font_get_glyph_h_advance(font, face->asciiGlyph('A')), face->advanceOf(face->asciiGlyph('A')));
  hb_glyph_extents_t extents{};
  EXPECT_TRUE(hb_font_get_glyph_extents(font, face->asciiGlyph('A'), &extents));
  EXPECT_NE(extents.width, 0);
  hb_font_get_glyph_extents(font, face->asciiGlyph('B'), &extents);
  EXPECT_EQ(extents.width, 0);
  hb_font_destroy(font);
}

TEST(FontSubset, MapsAnyNumberOfCharacters) {
  const auto face = openFace(fonts::kDejaVu);
  FontUsage usage;
  for (char c = 0x20; c < 0x7F; ++c) {
    usage.ascii += c;
    usage.glyphs.push_back(face->asciiGlyph(c));
    const auto made = faceOf(trueTypeSubset(*face, usage));
    hb_font_t* font = hb_font_create(made.get());
    for (const char used : usage.ascii) {
      hb_codepoint_t glyph = 0;
      EXPECT_TRUE(hb_font_get_nominal_glyph(font, static_cast<hb_codepoint_t>(used), &glyph));
      EXPECT_EQ(glyph, face->asciiGlyph(used));
    }
    hb_font_destroy(font);
  }
}

TEST(CffCharset, IsOfCidKeyedFontsOnly) {
  const auto nimbus = openFace(fonts::kNimbus), cjk = openFace(fonts::kCjk);
  EXPECT_FALSE(CffCharset::read(cffTable(nimbus->face()), hb_face_get_glyph_count(nimbus->face())));
  const auto charset = CffCharset::read(cffTable(cjk->face()), hb_face_get_glyph_count(cjk->face()));
  ASSERT_TRUE(charset);
  EXPECT_EQ(charset->characterOf(0), 0);
  EXPECT_EQ(charset->characterOf(1234), 1234);
  EXPECT_EQ(charset->characterOf(70000), 0);
}

TEST(CffCharset, SurvivesDamagedTables) {
  const auto cjk = openFace(fonts::kCjk);
  const std::vector<std::uint8_t> whole = cffTable(cjk->face());
  const std::vector<std::uint8_t> table(whole.begin(), whole.begin() + 4000);
  for (std::size_t size = 0; size < table.size(); size += 7) {
    static_cast<void>(CffCharset::read(std::span(table).first(size), 65535));
  }
  std::uint32_t state = 1;
  for (int round = 0; round < 20000; ++round) {
    std::vector<std::uint8_t> damaged(table.begin(), table.begin() + 400);
    for (int i = 0; i < 3; ++i) {
      state = state * 1664525 + 1013904223;
      damaged[(state >> 8) % 60] = static_cast<std::uint8_t>(state >> 24);
    }
    static_cast<void>(CffCharset::read(damaged, 65535));
  }
  EXPECT_FALSE(CffCharset::read({}, 65535));
}

/// A CID-keyed font whose glyphs have other numbers than their characters, as regional fonts do.
TEST(PdfFont, OfCharactersThatAreNotGlyphNumbersShowsTheRightOnes) {
  const auto all = openFace(fonts::kCjk);
  const std::string text = "日本語漢字";
  hb_subset_input_t* input = hb_subset_input_create_or_fail();
  for (const hb_codepoint_t c : {0x65E5, 0x672C, 0x8A9E, 0x6F22, 0x5B57})
    hb_set_add(hb_subset_input_unicode_set(input), c);
  const std::unique_ptr<hb_face_t, FreeFace> small(hb_subset_or_fail(all->face(), input));
  hb_subset_input_destroy(input);
  const std::unique_ptr<hb_blob_t, FreeBlob> bytes(hb_face_reference_blob(small.get()));
  const fake::TemporaryFolder folder;
  unsigned length = 0;
  const char* data = hb_blob_get_data(bytes.get(), &length);
  std::ofstream(folder.path() + "/small.otf", std::ios::binary).write(data, static_cast<std::streamsize>(length));

  const auto face = openFace(folder.path() + "/small.otf");
  ASSERT_LT(hb_face_get_glyph_count(face->face()), 20U);
  const auto charset = CffCharset::read(cffTable(face->face()), hb_face_get_glyph_count(face->face()));
  ASSERT_TRUE(charset);
  ASSERT_GT(charset->characterOf(1), 20);

  const auto pageOf = [&text](const FontFace& one) {
    Pieces pieces;
    return PdfOnDisk([&](PdfDocument& document) {
      document.beginPage({{0, 0}, {200, 60}});
      document.showText(pieces.line({&pieces.shape(one, text)}, 20), {20, 20}, 250, 0, kBlackColor);
    });
  };
  const PdfOnDisk file = pageOf(*face), same = pageOf(*all);
  EXPECT_EQ(file.complaints(), "");
  EXPECT_EQ(file.rendererWarnings(), "");
  EXPECT_THAT(file.text(), ::testing::StartsWith(text));
  const std::string command = "pdftoppm -r 72 ";
  EXPECT_EQ(run(command + file.path()).text, run(command + same.path()).text);
  const std::string other = "mutool draw -q -N -r 72 -F ppm -o - ";
  EXPECT_EQ(run(other + file.path()).text, run(other + same.path()).text);
}

}  // namespace
}  // namespace chatsum::platform::system
