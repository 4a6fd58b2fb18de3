#include "hosts/device/words/MessageHistory.h"

#include <algorithm>
#include <charconv>

#include "hosts/device/body/TypedStream.h"
#include "hosts/device/plist/PlistValue.h"

namespace chatsum::device {
namespace {

// A message can be edited a few times; more come from no device.
constexpr std::size_t kMostParts = 100, kMostVersions = 100;

std::int64_t numberOf(std::string_view text) {
  std::int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

MessageHistory::Part readPart(const PlistValue::Entry& entry, double& lastEdit) {
  MessageHistory::Part part{numberOf(entry.key), {}};
  const PlistValue::Items* versions = entry.value.asArray();
  for (std::size_t i = 0; versions && i < versions->size() && i < kMostVersions; ++i) {
    const PlistValue& version = (*versions)[i];
    const std::string* bytes = version["t"].asData();
    if (!bytes) continue;
    BodyText body = decodeBody(*bytes);
    if (body.status == BodyStatus::kUndecodable) continue;
    part.versions.push_back(std::move(body.text));
    if (const auto date = version["d"].asReal(); date && *date > lastEdit) lastEdit = *date;
  }
  return part;
}

}  // namespace

MessageHistory readHistory(std::string_view summaryInfo) {
  MessageHistory history;
  const auto list = summaryInfo.empty() ? std::nullopt : parsePlist(summaryInfo);
  if (!list) return history;
  if (const PlistValue::Entries* parts = (*list)["ec"].asDictionary()) {
    for (const PlistValue::Entry& entry : *parts) {
      if (history.edited.size() == kMostParts) break;
      history.edited.push_back(readPart(entry, history.lastEdit));
    }
  }
  std::stable_sort(history.edited.begin(), history.edited.end(),
                   [](const auto& left, const auto& right) { return left.number < right.number; });
  if (const PlistValue::Items* parts = (*list)["rp"].asArray()) {
    for (const PlistValue& part : *parts) {
      if (const auto number = part.asInteger()) history.unsent.push_back(*number);
    }
  }
  std::sort(history.unsent.begin(), history.unsent.end());
  history.unsent.erase(std::unique(history.unsent.begin(), history.unsent.end()), history.unsent.end());
  return history;
}

std::vector<std::string> earlierTexts(const MessageHistory& history, std::string_view now) {
  std::vector<std::string> earlier;
  for (const MessageHistory::Part& part : history.edited) {
    std::vector<std::string> versions = part.versions;
    versions.erase(std::unique(versions.begin(), versions.end()), versions.end());
    // What was taken back has no present text; every version of it is one of the past.
    const bool isUnsent = std::binary_search(history.unsent.begin(), history.unsent.end(), part.number);
    if (!isUnsent && !versions.empty() && now.find(versions.back()) != std::string_view::npos) versions.pop_back();
    earlier.insert(earlier.end(), versions.begin(), versions.end());
  }
  return earlier;
}

}  // namespace chatsum::device
