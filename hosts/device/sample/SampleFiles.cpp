#include "hosts/device/sample/SampleFiles.h"

#include <fmt/format.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace chatsum::device {

namespace {

void appendByte(std::string& bytes, unsigned value) { bytes += static_cast<char>(static_cast<unsigned char>(value)); }

void appendBig16(std::string& bytes, unsigned value) {
  appendByte(bytes, value >> 8);
  appendByte(bytes, value);
}

void appendBig32(std::string& bytes, std::size_t value) {
  appendBig16(bytes, static_cast<unsigned>(value >> 16));
  appendBig16(bytes, static_cast<unsigned>(value));
}

void appendBig64(std::string& bytes, std::uint64_t value) {
  appendBig32(bytes, value >> 32);
  appendBig32(bytes, value & 0xffffffff);
}

void appendLittle16(std::string& bytes, unsigned value) {
  appendByte(bytes, value);
  appendByte(bytes, value >> 8);
}

void appendLittle32(std::string& bytes, std::size_t value) {
  appendLittle16(bytes, static_cast<unsigned>(value));
  appendLittle16(bytes, static_cast<unsigned>(value >> 16));
}

void appendPngChunk(std::string& png, std::string_view type, std::string_view data) {
  appendBig32(png, data.size());
  const std::size_t start = png.size();
  png += type;
  png += data;
  const auto* checked = reinterpret_cast<const Bytef*>(png.data() + start);
  appendBig32(png, crc32(0, checked, static_cast<uInt>(png.size() - start)));
}

// `pixels` hold `channels` bytes each (3 RGB, 4 RGBA), rows from the top.
std::string pngOf(int width, int height, int channels, const std::string& pixels) {
  const std::size_t rowBytes = static_cast<std::size_t>(width) * static_cast<std::size_t>(channels);
  std::string rows;
  for (std::size_t row = 0; row < static_cast<std::size_t>(height); ++row) {
    appendByte(rows, 0);  // this row uses no filter
    rows.append(pixels, row * rowBytes, rowBytes);
  }
  uLongf size = compressBound(static_cast<uLong>(rows.size()));
  std::string packed(size, '\0');
  compress2(reinterpret_cast<Bytef*>(packed.data()), &size, reinterpret_cast<const Bytef*>(rows.data()),
            static_cast<uLong>(rows.size()), Z_BEST_COMPRESSION);
  packed.resize(size);

  std::string header;
  appendBig32(header, static_cast<std::size_t>(width));
  appendBig32(header, static_cast<std::size_t>(height));
  appendByte(header, 8);
  appendByte(header, channels == 4 ? 6 : 2);
  header.append(3, '\0');

  std::string png = "\x89PNG\r\n\x1a\n";
  appendPngChunk(png, "IHDR", header);
  appendPngChunk(png, "IDAT", packed);
  appendPngChunk(png, "IEND", "");
  return png;
}

// One box of a film: its size, its four letters, its contents.
std::string box(std::string_view type, const std::string& contents) {
  std::string bytes;
  appendBig32(bytes, contents.size() + 8);
  bytes += type;
  return bytes + contents;
}

// A box whose contents begin with a version and flags.
std::string fullBox(std::string_view type, unsigned flags, const std::string& contents) {
  std::string bytes;
  appendBig32(bytes, flags);
  return box(type, bytes + contents);
}

std::string numbers(std::initializer_list<std::size_t> values) {
  std::string bytes;
  for (std::size_t value : values) appendBig32(bytes, value);
  return bytes;
}

// The matrix that leaves a picture as it is.
std::string unitMatrix() { return numbers({0x10000, 0, 0, 0, 0x10000, 0, 0, 0, 0x40000000}); }

}  // namespace

