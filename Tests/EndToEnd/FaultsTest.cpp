// What happens around the cover in hours of use, all at once: storms of windows, crashing managers, monitors that come
// and go, programs that hold the server, a stopped process. Afterwards the cover is right, and there were no
// complaints.

#include <array>
#include <cstdlib>

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Linux/Scene/WindowStorm.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

class Faults : public CoveredDesktop {
 protected:
  // With the ink drawn and the cover over it.
  void coverInk() {
    drawInk();
    cover({.demonstration = false, .settings = settingsWithRegion(area)});
    ASSERT_TRUE(coverIsRight());
  }
  [[nodiscard]] bool coverIsRight() {
    return shows([&](const Picture& screen) {
             return screen.differences(clean_, area) == 0 && ink(screen, wholeScreen) > 1000;
           }) &&
           quillfade().process().isRunning() && !quillfade().process().output().contains("refused request");
  }
  void xrandr(std::vector<std::string> arguments) {
    std::vector<std::string> command{"xrandr", "--display", server_.display()};
    command.insert(command.end(), arguments.begin(), arguments.end());
    support::runToEnd(command);
  }

  const Picture clean_ = client_.screenshot();
};

// 20,000 unless the variable says otherwise.
int stormLength() {
  const char* length = std::getenv("QUILLFADE_STORM_OPERATIONS");
  return length != nullptr ? std::atoi(length) : 20'000;
}

TEST_F(Faults, AStormOfWindowsFromFourClientsLeavesTheCoverRight) {
  ASSERT_NO_FATAL_FAILURE(coverInk());
  constexpr std::size_t clientCount = 4;
  {
    std::array<std::optional<support::XClient>, clientCount> clients;
    std::array<std::optional<platform::linux::scene::WindowStorm>, clientCount> storms;
    for (unsigned i = 0; i < clientCount; ++i) {
      clients.at(i).emplace(server_.display());
      storms.at(i).emplace(*clients.at(i), 4711 + i);
    }
    for (int operation = 0; operation < stormLength(); ++operation) {
      const auto index = static_cast<std::size_t>(operation) % clientCount;
      storms.at(index)->change();
      // Now and then the others see what one has done before they go on.
      if (operation % 200 == 199) clients.at(index)->sync();
    }
    for (auto& client : clients) client->sync();
    EXPECT_TRUE(quillfade().process().isRunning()) << quillfade().process().output();
  }
  // The clients are gone with all their windows. Now and then they have sent the ink to the bottom.
  client_.lower(board_);
  client_.raise(gromit_->window());
  client_.sync();
  EXPECT_TRUE(coverIsRight()) << quillfade().process().output();
}

TEST_F(Faults, AWindowManagerThatIsKilledAndReplacedChangesNothing) {
  std::optional<support::WindowManager> manager(std::in_place, server_.display());
  const auto editor = client_.createWindow(
      {.frame = {300, 260, 300, 200}, .color = 0xff2d6a4f, .overrideRedirect = false, .mapped = false});
  client_.setClass(editor, "editor", "Editor");
  client_.map(editor);
  client_.sync();
  ASSERT_TRUE(support::waitUntil([&] { return client_.isViewable(editor); }));
  drawInk();
  cover({.demonstration = false, .settings = settingsWithRegion(area)});
  const auto showsEditor = [&] {
    return shows([](const Picture& screen) {
      return screen.count(0x2d6a4f, area) == std::size_t{300} * 200 && ink(screen, area) == 0;
    });
  };
  ASSERT_TRUE(showsEditor());
  for (const auto kind : {support::WindowManager::Kind::xfwm4, support::WindowManager::Kind::openbox}) {
    manager->kill();
    EXPECT_TRUE(showsEditor());
    manager.emplace(server_.display(), kind);
    EXPECT_TRUE(showsEditor());
  }
  client_.destroy(editor);
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x2d6a4f) == 0; }))
      << "the editor is still to be seen";
  EXPECT_TRUE(showsNoInk(area)) << support::readFile(quillfade().logPath());
  EXPECT_TRUE(quillfade().process().isRunning());
}

