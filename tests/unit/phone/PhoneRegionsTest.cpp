#include "platform/system/phone/PhoneRegions.h"

#include <gtest/gtest.h>
#include <phonenumbers/phonenumberutil.h>

#include <map>
#include <set>
#include <string>

namespace chatsum::platform::system {
namespace {

using i18n::phonenumbers::PhoneNumberUtil;

TEST(PhoneRegions, AgreesWithLibphonenumber) {
  const auto& util = *PhoneNumberUtil::GetInstance();
  std::set<std::string> names;
  util.GetSupportedRegions(&names);
  EXPECT_GT(names.size(), 200u);
  for (const std::string& name : names) {
    const PhoneRegion* region = phoneRegionNamed(name);
    ASSERT_TRUE(region) << name;
    EXPECT_EQ(region->callingCode, util.GetCountryCodeForRegion(name)) << name;
    std::string trunk;
    util.GetNddPrefixForRegion(name, true, &trunk);
    EXPECT_EQ(region->trunkPrefix, trunk) << name;
    const std::string code = std::to_string(region->callingCode) + "0";
    EXPECT_EQ(callingCodeLength(code[0] - '0', code[1] - '0'), static_cast<int>(code.size()) - 1) << name;
    // Regions that share a code share the trunk prefix, so any of them may stand for the code.
    ASSERT_TRUE(phoneRegionWithCallingCode(region->callingCode));
    EXPECT_EQ(phoneRegionWithCallingCode(region->callingCode)->trunkPrefix, trunk) << name;
  }
}

TEST(PhoneRegions, FindsNamesInAnyCase) {
  ASSERT_TRUE(phoneRegionNamed("fr"));
  EXPECT_EQ(phoneRegionNamed("fr")->callingCode, 33);
  EXPECT_EQ(phoneRegionNamed(""), nullptr);
  EXPECT_EQ(phoneRegionNamed("XX"), nullptr);
  EXPECT_EQ(phoneRegionNamed("FRA"), nullptr);
  EXPECT_EQ(phoneRegionWithCallingCode(999), nullptr);
}

TEST(PhoneRegions, KnowsHowForeignNumbersAreDialled) {
  EXPECT_EQ(internationalPrefix(phoneRegionNamed("US")), "011");
  EXPECT_EQ(internationalPrefix(phoneRegionNamed("FR")), "00");
  EXPECT_EQ(internationalPrefix(phoneRegionNamed("AU")), "0011");
  EXPECT_EQ(internationalPrefix(phoneRegionNamed("JP")), "010");
  EXPECT_EQ(internationalPrefix(phoneRegionNamed("RU")), "810");
  EXPECT_EQ(internationalPrefix(nullptr), "00");
}

}  // namespace
}  // namespace chatsum::platform::system
