// The X server of a Wayland session ends, and another one takes its place, as when Xwayland crashes.

#include "Tests/Holes/HolesDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

class HolesOnANewServer : public HolesDesktop {
 protected:
  // The number must be free again: the old server is gone once this process has seen its end.
  void replaceServer() {
    server_.kill();
    second_.emplace(support::XServerOptions{.arguments = {server_.display()}});
    newClient_.emplace(second_->display());
  }
  void makePaneThere() {
    const auto pane =
        newClient_->createWindow({.frame = wholeScreen, .color = 0xffff00ff, .depth = 32, .mapped = false});
    newClient_->setInputShape(pane, {});
    newClient_->map(pane);
    newClient_->sync();
  }
  // Ink everywhere but in the area.
  [[nodiscard]] bool isCoveredThere() {
    return showsOn(
        *newClient_,
        [](const Picture& screen) { return isFull(screen, {0, 0, 1280, area.y}) && ink(screen, area) == 0; },
        support::defaultDeadline);
  }

  std::optional<support::XServer> second_;
  std::optional<support::XClient> newClient_;
};

TEST_F(HolesOnANewServer, TheProgramGoesOnThereAndTheCoverIsOn) {
  makePane();
  auto& quillfade = cover(inWaylandSession());
  ASSERT_TRUE(shows([](const Picture& screen) { return ink(screen, area) == 0; }));
  const pid_t process = quillfade.process().id();
  replaceServer();
  makePaneThere();
  EXPECT_TRUE(isCoveredThere()) << quillfade.process().output();
  EXPECT_TRUE(quillfade.process().isRunning());
  EXPECT_EQ(quillfade.process().id(), process);
  EXPECT_THAT(quillfade.process().output(), HasSubstr("Quillfade waits for the next one."));
  press("toggle", 2);
  EXPECT_TRUE(showsOn(
      *newClient_, [](const Picture& screen) { return isFull(screen, wholeScreen); }, support::defaultDeadline));
}

TEST_F(HolesOnANewServer, OneThatIsKilledAfterAllHasItsHolesClosedByItsGuard) {
  makePane();
  auto& quillfade = cover(inWaylandSession());
  replaceServer();
  makePaneThere();
  ASSERT_TRUE(isCoveredThere());
  quillfade.process().kill();
  EXPECT_TRUE(showsOn(
      *newClient_, [](const Picture& screen) { return isFull(screen, wholeScreen); }, support::defaultDeadline));
}

TEST_F(HolesOnANewServer, WithoutOneTheProgramEndsAfterAWhile) {
  auto& quillfade = cover(inWaylandSession());
  server_.kill();
  EXPECT_EQ(quillfade.process().waitForExit(std::chrono::seconds(30)), 1);
  EXPECT_THAT(quillfade.process().output(), HasSubstr("cannot be reached"));
}

}  // namespace
}  // namespace endtoend