std::string withOrientation(std::string_view jpeg, int orientation) {
  std::string exif("Exif\0\0", 6);
  exif += "MM";
  appendBig16(exif, 42);
  appendBig32(exif, 8);  // the first directory follows at once
  appendBig16(exif, 1);
  appendBig16(exif, 0x0112);  // orientation, one 16-bit number
  appendBig16(exif, 3);
  appendBig32(exif, 1);
  appendBig16(exif, static_cast<unsigned>(orientation));
  appendBig16(exif, 0);
  appendBig32(exif, 0);  // no further directory

  std::string turned(jpeg.substr(0, 2));
  turned += "\xff\xe1";
  appendBig16(turned, static_cast<unsigned>(exif.size() + 2));
  return turned + exif + std::string(jpeg.substr(2));
}

std::string sunsetPng() {
  constexpr int kWidth = 120;
  constexpr int kHeight = 80;
  std::string pixels;
  for (int y = 0; y < kHeight; ++y) {
    for (int x = 0; x < kWidth; ++x) {
      const int dx = x - 60;
      const int dy = y - 46;
      const bool sun = dx * dx + dy * dy < 18 * 18 && y < 52;
      const bool sea = y >= 52;
      const int red = sun ? 255 : sea ? 40 + y / 2 : 250 - y / 2;
      const int green = sun ? 214 : sea ? 60 + y / 3 : 90 + y * 2;
      const int blue = sun ? 90 : sea ? 110 : 140 - y;
      appendByte(pixels, static_cast<unsigned>(red));
      appendByte(pixels, static_cast<unsigned>(green));
      appendByte(pixels, static_cast<unsigned>(blue));
    }
  }
  return pngOf(kWidth, kHeight, 3, pixels);
}

std::string heartPng() {
  constexpr int kSide = 64;
  constexpr int kSteps = 4;  // samples per pixel and direction, which make the edge smooth
  std::string pixels;
  for (int y = 0; y < kSide; ++y) {
    for (int x = 0; x < kSide; ++x) {
      int inside = 0;
      for (int step = 0; step < kSteps * kSteps; ++step) {
        const double u = (x + (step % kSteps + 0.5) / kSteps - 32.0) / 24.0;
        const double v = (34.0 - y - (step / kSteps + 0.5) / kSteps) / 24.0;
        const double ring = u * u + v * v - 1.0;
        if (ring * ring * ring - u * u * v * v * v <= 0.0) ++inside;
      }
      appendByte(pixels, 226);
      appendByte(pixels, static_cast<unsigned>(40 + y / 2));
      appendByte(pixels, 84);
      appendByte(pixels, static_cast<unsigned>(inside * 255 / (kSteps * kSteps)));
    }
  }
  return pngOf(kSide, kSide, 4, pixels);
}

std::string blinkingGif() {
  constexpr unsigned kSide = 48;
  std::string gif = "GIF89a";
  appendLittle16(gif, kSide);
  appendLittle16(gif, kSide);
  gif += std::string("\xf1\x00\x00", 3);  // a palette of four colours
  gif += "\x1f\x2d\x5a\xff\xd5\x4a\xff\xff\xff\xe6\x56\x4a";
  gif += std::string("\x21\xff\x0bNETSCAPE2.0\x03\x01\x00\x00\x00", 19);  // for ever
  for (unsigned frame = 0; frame < 2; ++frame) {
    gif += std::string("\x21\xf9\x04\x04\x32\x00\x00\x00", 8);  // half a second
    gif += ',';
    gif += std::string(4, '\0');
    appendLittle16(gif, kSide);
    appendLittle16(gif, kSide);
    appendByte(gif, 0);
    // Codes of a constant 8 bits: with 7-bit pixels the table would grow past that after 126 of them, so it is
    // cleared (code 128) before. The end is code 129.
    std::string codes;
    for (unsigned pixel = 0; pixel < kSide * kSide; ++pixel) {
      if (pixel % 120 == 0) appendByte(codes, 128);
      const int x = static_cast<int>(pixel % kSide) - 24;
      const int y = static_cast<int>(pixel / kSide) - 24;
      const bool star = x * x + y * y < (frame == 0 ? 144 : 400);
      appendByte(codes, star ? 1 + frame : 0);
    }
    appendByte(codes, 129);
    appendByte(gif, 7);
    for (std::size_t start = 0; start < codes.size(); start += 255) {
      const std::string block = codes.substr(start, 255);
      appendByte(gif, static_cast<unsigned>(block.size()));
      gif += block;
    }
    appendByte(gif, 0);
  }
  gif += ';';
  return gif;
}

