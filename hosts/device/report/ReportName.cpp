#include "hosts/device/report/ReportName.h"

#include <algorithm>

#include "platform/foundation/Utf8.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kMostBytes = 255;  // what file systems take
constexpr std::size_t kHandyBytes = 120;
constexpr const char* kUnnamed = "Conversation";

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

std::optional<StoreProblem> checkReportName(std::string_view name, std::string_view extension) {
  const std::string ending = "." + std::string(extension);
  std::string_view base = name;
  if (base.size() >= ending.size()) base.remove_suffix(ending.size());
  const auto refused = [&](const std::string& why) {
    return StoreProblem{"The report cannot be named '" + std::string(base) + "': " + why};
  };
  if (base.empty()) return StoreProblem{"A report needs a name; give one after --name."};
  if (base.find('/') != std::string_view::npos) {
    return refused("a name has no '/'. Use --output to put a copy into another folder.");
  }
  if (base == "." || base == "..") return refused("that means a folder. Give another name.");
  if (base.find('\0') != std::string_view::npos) return refused("it holds a zero character. Give another name.");
  if (name.size() > kMostBytes) {
    return StoreProblem{"The report's name is " + std::to_string(name.size()) + " bytes long; a file name has " +
                        std::to_string(kMostBytes) + " at most. Give a shorter one."};
  }
  return std::nullopt;
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
  return name.empty() ? kUnnamed : name;
}

}  // namespace chatsum::device
