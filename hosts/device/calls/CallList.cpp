#include "hosts/device/calls/CallList.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "hosts/device/calls/CallMerge.h"
#include "hosts/device/calls/CallNames.h"
#include "hosts/device/calls/CallStore.h"
#include "hosts/device/contacts/SharedAddresses.h"
#include "hosts/device/language/Say.h"
#include "hosts/device/stores/StoreSnapshot.h"

namespace chatsum::device {
namespace {

/// One list of a source, while it is read.
struct OpenList {
  SourceStore store;
  StoreSnapshot snapshot;
  StoredCalls calls;
};

StoreResult<std::optional<OpenList>> openList(const DeviceSession& session, SourceStore store) {
  auto location = session.source().store(store);
  if (!location) return location.problem();
  if (!location.value()) return std::optional<OpenList>();
  auto snapshot = StoreSnapshot::take(*location.value());
  if (!snapshot) return snapshot.problem();
  auto calls = store == SourceStore::kOldCalls ? readOldCallStore(snapshot.value()) : readCallStore(snapshot.value());
  if (!calls) return calls.problem();
  return std::optional<OpenList>(OpenList{store, std::move(snapshot.value()), std::move(calls.value())});
}

/// Every list of the source that can be read. The main one has to be, if there is one; of the others one has to be when
/// there is none.
StoreResult<std::vector<OpenList>> openLists(const DeviceSession& session, std::vector<std::string>& notes) {
  std::vector<OpenList> lists;
  std::optional<StoreProblem> firstProblem;
  const std::size_t toldBefore = session.source().facts().warnings.size();
  for (const SourceStore store : {SourceStore::kCalls, SourceStore::kTemporaryCalls, SourceStore::kOldCalls}) {
    auto list = openList(session, store);
    if (list) {
      if (list.value()) lists.push_back(std::move(*list.value()));
      continue;
    }
    if (store == SourceStore::kCalls) return list.problem();
    if (!firstProblem) firstProblem = list.problem();
    notes.push_back(say("A list beside the main one is left out: {0}", list.problem().sentence));
  }
  // What turns up while a list is brought out of its source.
  const std::vector<std::string>& warnings = session.source().facts().warnings;
  notes.insert(notes.end(), warnings.begin() + static_cast<std::ptrdiff_t>(toldBefore), warnings.end());
  if (!lists.empty()) return lists;
  return firstProblem ? *firstProblem : StoreProblem{session.source().whyMissing(SourceStore::kCalls)};
}

std::optional<StoreProblem> checkUnchanged(const std::vector<OpenList>& lists) {
  for (const OpenList& list : lists) {
    if (list.snapshot.sourceIsUnchanged()) continue;
    return StoreProblem{
        say("'{0}' changed while it was read; quit the programs that use it, or copy it yourself and give the copy.",
            list.snapshot.shownPath())};
  }
  return std::nullopt;
}

/// The rows of all lists in one, and how many there were.
std::vector<Call> mergeLists(std::vector<OpenList>& lists, CallBalance& balance) {
  CallMerge merge;
  for (OpenList& list : lists) {
    balance.inLists += list.calls.rows;
    balance.read += list.calls.calls.size();
    if (list.store == SourceStore::kTemporaryCalls) balance.inTemporary = list.calls.rows;
    if (list.store == SourceStore::kOldCalls) balance.inOld = list.calls.rows;
    merge.add(std::move(list.calls.calls));
  }
  balance.duplicates = merge.duplicates();
  return std::move(merge.calls());
}

/// Drops what was not asked for and counts it.
void select(std::vector<Call>& calls, const CallListOptions& options, CallBalance& balance) {
  const auto wanted = options.person ? std::optional<WantedPerson>(std::in_place, *options.person, options.region)
                                     : std::optional<WantedPerson>();
  std::erase_if(calls, [&](const Call& call) {
    std::uint64_t* reason = nullptr;
    if (options.app && call.service != serviceOf(*options.app)) {
      reason = &balance.otherApps;
    } else if (wanted && !wanted->isIn(call)) {
      reason = &balance.otherPeople;
    } else if (!options.range.isOpen() && !call.date) {
      reason = &balance.undatedOutside;
    } else if (call.date && !options.range.contains(*call.date)) {
      reason = &balance.outsideTimes;
    }
    if (reason) ++*reason;
    return reason != nullptr;
  });
  balance.written = calls.size();
}

void putInOrder(std::vector<Call>& calls, bool newestFirst) {
  std::stable_sort(calls.begin(), calls.end(), [newestFirst](const Call& one, const Call& other) {
    if (!one.date || !other.date) return one.date.has_value() && !other.date.has_value();
    return newestFirst ? *one.date > *other.date : *one.date < *other.date;
  });
}

void notePeriod(CallList& list) {
  for (const Call& call : list.calls) {
    if (!call.date) continue;
    if (!list.first || *call.date < *list.first) list.first = call.date;
    if (!list.last || *call.date > *list.last) list.last = call.date;
  }
  if (!list.first) {
    list.notes.push_back(say("The call list holds no call with a date."));
    return;
  }
  constexpr std::size_t kDayLength = 10;
  list.notes.push_back(say("The call list reaches from {0} to {1}; devices drop the oldest calls of a full list.",
                           isoTime(*list.first).substr(0, kDayLength), isoTime(*list.last).substr(0, kDayLength)));
}

/// What is odd about the calls that were asked for.
void noteOddities(CallList& list) {
  std::uint64_t encrypted = 0, incomplete = 0, undated = 0, endless = 0;
  for (const Call& call : list.calls) {
    encrypted += call.isEncrypted ? 1 : 0;
    incomplete += call.unknownPeople > 0 ? 1 : 0;
    undated += call.date ? 0 : 1;
    endless += call.duration ? 0 : 1;
  }
  if (encrypted > 0) {
    list.notes.push_back(sayCounted(encrypted,
                                    "{0} call has an encrypted number or name; the key to it is in the keychain of the "
                                    "Mac that kept the list.",
                                    "{0} calls have an encrypted number or name; the key to it is in the keychain of "
                                    "the Mac that kept the list."));
  }
  if (incomplete > 0) {
    list.notes.push_back(sayCounted(incomplete, "{0} call has people that the store names no more.",
                                    "{0} calls have people that the store names no more."));
  }
  if (undated > 0) {
    list.notes.push_back(
        sayCounted(undated, "{0} call has no date in the store that makes sense; where it would stand stays empty.",
                   "{0} calls have no date in the store that makes sense; where it would stand stays empty."));
  }
  if (endless > 0) {
    list.notes.push_back(sayCounted(endless, "{0} call has no duration in the store that makes sense; it is left out.",
                                    "{0} calls have no duration in the store that makes sense; it is left out."));
  }
}

}  // namespace

StoreResult<CallList> readCalls(const DeviceSession& session, const CallListOptions& options) {
  CallList list;
  auto lists = openLists(session, list.notes);
  if (!lists) return lists.problem();
  list.calls = mergeLists(lists.value(), list.balance);
  if (auto problem = checkUnchanged(lists.value())) return *problem;
  notePeriod(list);

  CallNames names(session.findPerson(), options.region);
  for (Call& call : list.calls) names.name(call);
  select(list.calls, options, list.balance);
  if (!list.balance.holds()) {
    return StoreProblem{
        say("'{0}' is damaged: {1} calls were counted and {2} read; copy it again from the device or backup.",
            lists.value().front().snapshot.shownPath(), list.balance.inLists, list.balance.read)};
  }
  putInOrder(list.calls, options.newestFirst);
  if (options.person && list.calls.empty()) {
    list.notes.push_back(say("No call that was asked for is with '{0}'.", *options.person));
  }
  noteOddities(list);
  std::map<std::string, std::string> shown;
  for (const Call& call : list.calls) {
    for (const CallPerson& person : call.people) shown.emplace(person.address, person.name);
  }
  for (std::string& note : notesOnSharedAddresses(session.contacts(), shown)) list.notes.push_back(std::move(note));
  return list;
}

}  // namespace chatsum::device