std::string receiptBmp() {
  constexpr int kWidth = 40;
  constexpr int kHeight = 60;
  constexpr std::size_t kHeaders = 54;
  constexpr std::size_t kPixelBytes = kWidth * kHeight * 3;  // 120 bytes a row, a multiple of four
  std::string bmp = "BM";
  appendLittle32(bmp, kHeaders + kPixelBytes);
  appendLittle32(bmp, 0);
  appendLittle32(bmp, kHeaders);
  appendLittle32(bmp, 40);
  appendLittle32(bmp, kWidth);
  appendLittle32(bmp, kHeight);
  appendLittle16(bmp, 1);
  appendLittle16(bmp, 24);
  appendLittle32(bmp, 0);
  appendLittle32(bmp, kPixelBytes);
  for (int field = 0; field < 4; ++field) appendLittle32(bmp, 0);
  for (int y = kHeight - 1; y >= 0; --y) {  // rows from the bottom
    for (int x = 0; x < kWidth; ++x) {
      const bool printed = y % 6 < 2 && y > 8 && x > 4 && x < (y * 7) % 22 + 14;
      bmp.append(3, printed ? '\x30' : '\xf4');
    }
  }
  return bmp;
}

std::string onePagePdf(std::string_view heading, std::string_view lines) {
  const auto escaped = [](std::string_view text) {
    std::string result;
    for (char character : text) {
      if (character == '(' || character == ')' || character == '\\') result += '\\';
      result += character;
    }
    return result;
  };
  std::string content = fmt::format("BT /F1 22 Tf 72 760 Td ({}) Tj /F1 12 Tf 0 -18 Td", escaped(heading));
  for (std::size_t start = 0; start <= lines.size();) {
    const std::size_t end = std::min(lines.find('\n', start), lines.size());
    content += fmt::format(" 0 -18 Td ({}) Tj", escaped(lines.substr(start, end - start)));
    start = end + 1;
  }
  content += " ET";

  const std::array<std::string, 5> objects = {
      "<< /Type /Catalog /Pages 2 0 R >>",
      "<< /Type /Pages /Kids [3 0 R] /Count 1 >>",
      "<< /Type /Page /Parent 2 0 R /MediaBox [0 0 595 842] /Contents 4 0 R "
      "/Resources << /Font << /F1 5 0 R >> >> >>",
      fmt::format("<< /Length {} >>\nstream\n{}\nendstream", content.size(), content),
      "<< /Type /Font /Subtype /Type1 /BaseFont /Helvetica /Encoding /WinAnsiEncoding >>",
  };
  std::string pdf = "%PDF-1.4\n";
  std::string table = fmt::format("xref\n0 {}\n0000000000 65535 f \n", objects.size() + 1);
  for (std::size_t index = 0; index < objects.size(); ++index) {
    table += fmt::format("{:010} 00000 n \n", pdf.size());
    pdf += fmt::format("{} 0 obj\n{}\nendobj\n", index + 1, objects[index]);
  }
  const std::size_t tableStart = pdf.size();
  pdf += table;
  pdf += fmt::format("trailer\n<< /Size {} /Root 1 0 R >>\nstartxref\n{}\n%%EOF\n", objects.size() + 1, tableStart);
  return pdf;
}

