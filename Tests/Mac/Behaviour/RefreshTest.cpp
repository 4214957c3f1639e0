// The look at the window list every one and a half seconds, also while a menu or an alert has a loop of its own.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using RefreshTest = MacTest;

TEST_F(RefreshTest, LooksEveryOneAndAHalfSeconds) {
  coveredLive([this] {
    EXPECT_EQ(world.capture.requests.size(), 1U);
    fake::advance(1.4);
    EXPECT_EQ(world.capture.requests.size(), 1U);
    fake::advance(0.2);
    EXPECT_EQ(world.capture.requests.size(), 2U);
    fake::advance(15);
    EXPECT_EQ(world.capture.requests.size(), 12U);
    EXPECT_EQ(world.streams().size(), 1U) << "the same windows, the same stream";
  });
}

TEST_F(RefreshTest, EndsWithTheCover) {
  coveredLive([this] {
    EXPECT_EQ(fake::liveTimers(), 1);
    press(keyD);
    EXPECT_EQ(fake::liveTimers(), 0);
    const auto before = world.capture.requests.size();
    fake::advance(10);
    EXPECT_EQ(world.capture.requests.size(), before);
  });
}

TEST_F(RefreshTest, AnOverlayThatComesAndGoesRestartsTheCapture) {
  coveredLive([this] {
    world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
    fake::advance(1.5);
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    EXPECT_EQ(world.streams().back().excluded, (std::vector<std::uint32_t>{9}));
    world.capture.windows.clear();
    fake::advance(1.5);
    EXPECT_EQ(world.runningStreams(), (std::vector{3}));
    EXPECT_TRUE(world.streams().back().excluded.empty());
  });
}

TEST_F(RefreshTest, AFailedLookChangesNothing) {
  coveredLive([this] {
    world.capture.content.failure = "Not now.";
    fake::advance(1.5);
    EXPECT_TRUE(wasLogged("exclusion refresh failed: Not now."));
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
    world.capture.content.failure = std::nullopt;
    fake::advance(1.5);
    EXPECT_EQ(world.capture.requests.size(), 3U);
  });
}

TEST_F(RefreshTest, GoesOnWhileAnotherLoopRuns) {
  coveredLive([this] {
    fake::setTracking(true);
    fake::advance(3.1);
    EXPECT_EQ(world.capture.requests.size(), 3U);
    fake::setTracking(false);
  });
}

}  // namespace
}  // namespace quillfade
