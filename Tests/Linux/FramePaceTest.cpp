#include "Platform/Linux/X11/FramePace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace platform::x11 {
namespace {

using namespace std::chrono_literals;

class FramePaceTest : public testing::Test {
 protected:
  using Time = FramePace::Clock::time_point;

  // When a change that happens then is shown.
  Time shown(Time changed) {
    const Time now = std::max(changed, pace.due());
    pace.madeFrame(now);
    return now;
  }

  static constexpr auto interval = 30ms;
  const Time begin{1h};
  FramePace pace{interval};
};

TEST_F(FramePaceTest, TheFirstTwoChangesAfterARestAreShownAtOnce) {
  for (const Time rested : {begin, begin + 5s}) {
    EXPECT_EQ(shown(rested), rested);
    EXPECT_EQ(shown(rested + 1ms), rested + 1ms);
    EXPECT_GT(shown(rested + 2ms), rested + 2ms);
  }
}

TEST_F(FramePaceTest, ChangesWithoutEndAreShownOnceInAnInterval) {
  Time now = shown(shown(begin));
  for (int frame = 1; frame < 100; ++frame) {
    now = shown(now + 1us);
    EXPECT_EQ(now, begin + frame * interval);
  }
}

TEST_F(FramePaceTest, ChangesAsFrequentAsFramesAreAllShownAtOnceThoughTheyAreNeverQuiteOnTime) {
  constexpr std::array lateness{0us, 700us, 100us, 900us, 300us, 5'000us, 200us};
  for (int frame = 0; frame < 700; ++frame) {
    const Time changed = begin + frame * interval + lateness.at(static_cast<std::size_t>(frame) % 7);
    EXPECT_EQ(shown(changed), changed);
  }
}

TEST_F(FramePaceTest, ARestLeavesNoMoreThanOneFrameInReserve) {
  shown(begin);
  shown(begin + 1h);
  shown(begin + 1h);
  EXPECT_EQ(shown(begin + 1h), begin + 1h + interval);
}

TEST_F(FramePaceTest, AFrameThatIsLateDoesNotLetTheOthersComeMoreOften) {
  shown(begin);
  shown(begin);
  const Time late = pace.due() + 10 * interval;
  pace.madeFrame(late);
  shown(late);
  EXPECT_EQ(shown(late), late + interval);
}

TEST_F(FramePaceTest, FramesBeforeTheirTimePutOffTheNextOneByAnIntervalAtMost) {
  for (int frame = 0; frame < 20; ++frame) pace.madeFrame(begin + frame * 1ms);
  EXPECT_EQ(pace.due(), begin + 19ms + interval);
}

}  // namespace
}  // namespace platform::x11
