#include "hosts/device/words/Effects.h"

#include <array>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/words/ShownWords.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kScreenEffect = "CK", kScreenEffectEnd = "Effect";

constexpr std::array<std::pair<std::string_view, std::string_view>, 13> kNames = {
    {{"impact", toSay("slam")},
     {"loud", toSay("loud")},
     {"gentle", toSay("gentle")},
     {"invisibleink", toSay("invisible ink")},
     {"Echo", toSay("echo")},
     {"Spotlight", toSay("spotlight")},
     {"HappyBirthday", toSay("balloons")},
     {"Confetti", toSay("confetti")},
     {"Heart", toSay("a heart")},
     {"Lasers", toSay("lasers")},
     {"Fireworks", toSay("fireworks")},
     {"ShootingStar", toSay("a shooting star")},
     {"Sparkles", toSay("sparkles")}}};

}  // namespace

std::string effectInWords(std::string_view identifier) {
  if (identifier.empty()) return "";
  std::string_view name = identifier.substr(identifier.rfind('.') + 1);  // the whole without a dot
  if (name.starts_with(kScreenEffect) && name.ends_with(kScreenEffectEnd) &&
      name.size() > kScreenEffect.size() + kScreenEffectEnd.size()) {
    name.remove_prefix(kScreenEffect.size());
    name.remove_suffix(kScreenEffectEnd.size());
  }
  for (const auto& [known, words] : kNames) {
    if (name == known) return say("[sent with {0}]", said(words));
  }
  return say("[sent with the effect {0}]", nameInWords(name));
}

}  // namespace chatsum::device
