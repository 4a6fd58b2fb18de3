#include "hosts/desktop/app/Places.h"

#include <gtest/gtest.h>

#include <cstdlib>

namespace chatsum::desktop {
namespace {

TEST(Places, TheUsualHomeIsThatOfTheCommandLine) {
  ::setenv("XDG_DATA_HOME", "/home/alex/data", 1);
  ::setenv("XDG_CONFIG_HOME", "/home/alex/config", 1);
  const Places places = placesFor(QString());
  EXPECT_EQ(places.home, "/home/alex/data/chatsum/com.apple.MobileSMS");
  EXPECT_EQ(places.containers, device::containersIn("/home/alex/data/chatsum"));
  EXPECT_EQ(places.containers.at("com.apple.mobilephone"), "/home/alex/data/chatsum/com.apple.mobilephone");
  EXPECT_EQ(places.sample, "/home/alex/data/chatsum/sample-device");
  EXPECT_EQ(places.windowState, "/home/alex/config/chatsum/desktop.ini");
}

TEST(Places, AHomeOfItsOwnHoldsEverything) {
  const Places places = placesFor(QStringLiteral("/tmp/desk/../home/"));
  EXPECT_EQ(places.home, "/tmp/home");
  EXPECT_EQ(places.containers, (device::Containers{{"com.apple.MobileSMS", "/tmp/home"}}));
  EXPECT_EQ(places.sample, "/tmp/home/sample-device");
  EXPECT_EQ(places.windowState, "/tmp/home/desktop.ini");
}

TEST(Places, ARelativeHomeBecomesAbsolute) {
  EXPECT_TRUE(placesFor(QStringLiteral("home")).home.startsWith(QLatin1Char('/')));
}

}  // namespace
}  // namespace chatsum::desktop