std::string filmOf(std::string_view firstJpeg, std::string_view secondJpeg, int width, int height) {
  constexpr std::size_t kUnitsPerSecond = 600;
  constexpr std::size_t kFrameUnits = 300;
  const auto fixedSize = numbers({static_cast<std::size_t>(width) << 16, static_cast<std::size_t>(height) << 16});

  const std::string type = box("ftyp", "qt  " + numbers({0x20050300}) + "qt  ");
  const std::string media = box("mdat", std::string(firstJpeg) + std::string(secondJpeg));

  std::string picture(6, '\0');
  appendBig16(picture, 1);
  picture += numbers({0, 0, 0, 512});
  appendBig16(picture, static_cast<unsigned>(width));
  appendBig16(picture, static_cast<unsigned>(height));
  picture += numbers({0x480000, 0x480000, 0});
  appendBig16(picture, 1);
  picture.append(32, '\0');
  appendBig16(picture, 24);
  appendBig16(picture, 0xffff);

  const std::string samples =
      box("stbl", fullBox("stsd", 0, numbers({1}) + box("jpeg", picture)) +
                      fullBox("stts", 0, numbers({1, 2, kFrameUnits})) + fullBox("stsc", 0, numbers({1, 1, 2, 1})) +
                      fullBox("stsz", 0, numbers({0, 2, firstJpeg.size(), secondJpeg.size()})) +
                      fullBox("stco", 0, numbers({1, type.size() + 8})));
  const std::string dataHere = box("dinf", fullBox("dref", 0, numbers({1}) + fullBox("url ", 1, "")));
  const std::string information = box("minf", fullBox("vmhd", 1, std::string(8, '\0')) + dataHere + samples);
  const std::string handler = fullBox("hdlr", 0, "mhlrvide" + std::string(13, '\0'));
  const std::string mediaHeader = fullBox("mdhd", 0, numbers({0, 0, kUnitsPerSecond, 2 * kFrameUnits, 0}));
  const std::string trackHeader =
      fullBox("tkhd", 3, numbers({0, 0, 1, 0, 2 * kFrameUnits, 0, 0, 0, 0}) + unitMatrix() + fixedSize);
  const std::string track = box("trak", trackHeader + box("mdia", mediaHeader + handler + information));
  const std::string filmHeader = fullBox("mvhd", 0,
                                         numbers({0, 0, kUnitsPerSecond, 2 * kFrameUnits, 0x10000, 0x01000000, 0, 0}) +
                                             unitMatrix() + numbers({0, 0, 0, 0, 0, 0, 2}));
  return type + media + box("moov", filmHeader + track);
}

std::string voiceCaf() {
  constexpr unsigned kRate = 8000;
  std::string samples;
  unsigned phase = 0;
  for (unsigned index = 0; index < kRate / 2; ++index) {
    // A triangle whose pitch falls from 400 to 200 Hz and whose loudness fades out.
    phase = (phase + 400 - index / 20) % kRate;
    const int wave = static_cast<int>(phase < kRate / 2 ? phase : kRate - phase) - static_cast<int>(kRate / 4);
    const int sample = wave * 4 * static_cast<int>(kRate / 2 - index) / static_cast<int>(kRate / 2);
    appendBig16(samples, static_cast<unsigned>(sample) & 0xffff);
  }
  std::string caf = "caff";
  appendBig16(caf, 1);
  appendBig16(caf, 0);
  caf += "desc";
  appendBig64(caf, 32);
  appendBig64(caf, std::bit_cast<std::uint64_t>(static_cast<double>(kRate)));
  caf += "lpcm";
  caf += numbers({0, 2, 1, 1, 16});
  caf += "data";
  appendBig64(caf, samples.size() + 4);
  appendBig32(caf, 0);
  return caf + samples;
}

std::string contactVcf(std::string_view name, std::string_view number) {
  return fmt::format("BEGIN:VCARD\r\nVERSION:3.0\r\nN:;{0};;;\r\nFN:{0}\r\nTEL;TYPE=CELL:{1}\r\nEND:VCARD\r\n", name,
                     number);
}

}  // namespace chatsum::device
