#include "hosts/device/words/Effects.h"

#include <array>
#include <utility>

#include "hosts/device/words/ShownWords.h"

namespace chatsum::device {
namespace {

constexpr std::string_view kScreenEffect = "CK", kScreenEffectEnd = "Effect";

constexpr std::array<std::pair<std::string_view, std::string_view>, 13> kNames = {{{"impact", "slam"},
                                                                                   {"loud", "loud"},
                                                                                   {"gentle", "gentle"},
                                                                                   {"invisibleink", "invisible ink"},
                                                                                   {"Echo", "echo"},
                                                                                   {"Spotlight", "spotlight"},
                                                                                   {"HappyBirthday", "balloons"},
                                                                                   {"Confetti", "confetti"},
                                                                                   {"Heart", "a heart"},
                                                                                   {"Lasers", "lasers"},
                                                                                   {"Fireworks", "fireworks"},
                                                                                   {"ShootingStar", "a shooting star"},
                                                                                   {"Sparkles", "sparkles"}}};

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
    if (name == known) return "[sent with " + std::string(words) + "]";
  }
  return "[sent with the effect " + nameInWords(name) + "]";
}

}  // namespace chatsum::device
