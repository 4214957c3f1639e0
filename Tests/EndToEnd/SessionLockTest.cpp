// A locked session, reported in each of the ways that desktops have, and the cover that stays away meanwhile.

#include <algorithm>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Linux/Session/LockServices.h"

namespace endtoend {
namespace {

class SessionLock : public DrivenDesktop {
 protected:
  void startCovered() {
    start(solidOn, {{"DBUS_SYSTEM_BUS_ADDRESS", systemBus_.address()}, {"XDG_SESSION_ID", "1"}});
    if (!showsCover()) throw std::runtime_error("There is no cover to begin with.");
  }
  // A window that covers the whole screen, as lockers have.
  xcb_window_t showLockerWindow() {
    const auto window = client_.createWindow({.frame = wholeScreenFrame, .color = 0xff000000});
    client_.sync();
    return window;
  }
  // Whether some window other than the board is mapped there; it may lie beneath others.
  [[nodiscard]] bool hasWindow(const PixelRect& place) {
    return std::ranges::any_of(client_.children(client_.root()), [&](xcb_window_t window) {
      return window != board_ && client_.isViewable(window) && client_.frame(window) == place;
    });
  }
  [[nodiscard]] bool coverStaysAway() {
    return !shows([](const Picture& screen) { return screen.at(storedArea.x, storedArea.y) != boardColor; },
                  std::chrono::milliseconds(300));
  }

  static constexpr PixelRect wholeScreenFrame{0, 0, 1280, 800};
  support::SessionBus systemBus_;
  qt::LockServices login_{systemBus_.address()};
};

TEST_F(SessionLock, TheCoverIsAwayWhileTheLoginManagerSaysThatTheSessionIsLocked) {
  startCovered();
  login_.setLockedHint(true);
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), testing::HasSubstr("\"enabled\": true"));
  login_.setLockedHint(false);
  EXPECT_TRUE(showsCover());
}

TEST_F(SessionLock, ARequestToLockHidesTheCoverBeforeAnyLockerShows) {
  startCovered();
  login_.requestLock();
  EXPECT_TRUE(showsNoCover());
  login_.requestUnlock();
  EXPECT_TRUE(showsCover());
}

TEST_F(SessionLock, ALockerThatDoesNotReportItsEndIsRecognisedByItsWindow) {
  startCovered();
  login_.requestLock();
  EXPECT_TRUE(showsNoCover());
  const auto locker = showLockerWindow();
  ASSERT_TRUE(shows([](const Picture& screen) { return screen.count(0) == std::size_t{1280} * 800; }));
  client_.destroy(locker);
  client_.sync();
  // Well before an unanswered request would be given up.
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.at(storedArea.x, storedArea.y) != boardColor; },
                    std::chrono::seconds(5)));
}

TEST_F(SessionLock, ASessionThatIsAlreadyLockedGetsItsCoverWhenItIsUnlocked) {
  login_.setLockedHint(true);
  start(solidOn, {{"DBUS_SYSTEM_BUS_ADDRESS", systemBus_.address()}, {"XDG_SESSION_ID", "1"}});
  EXPECT_TRUE(showsNoCover());
  EXPECT_TRUE(coverStaysAway());
  EXPECT_EQ(run({"toggle"}).status, 0);
  EXPECT_EQ(run({"toggle"}).status, 0);
  EXPECT_TRUE(coverStaysAway());
  login_.setLockedHint(false);
  EXPECT_TRUE(showsCover());
}

TEST_F(SessionLock, ALoginManagerThatStartsLaterOrAgainIsFollowed) {
  login_.stopLoginManager();
  startCovered();
  login_.startLoginManager();
  ASSERT_TRUE(support::waitUntil([&] { return login_.sessionRequests() > 0; }));
  login_.setLockedHint(true);
  EXPECT_TRUE(showsNoCover());
  login_.stopLoginManager();
  login_.startLoginManager();
  EXPECT_TRUE(showsNoCover());
  login_.setLockedHint(false);
  EXPECT_TRUE(showsCover());
}

TEST_F(SessionLock, AnAreaSelectionEndsWhenTheSessionIsLockedNoneBeginsAndTheCoverIsKept) {
  startCovered();
  const auto hasSelection = [&] { return hasWindow(wholeScreenFrame); };
  ASSERT_EQ(run({"select-area"}).status, 0);
  ASSERT_TRUE(support::waitUntil(hasSelection));
  login_.setLockedHint(true);
  EXPECT_TRUE(support::waitUntil([&] { return !hasSelection(); }));
  EXPECT_TRUE(becomes("\"enabled\": true"));
  EXPECT_EQ(run({"select-area"}), (Answer{1, "The session is locked.\n"}));
  EXPECT_FALSE(support::waitUntil(hasSelection, std::chrono::milliseconds(300)));
  EXPECT_THAT(status(), testing::HasSubstr("\"enabled\": true"));
  EXPECT_THAT(support::readFile(quillfade().settingsPath()), testing::HasSubstr("\"enabled\": true"));
  login_.setLockedHint(false);
  EXPECT_TRUE(showsCover());
}

class ScreenSaver : public SessionLock, public testing::WithParamInterface<const char*> {
 protected:
  qt::LockServices saver_{bus_.address()};
};

TEST_P(ScreenSaver, TheCoverIsAwayWhileItIsActiveAndBackWhenItEndsOrCrashes) {
  saver_.startScreenSaver(GetParam());
  startCovered();
  saver_.setScreenSaverActive(GetParam(), true);
  EXPECT_TRUE(showsNoCover());
  saver_.setScreenSaverActive(GetParam(), false);
  EXPECT_TRUE(showsCover());
  saver_.setScreenSaverActive(GetParam(), true);
  EXPECT_TRUE(showsNoCover());
  saver_.stopScreenSaver(GetParam());
  EXPECT_TRUE(showsCover());
}

INSTANTIATE_TEST_SUITE_P(Each, ScreenSaver,
                         testing::Values("org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                                         "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver", "org.xfce.ScreenSaver"),
                         [](const auto& service) {
                           const std::string name = service.param;
                           const auto start = name.find('.') + 1;
                           return name.substr(start, name.find('.', start) - start);
                         });

TEST_F(SessionLock, TheCoverIsAwayWhileTheServersOwnScreenSaverIsOn) {
  startCovered();
  for (const char* blanking : {"blank", "noblank"}) {
    support::runToEnd({"xset", "s", blanking}, {{"DISPLAY", server_.display()}});
    support::runToEnd({"xset", "s", "activate"}, {{"DISPLAY", server_.display()}});
    // A server that does not blank shows a window of its own, with a logo on black.
    EXPECT_TRUE(support::waitUntil([&] { return !hasWindow(storedArea); })) << blanking;
    support::runToEnd({"xset", "s", "reset"}, {{"DISPLAY", server_.display()}});
    EXPECT_TRUE(showsCover()) << blanking;
  }
}

}  // namespace
}  // namespace endtoend
