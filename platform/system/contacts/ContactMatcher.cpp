#include "platform/system/contacts/ContactMatcher.h"

#include <algorithm>
#include <bit>
#include <functional>

namespace chatsum::platform::system {
namespace {

using Kind = ContactAddress::Kind;

constexpr std::size_t kMostRemembered = 100'000;
constexpr std::uint32_t kNone = 0xFFFFFFFFu;
constexpr int kIndexedDigits = 7;

/// Addresses that may be equal have equal keys.
std::uint64_t keyOf(const ContactAddress& address) {
  if (address.kind == Kind::kNumber) return address.digits.last(kIndexedDigits).value;
  return std::hash<std::string_view>()(address.text) ^ static_cast<std::uint64_t>(address.kind) << 60;
}

std::size_t bucketOf(std::uint64_t key, std::size_t buckets) {
  // Fibonacci hashing: the last digits of numbers are not spread evenly.
  return static_cast<std::size_t>((key * 0x9E3779B97F4A7C15ULL) >> (64 - std::countr_zero(buckets)));
}

}  // namespace

ContactMatcher::ContactMatcher(const ContactStore& store, std::string_view region)
    : store_(store), region_(phoneRegionNamed(region)) {}

void ContactMatcher::buildIndex() const {
  const auto& values = store_.values();
  buckets_.assign(std::bit_ceil(std::max<std::size_t>(values.size(), 2)), kNone);
  entries_.reserve(values.size());
  ContactAddress address;
  // Backwards, so that the entries of a bucket are met in the order of the store.
  for (std::size_t place = values.size(); place-- > 0;) {
    const ContactValue& value = values[place];
    readContactAddress(value.text, region_, address);
    const bool isEmailField = value.property == ABProperty::kEmail;
    if (address.kind == Kind::kNothing || (isEmailField && address.kind != Kind::kEmail)) continue;
    Entry entry;
    entry.key = keyOf(address);
    entry.digits = address.digits;
    entry.kind = address.kind;
    entry.isInternational = address.isInternational;
    entry.value = static_cast<std::uint32_t>(place);
    std::uint32_t& first = buckets_[bucketOf(entry.key, buckets_.size())];
    entry.next = first;
    first = static_cast<std::uint32_t>(entries_.size());
    entries_.push_back(entry);
  }
}

ContactMatch ContactMatcher::match(std::string_view handle) const {
  std::string key(handle);
  {
    const std::lock_guard lock(memoMutex_);
    if (const auto known = memo_.find(key); known != memo_.end()) return known->second;
  }
  ContactMatch found = find(handle);
  const std::lock_guard lock(memoMutex_);
  if (memo_.size() >= kMostRemembered) memo_.clear();
  memo_.emplace(std::move(key), found);
  return found;
}

ContactMatch ContactMatcher::find(std::string_view handle) const {
  ContactAddress wanted;
  readContactAddress(handle, region_, wanted);
  if (wanted.kind == Kind::kNothing) return {};
  std::call_once(indexOnce_, [this] { buildIndex(); });
  return choose(surestValues(wanted));
}

std::vector<std::size_t> ContactMatcher::surestValues(const ContactAddress& wanted) const {
  std::vector<std::size_t> places;
  SameNumber surest = SameNumber::kBySuffix;
  const std::uint64_t key = keyOf(wanted);
  ContactAddress other;
  for (std::uint32_t at = buckets_[bucketOf(key, buckets_.size())]; at != kNone; at = entries_[at].next) {
    const Entry& entry = entries_[at];
    if (entry.key != key || entry.kind != wanted.kind) continue;
    SameNumber same = SameNumber::kExactly;
    if (wanted.kind == Kind::kNumber) {
      other.kind = entry.kind;
      other.digits = entry.digits;
      other.isInternational = entry.isInternational;
      same = compareNumbers(wanted, other, region_);
    } else {
      readContactAddress(store_.values()[entry.value].text, region_, other);
      if (other.text != wanted.text) same = SameNumber::kNot;
    }
    if (same > surest) continue;
    if (same < surest) places.clear();
    surest = same;
    places.push_back(entry.value);
  }
  return places;
}

ContactMatch ContactMatcher::choose(const std::vector<std::size_t>& places) const {
  struct Candidate {
    ABRecordID record;
    std::size_t place;
  };
  std::vector<Candidate> candidates;
  for (const std::size_t place : places) {
    const ABRecordID record = store_.values()[place].record;
    const bool isKnown = std::any_of(candidates.begin(), candidates.end(),
                                     [&](const Candidate& candidate) { return candidate.record == record; });
    // A number may be left behind by a card that is gone.
    if (!isKnown && store_.card(record)) candidates.push_back({record, place});
  }
  if (candidates.empty()) return {};
  std::sort(candidates.begin(), candidates.end(),
            [](const Candidate& a, const Candidate& b) { return a.record < b.record; });

  // Everybody must be the same person as one who is already known to be the same as the first.
  const auto isSamePerson = [&](ABRecordID a, ABRecordID b) {
    const std::int64_t link = store_.card(a)->link;
    return (link != -1 && link == store_.card(b)->link) || store_.personName(a) == store_.personName(b);
  };
  std::vector<Candidate> same = {candidates.front()}, rest(candidates.begin() + 1, candidates.end());
  for (std::size_t i = 0; i < same.size() && !rest.empty(); ++i) {
    const auto others = std::stable_partition(rest.begin(), rest.end(), [&](const Candidate& candidate) {
      return !isSamePerson(same[i].record, candidate.record);
    });
    same.insert(same.end(), others, rest.end());
    rest.erase(others, rest.end());
  }
  ContactMatch match;
  if (!rest.empty()) {
    for (const Candidate& candidate : candidates) match.candidates.push_back(candidate.record);
    return match;
  }
  // The card that names the person, when it has the number too.
  const auto naming = std::find_if(candidates.begin(), candidates.end(), [&](const Candidate& candidate) {
    return store_.namingCard(candidate.record) == candidate.record;
  });
  const Candidate& chosen = naming != candidates.end() ? *naming : candidates.front();
  match.record = chosen.record;
  match.value = chosen.place;
  return match;
}

}  // namespace chatsum::platform::system
