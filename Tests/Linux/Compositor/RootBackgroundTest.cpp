// A background of the root window that changes without notice.
#include "Platform/Linux/Compositor/RootBackground.h"

#include <gtest/gtest.h>

#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::compositor {
namespace {

class RootBackgroundTest : public ::testing::Test {
 protected:
  RootBackgroundTest() {
    scene::redirectSubwindows(*connection);
    client.setBackground(client.root(), 0x204060);
    client.sync();
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  std::unique_ptr<xcb::Connection> connection = connectTo(server.display());
};

TEST_F(RootBackgroundTest, ANewBackgroundIsNoticedOnceEvenIfWindowsHideIt) {
  client.createWindow({.frame = {0, 0, 400, 300}, .color = 0x998877});
  client.sync();
  RootBackground background(*connection);
  EXPECT_FALSE(background.hasChanged());
  client.setBackground(client.root(), 0x204061);
  client.sync();
  EXPECT_TRUE(background.hasChanged());
  EXPECT_FALSE(background.hasChanged());
  client.setBackgroundChecks(client.root(), 50, 0x204061, 0x000000);
  client.sync();
  EXPECT_TRUE(background.hasChanged());
}

TEST_F(RootBackgroundTest, NobodySeesTheCheck) {
  RootBackground background(*connection);
  EXPECT_TRUE(connection->synchronize(10'000));
  const auto before = client.screenshot();
  client.selectInput(client.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY | XCB_EVENT_MASK_EXPOSURE);
  client.sync();
  EXPECT_FALSE(background.hasChanged());
  client.sync();
  EXPECT_EQ(xcb_poll_for_event(client.connection()), nullptr);
  EXPECT_EQ(client.screenshot(), before);
}

TEST_F(RootBackgroundTest, AWallpaperThatIsAskedForAnewIsPainted) {
  client.createWindow({.frame = {100, 100, 50, 50}, .color = 0x00ff00});
  client.sync();
  Composition composition(server.display(), {0, 0, 400, 300});
  composition.update();
  client.setBackground(client.root(), 0x707172);
  client.sync();
  EXPECT_FALSE(composition.update()) << "nothing tells";
  composition.compositor().forgetWallpaper();
  EXPECT_TRUE(composition.update());
  EXPECT_EQ(composition.picture().differences(client.screenshot()), 0U);
}

}  // namespace
}  // namespace platform::linux::compositor
