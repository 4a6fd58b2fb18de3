#include "hosts/device/report/TimeZone.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "hosts/device/report/TimeRange.h"

namespace chatsum::device {
namespace {

TEST(TimeZone, ThatIsKnownIsTakenFromThenOn) {
  ASSERT_TRUE(setTimeZone("Europe/Berlin"));
  EXPECT_EQ(timeZoneName(), "Europe/Berlin");
  EXPECT_EQ(isoTime(Date{1'711'846'800}), "2024-03-31T03:00:00+02:00");
}

TEST(TimeZone, ThatIsNotKnownChangesNothing) {
  ASSERT_TRUE(setTimeZone("Asia/Tokyo"));
  for (const std::string name : {"Europe/Nowhere", "", "/etc/localtime", "../zoneinfo/UTC", "Europe", "tomorrow"}) {
    EXPECT_FALSE(setTimeZone(name)) << name;
  }
  EXPECT_EQ(timeZoneName(), "Asia/Tokyo");
}

TEST(TimeZone, OfGreenwichIsCalledUtc) {
  ASSERT_TRUE(setTimeZone("UTC"));
  EXPECT_EQ(timeZoneName(), "UTC");
}

}  // namespace
}  // namespace chatsum::device
