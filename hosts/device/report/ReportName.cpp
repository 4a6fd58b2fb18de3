#include "hosts/device/report/ReportName.h"

#include <algorithm>

#include "hosts/device/language/Say.h"
#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kHandyBytes = 120;

char lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

}  // namespace

std::string withExtension(std::string_view name, std::string_view extension) {
  const std::string ending = "." + std::string(extension);
  // The ending alone is no name: ".txt" is a hidden file without extension.
  const bool hasEnding =
      name.size() > ending.size() && std::equal(ending.rbegin(), ending.rend(), name.rbegin(),
                                                [](char one, char other) { return lower(one) == lower(other); });
  return hasEnding ? std::string(name) : std::string(name) + ending;
}

std::optional<NameFault> faultOfName(std::string_view name, std::string_view extension) {
  if (name.find_first_not_of(" \t\r\n") == std::string_view::npos) return NameFault::kEmpty;
  if (name.find('/') != std::string_view::npos) return NameFault::kSlash;
  if (name == "." || name == "..") return NameFault::kFolder;
  if (name.find('\0') != std::string_view::npos) return NameFault::kZero;
  if (name.front() == '.') return NameFault::kHidden;
  if (name.size() + 1 + extension.size() > kMostNameBytes) return NameFault::kTooLong;
  return std::nullopt;
}

std::optional<StoreProblem> checkReportName(std::string_view name, std::string_view extension) {
  std::string_view base = name;
  if (base.size() > extension.size()) base.remove_suffix(extension.size() + 1);
  const auto fault = faultOfName(base, extension);
  if (!fault) return std::nullopt;
  const auto refused = [&](const std::string& why) {
    return StoreProblem{say("The report cannot be named '{0}': {1}", base, why)};
  };
  switch (*fault) {
    case NameFault::kSlash:
      return refused(say("a name has no '/'. Use --output to put a copy into another folder."));
    case NameFault::kFolder:
      return refused(say("that means a folder. Give another name."));
    case NameFault::kZero:
      return refused(say("it holds a zero character. Give another name."));
    case NameFault::kHidden:
      return refused(say("a file whose name begins with a dot is hidden. Give another name."));
    case NameFault::kTooLong:
      return StoreProblem{say("The report's name is {0} bytes long; a file name has {1} at most. Give a shorter one.",
                              name.size(), kMostNameBytes)};
    case NameFault::kEmpty:
      break;
  }
  return StoreProblem{say("A report needs a name; give one after --name.")};
}

std::string reportNameFor(std::string_view conversationName) {
  std::string name;
  for (std::size_t at = 0; at < conversationName.size() && name.size() < kHandyBytes;) {
    const char32_t character = utf8::next(conversationName, at);
    if (character < 0x20 || character == 0x7F || (character >= 0x80 && character < 0xA0)) continue;
    if (character == U'/') {
      name += '-';
    } else {
      utf8::append(name, character);
    }
  }
  const auto isTrimmed = [](char c) { return c == ' ' || c == '.'; };
  name.erase(name.begin(), std::find_if_not(name.begin(), name.end(), isTrimmed));
  while (!name.empty() && name.back() == ' ') name.pop_back();
  return name.empty() ? say("Conversation") : name;
}

}  // namespace chatsum::device
