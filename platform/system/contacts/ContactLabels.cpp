#include "platform/system/contacts/ContactLabels.h"

#include <utility>

namespace chatsum::platform::system {
namespace {

constexpr std::string_view kOpening = "_$!<";
constexpr std::string_view kClosing = ">!$_";

constexpr std::pair<std::string_view, std::string_view> kWords[] = {
    {"Mobile", "mobile"},
    {"iPhone", "iPhone"},
    {"AppleWatch", "Apple Watch"},
    {"Home", "home"},
    {"Work", "work"},
    {"School", "school"},
    {"Main", "main"},
    {"HomeFAX", "home fax"},
    {"WorkFAX", "work fax"},
    {"OtherFAX", "other fax"},
    {"Pager", "pager"},
    {"Other", "other"},
    {"HomePage", "home page"},
    {"Anniversary", "anniversary"},
    {"Mother", "mother"},
    {"Father", "father"},
    {"Parent", "parent"},
    {"Brother", "brother"},
    {"Sister", "sister"},
    {"Child", "child"},
    {"Friend", "friend"},
    {"Spouse", "spouse"},
    {"Partner", "partner"},
    {"Assistant", "assistant"},
    {"Manager", "manager"},
};

}  // namespace

std::string contactLabelInWords(std::string_view label) {
  const bool isBuiltIn =
      label.size() >= kOpening.size() + kClosing.size() && label.starts_with(kOpening) && label.ends_with(kClosing);
  if (isBuiltIn) label = label.substr(kOpening.size(), label.size() - kOpening.size() - kClosing.size());
  if (label.empty()) return "other";
  if (isBuiltIn) {
    for (const auto& [key, words] : kWords) {
      if (label == key) return std::string(words);
    }
  }
  return std::string(label);
}

}  // namespace chatsum::platform::system
