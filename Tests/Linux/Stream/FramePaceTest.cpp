#include "Platform/Linux/Stream/FramePace.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <random>
#include <vector>

namespace platform::linux::stream {
namespace {

using namespace std::chrono_literals;

class FramePaceTest : public testing::Test {
 protected:
  using Time = FramePace::Clock::time_point;

  // When a change made at this time is shown.
  Time shown(Time changed) {
    const Time now = std::max(changed, pace.due());
    pace.madeFrame(now);
    return now;
  }

  static constexpr auto interval = 40ms;
  const Time begin{1h};
  FramePace pace{interval};
};

// As streams are paced.
constexpr auto thirtieth = std::chrono::nanoseconds(1s) / 30;

// When changes are shown that come this often, with a rest now and then.
std::vector<FramePace::Clock::time_point> shownTimes(std::chrono::nanoseconds meanGap, unsigned seed) {
  FramePace pace(thirtieth);
  std::mt19937 random(seed);
  std::exponential_distribution<double> gap(1 / static_cast<double>(meanGap.count()));
  std::vector<FramePace::Clock::time_point> times;
  FramePace::Clock::time_point now{1h};
  for (int frame = 0; frame < 5'000; ++frame) {
    now += std::chrono::nanoseconds(static_cast<std::int64_t>(gap(random)));
    if (random() % 50 == 0) now += std::chrono::milliseconds(random() % 300);
    now = std::max(now, pace.due());
    pace.madeFrame(now);
    times.push_back(now);
  }
  return times;
}

TEST_F(FramePaceTest, NoSecondHasMoreThanThirtyFrames) {
  for (const auto meanGap : {1us, 1'000us, 10'000us, 30'000us, 33'333us, 34'000us, 50'000us}) {
    const auto times = shownTimes(meanGap, static_cast<unsigned>(meanGap.count()));
    for (std::size_t frame = 30; frame < times.size(); ++frame)
      ASSERT_GE(times[frame] - times[frame - 30], 1s)
          << "frame " << frame << ", a change every " << meanGap.count() << " us";
  }
}

TEST_F(FramePaceTest, EndlessChangesBringThirtyFramesASecond) {
  const auto times = shownTimes(1us, 1);
  EXPECT_LT(times.back() - times.front(), 5'000 * thirtieth + 100 * 300ms);
  FramePace busy(thirtieth);
  Time now = begin;
  for (int frame = 0; frame < 300; ++frame) busy.madeFrame(now = std::max(now, busy.due()));
  EXPECT_LE(now - begin, 10s);
}

TEST_F(FramePaceTest, WithoutAnIntervalThereIsNoLimit) {
  FramePace unlimited(0ms);
  for (int frame = 0; frame < 1'000; ++frame) {
    EXPECT_LE(unlimited.due(), begin);
    unlimited.madeFrame(begin);
  }
}

TEST_F(FramePaceTest, TheFirstTwoChangesAfterARestAreShownAtOnce) {
  for (const Time rested : {begin, begin + 5s}) {
    EXPECT_EQ(shown(rested), rested);
    EXPECT_EQ(shown(rested + 1ms), rested + 1ms);
    EXPECT_GT(shown(rested + 2ms), rested + 2ms);
  }
}

TEST_F(FramePaceTest, EndlessChangesAreShownOncePerInterval) {
  Time now = shown(shown(begin));
  for (int frame = 1; frame < 100; ++frame) {
    now = shown(now + 1us);
    // Within a second, this makes up for the frame that came at once.
    EXPECT_EQ(now, begin + (frame * interval < 1s - interval ? frame : frame + 1) * interval);
  }
}

TEST_F(FramePaceTest, ChangesAsFrequentAsFramesAreAllShownAndNoneWaitsLongerThanTheLatestOfThemWasLate) {
  constexpr std::array lateness{0us, 700us, 100us, 900us, 300us, 5'000us, 200us};
  for (int frame = 0; frame < 700; ++frame) {
    const Time changed = begin + frame * interval + lateness.at(static_cast<std::size_t>(frame) % 7);
    const Time now = shown(changed);
    EXPECT_LE(now, begin + frame * interval + 5ms);
    // In the first second at once, although they are never quite on time.
    if (frame * interval < 1s) {
      EXPECT_EQ(now, changed);
    }
  }
}

TEST_F(FramePaceTest, ARestLeavesNoMoreThanOneFrameInReserve) {
  shown(begin);
  shown(begin + 1h);
  shown(begin + 1h);
  EXPECT_EQ(shown(begin + 1h), begin + 1h + interval);
}

TEST_F(FramePaceTest, ALateFrameDoesNotMakeTheOthersComeMoreOften) {
  shown(begin);
  shown(begin);
  const Time late = pace.due() + 10 * interval;
  pace.madeFrame(late);
  shown(late);
  EXPECT_EQ(shown(late), late + interval);
}

}  // namespace
}  // namespace platform::linux::stream
