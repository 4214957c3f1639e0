// What lies beneath all windows, without a wallpaper and around a small one: each compositing manager paints that in
// its own way.
#include "Platform/Linux/Compositor/Wallpaper.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "Platform/Linux/Scene/Redirection.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::compositor {
namespace {

constexpr xcb::PixelRect wholeScreen{0, 0, 400, 300};
constexpr std::uint32_t rootColor = 0x204060;
constexpr std::uint32_t grey = 0x808080;
constexpr std::uint32_t black = 0x000000;
constexpr std::uint32_t wallpaperColor = 0x556677;
constexpr std::uint32_t edgeColor = 0x33ccaa;

class WallpaperTest : public ::testing::Test {
 protected:
  WallpaperTest() {
    scene::redirectSubwindows(*keeper);
    EXPECT_TRUE(keeper->synchronize(10'000));
    client.setBackground(client.root(), rootColor);
    client.sync();
  }

  // Takes over the screen from its present owner.
  void claimToComposite(const std::string& name, const std::string& version) {
    const auto window = client.createWindow({.mapped = false});
    if (!name.empty()) client.setText(window, "WM_NAME", "STRING", name);
    if (!version.empty()) client.setText(window, "COMPTON_VERSION", "STRING", version);
    xcb_set_selection_owner(client.connection(), window, client.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
    client.sync();
  }

  std::uint32_t shownAt(int x, int y) {
    composition->update();
    return composition->picture().at(x, y);
  }
  std::uint32_t shown() { return shownAt(200, 150); }

  // With a different colour at its right edge.
  void setSmallWallpaper() {
    const xcb_pixmap_t wallpaper = xcb_generate_id(client.connection());
    xcb_create_pixmap(client.connection(), 24, wallpaper, client.root(), 60, 40);
    client.fill(wallpaper, {0, 0, 50, 40}, wallpaperColor);
    client.fill(wallpaper, {50, 0, 10, 40}, edgeColor);
    client.setNumbers(client.root(), "_XROOTPMAP_ID", "PIXMAP", {wallpaper});
    client.sync();
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  // Stands in for the process's main connection, which lives as long as the process.
  std::unique_ptr<xcb::Connection> keeper = connectTo(server.display());
  std::optional<Composition> composition;
};

TEST_F(WallpaperTest, WithoutOneCompositingManagersPaintBlack) {
  claimToComposite("", "");
  composition.emplace(server.display(), wholeScreen);
  EXPECT_EQ(shown(), black);
}

TEST_F(WallpaperTest, WithoutOneOldCompositingManagersPaintGrey) {
  composition.emplace(server.display(), wholeScreen);
  ASSERT_EQ(shown(), rootColor);
  const auto takenOver = [&](const std::string& name, const std::string& version) {
    claimToComposite(name, version);
    return shown();
  };
  EXPECT_EQ(takenOver("picom", "v9.1"), grey);
  EXPECT_EQ(takenOver("picom", "v10.2"), black);
  EXPECT_EQ(takenOver("xcompmgr", ""), grey);
  EXPECT_EQ(takenOver("picom", "v12.5"), black);
  EXPECT_EQ(takenOver("compton", "7.0"), grey);
  EXPECT_EQ(takenOver("picom", "v13"), black);
  EXPECT_EQ(takenOver("picom", "v9-git"), grey);
  EXPECT_EQ(takenOver("picom", "vgit-1a2b3"), black);
}

TEST_F(WallpaperTest, ASmallOneIsRepeatedOrSpreadOrLeftAlone) {
  setSmallWallpaper();
  composition.emplace(server.display(), wholeScreen);
  const auto takenOver = [&](const std::string& name, const std::string& version) {
    claimToComposite(name, version);
    EXPECT_EQ(shownAt(20, 20), wallpaperColor);
    EXPECT_EQ(shownAt(55, 20), edgeColor);
    return shownAt(80, 60);
  };
  EXPECT_EQ(takenOver("", ""), wallpaperColor);
  EXPECT_EQ(takenOver("picom", "v12.5"), edgeColor);
  EXPECT_EQ(takenOver("picom", "v9.1"), wallpaperColor);
  EXPECT_EQ(takenOver("picom", "v13"), black);
  EXPECT_EQ(takenOver("xcompmgr", ""), wallpaperColor);
}

// Waits until a compositing manager paints the screen differently from the root window.
void expectTheScreen(support::XClient& client, Composition& composition) {
  EXPECT_TRUE(support::waitUntil([&] {
    composition.update();
    const auto screen = client.screenshot(wholeScreen);
    return screen.at(200, 150) != rootColor && composition.picture() == screen;
  })) << std::hex
      << composition.picture().at(200, 150) << " instead of " << client.screenshot(wholeScreen).at(200, 150);
}

TEST_F(WallpaperTest, WithoutOneTheScreenLooksAsPicomPaintsIt) {
  composition.emplace(server.display(), wholeScreen);
  const support::CompositingManager picom(server.display());
  expectTheScreen(client, *composition);
}

TEST_F(WallpaperTest, WithoutOneTheScreenLooksAsXfwm4PaintsIt) {
  composition.emplace(server.display(), wholeScreen);
  const support::WindowManager xfwm4(server.display(), support::WindowManager::Kind::compositingXfwm4);
  expectTheScreen(client, *composition);
}

}  // namespace
}  // namespace platform::linux::compositor
