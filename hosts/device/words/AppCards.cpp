#include "hosts/device/words/AppCards.h"

#include <array>
#include <optional>
#include <utility>

#include "hosts/device/language/Say.h"
#include "hosts/device/plist/PlistValue.h"
#include "hosts/device/words/MarkedText.h"
#include "hosts/device/words/ShownWords.h"

namespace chatsum::device {
namespace {

constexpr std::size_t kLongestTitle = 300, kLongestAddress = 2000;
constexpr std::string_view kLinkBundle = "com.apple.messages.URLBalloonProvider";

/// Parts of identifiers that tell a card's kind.
constexpr std::array<std::pair<std::string_view, std::string_view>, 7> kKinds = {
    {{"Handwriting", toSay("handwritten message")},
     {"DigitalTouch", toSay("Digital Touch")},
     {"PeerPaymentMessagesExtension", toSay("Apple Cash")},
     {"SafetyMonitorMessages", toSay("Check In")},
     {"FindMyMessagesApp", toSay("Find My")},
     {"PhotosMessagesApp", toSay("shared photos")},
     {"ActivityMessagesApp", toSay("activity")}}};

std::optional<PlistValue> readPayload(std::string_view payload) {
  if (payload.empty()) return std::nullopt;
  const auto archive = parsePlist(payload);
  return archive ? unarchived(*archive) : std::nullopt;
}

/// An address stands as a string, or as an object that holds it.
std::string addressAt(const PlistValue& card, std::string_view key) {
  const PlistValue& value = card[key];
  const std::string* text = value.asString() ? value.asString() : value["URL"].asString();
  return text ? onOneLine(std::string_view(*text).substr(0, kLongestAddress)) : "";
}

std::string firstText(const PlistValue& card, std::initializer_list<std::string_view> keys) {
  for (const std::string_view key : keys) {
    if (std::string text = onOneLine(card.stringAt(key)); !text.empty()) return text;
  }
  return "";
}

std::string bracket(std::string_view kind, const std::string& title, std::string_view address) {
  std::string words = "[" + std::string(kind);
  if (!title.empty() || !address.empty()) words += ':';
  if (!title.empty()) words += " " + quoted(title, kLongestTitle);
  if (!address.empty()) words.append(" ").append(typedInBrackets(address));
  return words + "]";
}

std::string linkInWords(const PlistValue& root, std::string_view text) {
  const PlistValue& metadata = root["richLinkMetadata"].isNone() ? root["metadata"] : root["richLinkMetadata"];
  std::string address = addressAt(metadata, "originalURL");
  if (address.empty()) address = addressAt(metadata, "URL");
  if (!address.empty() && text.find(address) != std::string_view::npos) address.clear();
  const std::string title = firstText(metadata, {"title", "siteName", "summary"});
  // Beside words of its own, "[link]" would say nothing.
  if (title.empty() && address.empty() && holdsWords(text)) return "";
  return bracket(say("link"), title, address);
}

/// The last part of an app's identifier when nothing better is known.
std::string nameOfBundle(std::string_view bundle) { return nameInWords(bundle.substr(bundle.rfind(':') + 1)); }

}  // namespace

std::string cardInWords(std::string_view bundle, std::string_view payload, std::string_view text) {
  const auto root = readPayload(payload);
  const PlistValue none;
  const PlistValue& card = root ? *root : none;
  if (bundle == kLinkBundle) return linkInWords(card, text);
  std::string title = firstText(card["userInfo"], {"caption", "image-title", "subcaption", "image-subtitle",
                                                   "secondary-subcaption", "tertiary-subcaption"});
  if (title.empty()) title = firstText(card, {"ldtext"});
  for (const auto& [part, kind] : kKinds) {
    if (bundle.find(part) != std::string_view::npos) return bracket(said(kind), title, "");
  }
  std::string name = nameInWords(card.stringAt("an"));
  if (name.empty()) name = nameOfBundle(bundle);
  std::string address = title.empty() ? addressAt(card, "URL") : "";
  // Apps keep their own data in addresses; only those of the web say something to people.
  if (!address.starts_with("https://") && !address.starts_with("http://")) address.clear();
  return bracket(name.empty() ? say("app card") : say("app card of {0}", name), title, address);
}

}  // namespace chatsum::device