TEST_F(Faults, ACompositingManagerThatCrashesAgainAndAgainChangesNothing) {
  ASSERT_NO_FATAL_FAILURE(coverInk());
  for (int round = 0; round < 3; ++round) {
    support::CompositingManager compositor(server_.display());
    EXPECT_TRUE(showsNoInk(area));
    compositor.kill();
    EXPECT_TRUE(coverIsRight()) << round;
  }
}

TEST_F(Faults, MonitorsMayComeGoMoveAndResize) {
  ASSERT_NO_FATAL_FAILURE(coverInk());
  xrandr({"--setmonitor", "L", "640/170x800/210+0+0", "screen"});
  xrandr({"--setmonitor", "R", "640/170x800/210+640+0", "none"});
  EXPECT_TRUE(coverIsRight());
  xrandr({"--delmonitor", "R"});
  xrandr({"--delmonitor", "L"});
  xrandr({"--setmonitor", "L", "500/170x800/210+0+0", "screen"});
  xrandr({"--setmonitor", "R", "780/170x800/210+500+0", "none"});
  EXPECT_TRUE(coverIsRight());
  xrandr({"--delmonitor", "R"});
  xrandr({"--delmonitor", "L"});
  // One above the other: the area moves with the bottom edge of the primary monitor.
  xrandr({"--setmonitor", "T", "1280/340x400/105+0+0", "screen"});
  xrandr({"--setmonitor", "B", "1280/340x400/105+0+400", "none"});
  const PixelRect onTop{area.x, 0, area.width, 160};
  EXPECT_TRUE(showsNoInk(onTop));
  xrandr({"--delmonitor", "T"});
  xrandr({"--delmonitor", "B"});
  EXPECT_TRUE(coverIsRight());
}

TEST_F(Faults, AnotherClientThatHoldsTheServerOnlyDelaysTheCover) {
  ASSERT_NO_FATAL_FAILURE(coverInk());
  support::XClient holder(server_.display());
  xcb_grab_server(holder.connection());
  const auto window = holder.createWindow({.frame = {300, 300, 100, 100}, .color = 0xff00ff00});
  holder.sync();
  // Longer than a refresh, during which the program can get no reply.
  EXPECT_FALSE(quillfade().process().waitForExit(milliseconds(2500))) << quillfade().process().output();
  xcb_ungrab_server(holder.connection());
  holder.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x00ff00, area) == std::size_t{100} * 100; }));
  holder.destroy(window);
  holder.sync();
  EXPECT_TRUE(coverIsRight());
}

TEST_F(Faults, PointerAndKeyboardHeldByAnotherClientDoNotMatter) {
  drawInk();
  support::XClient holder(server_.display());
  ASSERT_TRUE(holder.grabPointer());
  ASSERT_TRUE(holder.grabKeyboard());
  cover({.demonstration = false, .settings = settingsWithRegion(area)});
  EXPECT_TRUE(coverIsRight());
}

TEST_F(Faults, AProcessThatWasStoppedCatchesUpAndBlocksNobody) {
  ASSERT_NO_FATAL_FAILURE(coverInk());
  quillfade().process().signal(SIGSTOP);
  // Thousands of changes that the stopped program does not read; the server and its other clients go on.
  support::XClient busy(server_.display());
  const auto window = busy.createWindow({.frame = {260, 240, 200, 200}, .color = 0xff2d6a4f});
  for (int step = 0; step < 5000; ++step) {
    busy.move(window, 260 + step % 200, 240 + step % 90);
    busy.fill(window, {0, 0, 200, 200}, 0xff000000U | static_cast<std::uint32_t>(step));
    if (step % 100 == 0) busy.sync();
  }
  busy.setBackground(window, 0xff1b4332);
  busy.fill(window, {0, 0, 200, 200}, 0xff1b4332);
  busy.sync();
  quillfade().process().signal(SIGCONT);
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x1b4332, area) == std::size_t{200} * 200; }));
  busy.destroy(window);
  busy.sync();
  EXPECT_TRUE(coverIsRight());
}

}  // namespace
}  // namespace endtoend
