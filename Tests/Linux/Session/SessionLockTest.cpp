// The lock screen as the adapter hears of it, from the test's own services on the bus.

#include <gtest/gtest.h>

#include "Platform/Linux/Session/DesktopSessionLock.h"
#include "Platform/Linux/Toolkit/EventPump.h"
#include "Platform/Linux/Toolkit/QtRunLoop.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Session/LockServices.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/XClient.h"

namespace platform::linux::session {
namespace {

class SessionLockTest : public qt::Test {
 protected:
  static constexpr double patience = 0.5;
  static constexpr auto saver = "org.freedesktop.ScreenSaver";

  SessionLockTest() {
    scene_.addListener(windows_);
    const auto screen = client_.screenFrame();
    windows_.setScreens({{{0, 0, screen.width, screen.height}, 1, {}}});
    lock_.observeChanges([this] { heard_.push_back(lock_.isLocked()); });
  }
  [[nodiscard]] bool becomes(bool locked) {
    return qt::runUntil([&] { return lock_.isLocked() == locked && !heard_.empty() && heard_.back() == locked; });
  }
  // Returns once the services have answered all questions.
  void settleFirst() {
    ASSERT_TRUE(qt::runUntil([&] { return services_.sessionRequests() > 0; }));
    services_.setLockedHint(true);
    ASSERT_TRUE(becomes(true));
    services_.setLockedHint(false);
    ASSERT_TRUE(becomes(false));
    heard_.clear();
  }
  xcb_window_t showLocker() {
    const auto window = client_.createWindow({.frame = client_.screenFrame(), .color = 0xff000000});
    client_.sync();
    return window;
  }

  qt::LockServices services_{qt::busAddress()};
  support::XClient client_{qt::display()};
  std::unique_ptr<xcb::Connection> connection_ = connectTo(qt::display());
  toolkit::QtRunLoop runLoop_;
  scene::Scene scene_{*connection_};
  scene::WindowList windows_{*connection_, scene_, {}};
  DesktopSessionLock lock_{*connection_, scene_, windows_, runLoop_, patience};
  toolkit::EventPump events_{*connection_,
                             [this](const xcb_generic_event_t& event) {
                               scene_.handle(event);
                               windows_.handle(event);
                               lock_.handle(event);
                             },
                             [this] {
                               scene_.collectReplies();
                               lock_.settle();
                             }};
  std::vector<bool> heard_;
};

TEST_F(SessionLockTest, ObserversHearOfEachChangeOnce) {
  settleFirst();
  services_.setLockedHint(true);
  ASSERT_TRUE(becomes(true));
  services_.setLockedHint(true);
  services_.requestLock();
  services_.setLockedHint(false);
  ASSERT_TRUE(becomes(false));
  EXPECT_EQ(heard_, (std::vector{true, false}));
}

TEST_F(SessionLockTest, ARequestThatNothingFollowsIsGivenUp) {
  settleFirst();
  services_.requestLock();
  ASSERT_TRUE(becomes(true));
  const auto asked = std::chrono::steady_clock::now();
  ASSERT_TRUE(becomes(false));
  EXPECT_GT(std::chrono::steady_clock::now() - asked, std::chrono::milliseconds(400));
}

TEST_F(SessionLockTest, ARequestThatALockersWindowFollowsLastsAsLongAsTheWindow) {
  settleFirst();
  services_.requestLock();
  ASSERT_TRUE(becomes(true));
  const auto locker = showLocker();
  EXPECT_FALSE(qt::runUntil([&] { return !lock_.isLocked(); }, std::chrono::milliseconds(1200)));
  client_.destroy(locker);
  client_.sync();
  EXPECT_TRUE(becomes(false));
}

TEST_F(SessionLockTest, ALargeWindowThatNobodyAskedForLocksNothing) {
  settleFirst();
  const auto window = showLocker();
  EXPECT_FALSE(qt::runUntil([&] { return lock_.isLocked(); }, std::chrono::milliseconds(200)));
  client_.destroy(window);
  client_.sync();
}

TEST_F(SessionLockTest, AScreenSaverThatCrashesIsNoLongerActive) {
  settleFirst();
  services_.startScreenSaver(saver);
  services_.setScreenSaverActive(saver, true);
  ASSERT_TRUE(becomes(true));
  services_.stopScreenSaver(saver);
  EXPECT_TRUE(becomes(false));
}

TEST_F(SessionLockTest, TheServersScreenSaverCounts) {
  settleFirst();
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client_.sync();
  EXPECT_TRUE(becomes(true));
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_RESET);
  client_.sync();
  EXPECT_TRUE(becomes(false));
}

TEST_F(SessionLockTest, AServerScreenSaverThatIsAlreadyOnIsNoticed) {
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client_.sync();
  const auto connection = connectTo(qt::display());
  EXPECT_TRUE(xcb::ServerScreenSaver(*connection).isActive());
  xcb_force_screen_saver(client_.connection(), XCB_SCREEN_SAVER_RESET);
  client_.sync();
  const auto later = connectTo(qt::display());
  EXPECT_FALSE(xcb::ServerScreenSaver(*later).isActive());
}

TEST(ServerScreenSaverTest, AServerWithoutTheExtensionHasNone) {
  const support::XServer server({.arguments = {"-extension", "MIT-SCREEN-SAVER"}});
  support::XClient client(server.display());
  xcb_force_screen_saver(client.connection(), XCB_SCREEN_SAVER_ACTIVE);
  client.sync();
  const auto connection = connectTo(server.display());
  EXPECT_FALSE(xcb::ServerScreenSaver(*connection).isActive());
}

}  // namespace
}  // namespace platform::linux::session
