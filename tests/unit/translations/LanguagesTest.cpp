#include "platform/system/translations/Languages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

namespace chatsum::platform::system {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

TEST(Languages, GoFromTheParticularToTheGeneral) {
  EXPECT_THAT(languagesFor("de_AT.UTF-8", ""), ElementsAre("de_AT", "de"));
  EXPECT_THAT(languagesFor("de", ""), ElementsAre("de"));
  EXPECT_THAT(languagesFor("de_DE@euro", ""), ElementsAre("de_DE@euro", "de@euro", "de_DE", "de"));
  EXPECT_THAT(languagesFor("sr_RS.UTF-8@latin", ""), ElementsAre("sr_RS@latin", "sr@latin", "sr_RS", "sr"));
}

TEST(Languages, OfThePlainLocaleAreNone) {
  for (const char* locale : {"", "C", "POSIX", "C.UTF-8", "C.utf8", "en_US.UTF-8", "en", "en_GB"}) {
    EXPECT_THAT(languagesFor(locale, ""), IsEmpty()) << locale;
  }
  EXPECT_THAT(languagesFor("C.UTF-8", "de:fr"), IsEmpty());
  EXPECT_THAT(languagesFor("", "de"), IsEmpty());
}

TEST(Languages, ThatAreWantedGoBeforeTheLocale) {
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "ja:fr_CA"), ElementsAre("ja", "fr_CA", "fr", "de_DE", "de"));
  EXPECT_THAT(languagesFor("en_US.UTF-8", "es"), ElementsAre("es"));
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "de:de_DE"), ElementsAre("de", "de_DE"));
  EXPECT_THAT(languagesFor("de_DE.UTF-8", ":::"), ElementsAre("de_DE", "de"));
}

TEST(Languages, BehindEnglishAreNotWanted) {
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "en:fr"), IsEmpty());
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "fr:en_GB:es"), ElementsAre("fr"));
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "fr:C:es"), ElementsAre("fr"));
}

TEST(Languages, WithNamesThatCouldBePathsAreLeftOut) {
  EXPECT_THAT(languagesFor("../../etc", ""), IsEmpty());
  EXPECT_THAT(languagesFor("de_DE.UTF-8", "/tmp/x:fr/..:a b:" + std::string(1000, 'x')), ElementsAre("de_DE", "de"));
}

TEST(Languages, ComeFromTheEnvironment) {
  for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG", "LANGUAGE"}) ::unsetenv(variable);
  EXPECT_THAT(languagesFromEnvironment(), IsEmpty());
  ::setenv("LANG", "de_DE.UTF-8", 1);
  EXPECT_THAT(languagesFromEnvironment(), ElementsAre("de_DE", "de"));
  ::setenv("LC_MESSAGES", "fr_FR", 1);
  EXPECT_THAT(languagesFromEnvironment(), ElementsAre("fr_FR", "fr"));
  ::setenv("LANGUAGE", "es", 1);
  EXPECT_THAT(languagesFromEnvironment(), ElementsAre("es", "fr_FR", "fr"));
  ::setenv("LC_ALL", "", 1);
  EXPECT_THAT(languagesFromEnvironment(), ElementsAre("es", "fr_FR", "fr"));
  ::setenv("LC_ALL", "C.UTF-8", 1);
  EXPECT_THAT(languagesFromEnvironment(), IsEmpty());
}

}  // namespace
}  // namespace chatsum::platform::system
