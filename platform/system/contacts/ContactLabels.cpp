#include "platform/system/contacts/ContactLabels.h"

#include <utility>

namespace chatsum::platform::system {
namespace {

constexpr std::string_view kOpening = "_$!<";
constexpr std::string_view kClosing = ">!$_";

/// Marks a text for the catalogues of translations.
constexpr std::string_view toSay(std::string_view english) { return english; }

constexpr std::string_view kOther = toSay("other");
constexpr std::pair<std::string_view, std::string_view> kWords[] = {
    {"Mobile", toSay("mobile")},
    {"iPhone", toSay("iPhone")},
    {"AppleWatch", toSay("Apple Watch")},
    {"Home", toSay("home")},
    {"Work", toSay("work")},
    {"School", toSay("school")},
    {"Main", toSay("main")},
    {"HomeFAX", toSay("home fax")},
    {"WorkFAX", toSay("work fax")},
    {"OtherFAX", toSay("other fax")},
    {"Pager", toSay("pager")},
    {"Other", kOther},
    {"HomePage", toSay("home page")},
    {"Anniversary", toSay("anniversary")},
    {"Mother", toSay("mother")},
    {"Father", toSay("father")},
    {"Parent", toSay("parent")},
    {"Brother", toSay("brother")},
    {"Sister", toSay("sister")},
    {"Child", toSay("child")},
    {"Friend", toSay("friend")},
    {"Spouse", toSay("spouse")},
    {"Partner", toSay("partner")},
    {"Assistant", toSay("assistant")},
    {"Manager", toSay("manager")},
};

}  // namespace

std::string contactLabelInWords(std::string_view label, const Translations* translations) {
  const auto said = [translations](std::string_view words) {
    return translations ? translations->text(words) : std::string(words);
  };
  const bool isBuiltIn =
      label.size() >= kOpening.size() + kClosing.size() && label.starts_with(kOpening) && label.ends_with(kClosing);
  if (isBuiltIn) label = label.substr(kOpening.size(), label.size() - kOpening.size() - kClosing.size());
  if (label.empty()) return said(kOther);
  if (isBuiltIn) {
    for (const auto& [key, words] : kWords) {
      if (label == key) return said(words);
    }
  }
  return std::string(label);
}

}  // namespace chatsum::platform::system
