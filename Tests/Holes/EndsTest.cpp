// However the program ends, the ink comes back.

#include <csignal>
#include <filesystem>
#include <fstream>

#include "Platform/Linux/Holes/HoleCutter.h"
#include "Tests/Holes/HolesDesktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;
namespace fs = std::filesystem;

class HolesEnds : public HolesDesktop {
 protected:
  // The guards of this display.
  [[nodiscard]] std::vector<pid_t> guards() const {
    std::vector<pid_t> found;
    for (const auto& process : fs::directory_iterator("/proc")) {
      if (process.path().filename().string().find_first_not_of("0123456789") != std::string::npos) continue;
      if (support::readFile(process.path() / "comm") != "quillfade-guard\n") continue;
      // In another network namespace, the number is another server's.
      std::error_code hasGone;
      if (fs::read_symlink(process.path() / "ns/net", hasGone) != fs::read_symlink("/proc/self/ns/net")) continue;
      const std::string variables = '\0' + support::readFile(process.path() / "environ");
      if (variables.contains('\0' + std::string("DISPLAY=") + server_.display() + '\0'))
        found.push_back(static_cast<pid_t>(std::stol(process.path().filename().string())));
    }
    return found;
  }
  // Ink that was drawn once, by a program that never draws it again.
  xcb_window_t makeInkThatIsNotDrawnAgain() {
    const auto pane = makePane();
    const std::uint32_t none = XCB_BACK_PIXMAP_NONE;
    xcb_change_window_attributes(client_.connection(), pane, XCB_CW_BACK_PIXMAP, &none);
    client_.fill(pane, {300, 300, 200, 100}, 0xff00ff00);
    client_.sync();
    return pane;
  }
};

TEST_F(HolesEnds, WhenTheProgramIsKilledTheInkIsBackWithinASecondAndTheGuardIsGone) {
  drawInk();
  const Picture inked = client_.screenshot();
  const auto own = shape(gromit_->window());
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  ASSERT_EQ(guards().size(), 1U);
  quillfade.process().kill();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen == inked; }, milliseconds(1000)));
  EXPECT_TRUE(isGivenBack(gromit_->window(), own));
  EXPECT_TRUE(support::waitUntil([&] { return guards().empty(); }));
}

TEST_F(HolesEnds, WhenTheGuardIsKilledTooTheNextStartBringsTheInkBack) {
  const auto pane = makePane();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(shows([](const Picture& screen) { return ink(screen, area) == 0; }));
  for (const pid_t guard : guards()) ::kill(guard, SIGKILL);
  ASSERT_TRUE(support::waitUntil([&] { return guards().empty(); }));
  quillfade.process().kill();
  EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, area) > 0; }, milliseconds(1000)));
  auto options = inWaylandSession();
  options.settings = R"({"enabled": false})";
  const support::QuillfadeProgram next(QUILLFADE_EXECUTABLE, server_.display(), options);
  EXPECT_TRUE(shows([](const Picture& screen) { return isFull(screen, wholeScreen); }));
  EXPECT_TRUE(isGivenBack(pane));
}

TEST_F(HolesEnds, AnOrderlyEndTakesTheGuardAlong) {
  makePane();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_EQ(guards().size(), 1U);
  quillfade.process().terminate();
  EXPECT_TRUE(support::waitUntil([&] { return guards().empty(); }));
}

TEST_F(HolesEnds, TheGuardGoesWithTheDisplay) {
  makePane();
  cover(inWaylandSession());
  ASSERT_EQ(guards().size(), 1U);
  server_.kill();
  EXPECT_TRUE(support::waitUntil([&] { return guards().empty(); }));
}

TEST_F(HolesEnds, InAnX11SessionThereIsNoGuard) {
  makePane();
  cover({.demonstration = false, .settings = settingsWithRegion(area), .environment = {{"XDG_SESSION_TYPE", "x11"}}});
  EXPECT_TRUE(guards().empty());
}

TEST_F(HolesEnds, InkThatIsNotDrawnAgainByItsProgramComesBackAllTheSame) {
  const support::CompositingManager compositor(server_.display());
  const Picture clean = client_.screenshot();
  const auto pane = makeInkThatIsNotDrawnAgain();
  ASSERT_TRUE(shows([](const Picture& screen) { return screen.count(0x00ff00) == 200 * 100; }));
  const Picture inked = client_.screenshot();
  cover(inWaylandSession());
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; }));
  for (int times = 0; times < 5; ++times) {
    pressToggle();
    ASSERT_TRUE(shows([&](const Picture& screen) { return screen == inked; })) << times;
    pressToggle();
    ASSERT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, area) == 0; })) << times;
  }
  pressToggle();
  EXPECT_TRUE(isGivenBack(pane));
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen == inked; }));
}

TEST_F(HolesEnds, InkThatItsProgramWipedMeanwhileDoesNotComeBack) {
  const support::CompositingManager compositor(server_.display());
  const Picture clean = client_.screenshot();
  drawInk();
  if (areStrokesLostInInk()) GTEST_SKIP() << "This gromit-mpx fills its whole window with ink.";
  cover(inWaylandSession());
  ASSERT_TRUE(showsNoInk(area));
  gromit_->clear();
  ASSERT_TRUE(shows([](const Picture& screen) { return ink(screen, wholeScreen) == 0; }));
  pressToggle();
  EXPECT_TRUE(isGivenBack(gromit_->window()));
  EXPECT_FALSE(shows([](const Picture& screen) { return ink(screen, wholeScreen) > 0; }, milliseconds(1000)));
  EXPECT_EQ(client_.screenshot().differences(clean, {20, 20, 1240, 760}), 0U);
}

}  // namespace
}  // namespace endtoend
