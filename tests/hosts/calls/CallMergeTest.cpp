#include "hosts/device/calls/CallMerge.h"

#include <gtest/gtest.h>

#include <string>

namespace chatsum::device {
namespace {

Call callWith(std::string id, double date, std::string address, CallDirection direction = CallDirection::kIncoming) {
  Call call;
  call.date = Date{date};
  call.uniqueId = std::move(id);
  call.direction = direction;
  call.people.push_back({.address = std::move(address)});
  return call;
}

TEST(CallMerge, KnowsACallByItsIdentifier) {
  CallMerge merge;
  merge.add({callWith("A", 100, "5550142"), callWith("B", 200, "5550142")});
  merge.add({callWith("B", 201, "555-0143"), callWith("C", 200, "5550142")});
  EXPECT_EQ(merge.duplicates(), 1U);
  ASSERT_EQ(merge.calls().size(), 3U);
  EXPECT_EQ(merge.calls()[1].date, Date{200});  // the first list's entry stays
  EXPECT_EQ(merge.calls()[2].uniqueId, "C");
}

TEST(CallMerge, KnowsACallWithoutIdentifierByTimeAddressAndDirection) {
  CallMerge merge;
  merge.add({callWith("A", 100.75, "+1 (555) 010-0142"), callWith("", 300, "Maya@Example.com")});
  merge.add({callWith("", 100, "5550100142"),                            // the same, in whole seconds
             callWith("", 101, "5550100142"),                            // another second
             callWith("", 100, "5550100143"),                            // another number
             callWith("", 100, "5550100142", CallDirection::kOutgoing),  // another direction
             callWith("D", 300.25, "maya@example.com")});                // the earlier list has no identifier
  EXPECT_EQ(merge.duplicates(), 2U);
  EXPECT_EQ(merge.calls().size(), 5U);
}

TEST(CallMerge, KeepsCallsOfDifferentIdentifiersApart) {
  CallMerge merge;
  merge.add({callWith("A", 100, "5550142")});
  merge.add({callWith("B", 100, "5550142")});
  EXPECT_EQ(merge.duplicates(), 0U);
}

TEST(CallMerge, NeverDropsACallOfTheSameList) {
  CallMerge merge;
  merge.add({callWith("A", 100, "5550142"), callWith("A", 100, "5550142"), callWith("", 100, "5550142")});
  EXPECT_EQ(merge.calls().size(), 3U);
  // Each entry is found once.
  merge.add({callWith("A", 100, "5550142"), callWith("A", 100, "5550142"), callWith("", 100, "5550142"),
             callWith("", 100, "5550142")});
  EXPECT_EQ(merge.duplicates(), 3U);
  EXPECT_EQ(merge.calls().size(), 4U);
}

TEST(CallMerge, DoesNotGuessWithoutADate) {
  Call undated = callWith("", 0, "5550142");
  undated.date.reset();
  CallMerge merge;
  merge.add({undated});
  merge.add({undated});
  EXPECT_EQ(merge.duplicates(), 0U);
}

TEST(CallMerge, IsQuickWhereEverythingLooksTheSame) {
  constexpr std::size_t kMany = 20'000;
  const std::vector<Call> list(kMany, callWith("A", 100, "5550142"));
  CallMerge merge;
  merge.add(list);
  merge.add(list);
  EXPECT_EQ(merge.duplicates(), kMany);
  EXPECT_EQ(merge.calls().size(), kMany);
}

}  // namespace
}  // namespace chatsum::device
