// Known bodies, byte for byte as Messages writes them, shared by the tests of the reader and the writer.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace chatsum::device::testing {

inline std::string fromHex(std::string_view hex) {
  const auto digit = [](char c) { return static_cast<unsigned>(c <= '9' ? c - '0' : c - 'a' + 10); };
  std::string bytes;
  for (std::size_t i = 0; i + 1 < hex.size(); i += 2) {
    bytes.push_back(static_cast<char>(digit(hex[i]) * 16 + digit(hex[i + 1])));
  }
  return bytes;
}

/// "Hi", a waving hand and "é": one run of seven UTF-16 units.
inline const std::string kGreetingText = "Hi \xF0\x9F\x91\x8B \xC3\xA9";
inline const std::string kGreeting = fromHex(
    "040b73747265616d747970656481e803840140848484124e5341747472696275746564537472696e67008484084e534f626a6563740085"
    "92848484084e53537472696e67019484012b0a486920f09f918b20c3a986840269490107928484840c4e5344696374696f6e6172790094"
    "84016901928496961d5f5f6b494d4d657373616765506172744174747269627574654e616d658692848484084e534e756d626572008484"
    "074e5356616c7565009484012a84999900868686");

/// An attachment followed by "Look!": a mutable string with two runs.
inline const std::string kAttachmentText = "\xEF\xBF\xBCLook!";
inline const std::string kAttachmentGuid = "at_0_11111111-2222-3333-4444-555555555555";
inline const std::string kAttachment = fromHex(
    "040b73747265616d747970656481e803840140848484194e534d757461626c6541747472696275746564537472696e67008484124e5341"
    "747472696275746564537472696e67008484084e534f626a6563740085928484840f4e534d757461626c65537472696e67018484084e53"
    "537472696e67019584012b08efbfbc4c6f6f6b2186840269490101928484840c4e5344696374696f6e6172790095840169029284989822"
    "5f5f6b494d46696c655472616e7366657247554944417474726962"
    "7574654e616d6586928498982961745f305f31313131313131312d323232322d333333332d343434342d35353535353535353535353586"
    "928498981d5f5f6b494d4d657373616765506172744174747269627574654e616d658692848484084e534e756d626572008484074e5356"
    "616c7565009584012a849b9b00868699020592849a9b01929d92849f9ea19b01868686");

/// An empty message, without runs.
inline const std::string kEmpty = fromHex(
    "040b73747265616d747970656481e803840140848484124e5341747472696275746564537472696e67008484084e534f626a6563740085"
    "92848484084e53537472696e67019484012b008686");

/// A text whose own bytes look like the stream's tags: U+2044 U+0144 U+0004.
inline const std::string kLookalikeText = "\xE2\x81\x84\xC5\x84\x04";
inline const std::string kLookalike = fromHex(
    "040b73747265616d747970656481e803840140848484124e5341747472696275746564537472696e67008484084e534f626a6563740085"
    "92848484084e53537472696e67019484012b06e28184c5840486840269490103928484840c4e5344696374696f6e617279009484016901"
    "928496961d5f5f6b494d4d657373616765506172744174747269627574654e616d658692848484084e534e756d626572008484074e5356"
    "616c7565009484012a84999900868686");

/// The body of a plain text with one run, put together by hand: `length` is the text's length as the stream codes it,
/// `units` the run's.
inline std::string handmadeBody(std::string_view text, std::string_view length, std::string_view units) {
  constexpr std::size_t kBeforeLength = 73;
  constexpr std::size_t kTextBytes = 10;
  std::string body = kGreeting.substr(0, kBeforeLength);
  body.append(length).append(text);
  const std::size_t behindText = kBeforeLength + 1 + kTextBytes;
  constexpr std::size_t kEndAndRunStart = 6;  // end of the string, new encoding "iI", run number 1
  body += kGreeting.substr(behindText, kEndAndRunStart);
  body.append(units);
  body += kGreeting.substr(behindText + kEndAndRunStart + 1);
  return body;
}

/// 130 letters: the length needs two bytes. 70,000 letters: it needs four.
inline const std::string kLongText(130, 'a');
inline const std::string kLong = handmadeBody(kLongText, fromHex("818200"), fromHex("818200"));
inline const std::string kVeryLongText(70000, 'z');
inline const std::string kVeryLong = handmadeBody(kVeryLongText, fromHex("8270110100"), fromHex("8270110100"));

struct KnownBody {
  const char* name;
  const std::string& body;
  const std::string& text;
};

inline const std::string kNoText;
inline const std::vector<KnownBody> kKnownBodies = {
    {"greeting", kGreeting, kGreetingText},
    {"attachment", kAttachment, kAttachmentText},
    {"long", kLong, kLongText},
    {"empty", kEmpty, kNoText},
    {"lookalike", kLookalike, kLookalikeText},
    {"veryLong", kVeryLong, kVeryLongText},
};

}  // namespace chatsum::device::testing
