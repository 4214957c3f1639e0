// Where nobody has seen how the system behaves, both ways end well. The beliefs and their sources stand in
// Fakes/World.h.
#include <cstdlib>

#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

class BothWaysTest : public MacTest, public testing::WithParamInterface<bool> {};

INSTANTIATE_TEST_SUITE_P(Beliefs, BothWaysTest, testing::Bool(), [](const auto& parameter) {
  return parameter.param ? "AsBelieved" : "OtherwiseThanBelieved";
});

// With the action first, the closing menu presents what the action has presented already: two windows show the same.
TEST_P(BothWaysTest, AChoiceInTheMenuCovers) {
  world.beliefs.menuClosesBeforeAction = GetParam();
  launched([this] {
    choose("Whole Screen");
    ASSERT_FALSE(shownFrames().empty());
    EXPECT_LE(shownFrames().size(), 2U);
    for (const auto& frame : shownFrames()) EXPECT_EQ(frame, (platform::Rect{{0, 0}, {1440, 900}}));
    press(keyD);
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_TRUE(world.runningStreams().empty());
    EXPECT_EQ(fake::liveTimers(), 0);
  });
}

TEST_P(BothWaysTest, AChoiceInTheMenuUncovers) {
  world.beliefs.menuClosesBeforeAction = GetParam();
  coveredLive([this] {
    choose("Hide Annotations");
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_TRUE(world.runningStreams().empty());
    EXPECT_EQ(world.bar()->symbol, "pencil");
  });
}

TEST_P(BothWaysTest, ASelectionFromTheMenuStarts) {
  world.beliefs.menuClosesBeforeAction = GetParam();
  coveredLive([this] {
    choose("Select Area…");
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    EXPECT_EQ(world.windowsOnScreen().front().level, 1000);
    EXPECT_TRUE(world.pressKey(53));
    fake::settle();
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_P(BothWaysTest, ALookFromTheMenuCovers) {
  world.beliefs.menuClosesBeforeAction = GetParam();
  coveredLive([this] {
    choose("Solid cover");
    EXPECT_EQ(world.windowsOnScreen().back().background, "window background");
    EXPECT_TRUE(world.runningStreams().empty());
    choose("Show Outline");
    EXPECT_TRUE(world.windowsOnScreen().back().content.subviews.empty());
    choose("Hide Annotations");
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_P(BothWaysTest, AStreamEndsAndTellsWhoeverHoldsItsDelegate) {
  world.beliefs.streamHoldsDelegateWeakly = GetParam();
  coveredLive([this] {
    world.endStream(1, "The display went to sleep.");
    fake::settle();
    EXPECT_TRUE(wasLogged("stream stopped: The display went to sleep."));
    press(keyD);
    press(keyD);
    deliver(2, {.number = 4});
    EXPECT_EQ(framesShown(), (std::vector{4}));
  });
}

TEST_P(BothWaysTest, ARunningStreamIsKeptByUs) {
  world.beliefs.systemKeepsRunningStreams = GetParam();
  coveredLive([this] {
    EXPECT_TRUE(world.streams().front().isAlive);
    deliver(1, {.number = 1});
    EXPECT_EQ(framesShown(), (std::vector{1}));
    world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
    fake::advance(1.6);
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    press(keyD);
    EXPECT_FALSE(world.streams().front().isAlive);
    EXPECT_FALSE(world.streams().back().isAlive);
  });
}

using TerminationDeathTest = MacTest;

// As on a Mac, where `terminate:` ends the process from inside the menu's action, and globals go while the run loop is
// still on the stack.
TEST_F(TerminationDeathTest, QuittingEndsTheProcessWithSuccess) {
  GTEST_FLAG_SET(death_test_style, "threadsafe");
  EXPECT_EXIT(
      {
        world.beliefs.terminateExits = true;
        coveredLive([this] {
          choose("Quit Quillfade");
          std::abort();
        });
      },
      testing::ExitedWithCode(EXIT_SUCCESS), "");
}

}  // namespace
}  // namespace quillfade
