#include "Platform/Linux/Scene/StackKeeper.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::scene {
namespace {

using namespace std::chrono_literals;
using Move = StackKeeper::Move;

constexpr xcb_window_t ours = 1;
constexpr xcb_window_t rival = 2;
constexpr xcb_window_t other = 3;
constexpr xcb_window_t locker = 4;
constexpr xcb::PixelRect here{100, 100, 400, 300};
constexpr xcb::PixelRect elsewhere{800, 100, 100, 100};
constexpr xcb::PixelRect monitor{0, 0, 1280, 800};

StackedWindow own(xcb_window_t id = ours, const xcb::PixelRect& frame = here) { return {id, frame, true, false}; }
StackedWindow foreign(xcb_window_t id = rival, const xcb::PixelRect& frame = here) { return {id, frame, false, false}; }
StackedWindow lock() { return {locker, monitor, false, true}; }

class StackKeeperRules : public testing::Test {
 protected:
  StackKeeperRules() { keeper_.keepOnTop(ours); }

  std::vector<Move> moves(const std::vector<StackedWindow>& stack, StackKeeper::Duration time) {
    last_ = keeper_.decide(stack, start_ + time);
    return last_.moves;
  }
  std::optional<StackKeeper::Duration> again() const {
    return last_.again ? std::optional(*last_.again - start_) : std::nullopt;
  }

  StackKeeper keeper_;
  StackKeeper::TimePoint start_ = StackKeeper::TimePoint{} + 1h;
  StackKeeper::Decision last_;
};

const std::vector<Move> none;
const std::vector<Move> aboveRival{{ours, XCB_STACK_MODE_ABOVE, rival}};

TEST_F(StackKeeperRules, OnTopNothingMoves) {
  EXPECT_EQ(moves({foreign(), own()}, 0s), none);
  EXPECT_EQ(again(), std::nullopt);
}

TEST_F(StackKeeperRules, AWindowThatCoversOursIsOvertakenAtOnce) {
  EXPECT_EQ(moves({own(), foreign()}, 0s), aboveRival);
}

TEST_F(StackKeeperRules, AWindowThatDoesNotTouchOursMayLieAbove) {
  EXPECT_EQ(moves({own(), foreign(rival, elsewhere)}, 0s), none);
  EXPECT_EQ(moves({own(), foreign(rival, {500, 100, 100, 100})}, 0s), none) << "neighbours share an edge only";
}

TEST_F(StackKeeperRules, OtherWindowsOfThisProgramMayLieAbove) {
  EXPECT_EQ(moves({own(), own(other)}, 0s), none);
  EXPECT_EQ(moves({own(), foreign(), own(other)}, 0s), aboveRival) << "and stay there";
}

TEST_F(StackKeeperRules, OfSeveralTheTopmostIsOvertaken) {
  EXPECT_EQ(moves({own(), foreign(), foreign(other)}, 0s), (std::vector<Move>{{ours, XCB_STACK_MODE_ABOVE, other}}));
}

TEST_F(StackKeeperRules, AWindowThatIsNotOnTheScreenIsLeftAlone) { EXPECT_EQ(moves({foreign()}, 0s), none); }

TEST_F(StackKeeperRules, AReleasedWindowIsLeftAlone) {
  keeper_.release(ours);
  EXPECT_EQ(moves({own(), foreign()}, 0s), none);
}

TEST_F(StackKeeperRules, AgainstTheSameRivalRaisesBecomeRarerUpToFiveSeconds) {
  const std::vector stack{own(), foreign()};
  std::vector<StackKeeper::Duration> raises;
  for (StackKeeper::Duration time = 0s; time < 30s; time += 10ms) {
    if (!moves(stack, time).empty()) raises.push_back(time);
  }
  const std::vector<StackKeeper::Duration> expected{0s,     250ms,   750ms,   1750ms,  3750ms,
                                                    7750ms, 12750ms, 17750ms, 22750ms, 27750ms};
  EXPECT_EQ(raises, expected);
}

TEST_F(StackKeeperRules, TheNextDecisionIsAskedForWhenTheWaitIsOver) {
  const std::vector stack{own(), foreign()};
  EXPECT_FALSE(moves(stack, 0s).empty());
  EXPECT_EQ(again(), std::nullopt);
  EXPECT_TRUE(moves(stack, 10ms).empty());
  EXPECT_EQ(again(), 250ms);
  EXPECT_FALSE(moves(stack, 250ms).empty());
  EXPECT_TRUE(moves(stack, 260ms).empty());
  EXPECT_EQ(again(), 750ms);
}

TEST_F(StackKeeperRules, ANewRivalWaitsForOnlyAQuarterOfASecond) {
  const std::vector stack{own(), foreign()};
  for (const auto time : {0ms, 250ms, 750ms, 1750ms}) EXPECT_FALSE(moves(stack, time).empty());
  const std::vector both{own(), foreign(), foreign(other)};
  EXPECT_TRUE(moves(both, 1800ms).empty());
  EXPECT_EQ(again(), 2s);
  EXPECT_FALSE(moves(both, 2s).empty());
}

TEST_F(StackKeeperRules, ARivalThatWentAwayStartsAfresh) {
  const std::vector stack{own(), foreign()};
  for (const auto time : {0ms, 250ms, 750ms}) EXPECT_FALSE(moves(stack, time).empty());
  EXPECT_TRUE(moves({own()}, 800ms).empty());
  EXPECT_FALSE(moves(stack, 1000ms).empty());
  EXPECT_FALSE(moves(stack, 1250ms).empty());
}

TEST_F(StackKeeperRules, NothingIsRaisedAboveALocker) {
  EXPECT_EQ(moves({own(), lock()}, 0s), none);
  EXPECT_EQ(moves({own(), lock(), foreign()}, 0s), none) << "nor above what lies over it";
  EXPECT_EQ(moves({own(), foreign(), lock()}, 1s), aboveRival) << "but still up to it";
}

TEST_F(StackKeeperRules, AWindowAboveALockerGoesBeneathIt) {
  EXPECT_EQ(moves({lock(), own()}, 0s), (std::vector<Move>{{ours, XCB_STACK_MODE_BELOW, locker}}));
  EXPECT_EQ(lowestLocker(std::vector{foreign(), lock(), own()}), locker);
  EXPECT_EQ(lowestLocker(std::vector{foreign(), own()}), std::nullopt);
}

// A connection and everything that keeps a window on top, as the program runs it.
class Keeper {
 public:
  explicit Keeper(const std::string& display) : connection_(connectTo(display)), scene_(*connection_) {
    scene_.addListener(list_);
    list_.setScreens({{.pixels = monitor, .scale = 1, .points = {{0, 0}, {1280, 800}}}});
    window_ = connection_->newId();
    const std::uint32_t overrideRedirect = 1;
    xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, window_, connection_->root(), 100, 100, 400, 300, 0,
                      XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, XCB_CW_OVERRIDE_REDIRECT,
                      &overrideRedirect);
    xcb_map_window(connection_->get(), window_);
    EXPECT_TRUE(connection_->synchronize(5000));
    keeper_.keepOnTop(window_);
  }

  void run() {
    while (const xcb::Event event = connection_->nextEvent()) {
      scene_.handle(*event);
      list_.handle(*event);
    }
    scene_.collectReplies();
    const auto stack = viewableStack(scene_, list_);
    for (const Move& move : keeper_.decide(stack, std::chrono::steady_clock::now()).moves) {
      apply(*connection_, move);
      ++moves_;
    }
    connection_->flush();
  }

  [[nodiscard]] xcb_window_t window() const { return window_; }
  [[nodiscard]] int moves() const { return moves_; }

 private:
  std::unique_ptr<xcb::Connection> connection_;
  Scene scene_;
  WindowList list_{*connection_, scene_, {connection_->resourceBase()}};
  StackKeeper keeper_;
  xcb_window_t window_;
  int moves_ = 0;
};

TEST(StackKeeperOnX, ARaisedWindowIsOvertaken) {
  const support::XServer server;
  support::XClient client(server.display());
  Keeper keeper(server.display());
  const xcb_window_t window = client.createWindow({.frame = {200, 200, 300, 300}});
  client.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    keeper.run();
    return keeper.moves() == 1 && client.children(client.root()).back() == keeper.window();
  }));
  client.raise(window);
  client.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    keeper.run();
    return keeper.moves() == 2 && client.children(client.root()).back() == keeper.window();
  }));
}

TEST(StackKeeperOnX, TwoKeepersOfDifferentProgramsDoNotLoop) {
  const support::XServer server;
  Keeper first(server.display());
  Keeper second(server.display());
  const auto start = std::chrono::steady_clock::now();
  ASSERT_TRUE(support::waitUntil([&] {
    first.run();
    second.run();
    return std::chrono::steady_clock::now() - start > 2s;
  }));
  // 0, 250, 750 and 1750 ms for each.
  EXPECT_GE(first.moves() + second.moves(), 2) << "they do compete";
  EXPECT_LE(first.moves(), 4);
  EXPECT_LE(second.moves(), 4);
}

TEST(StackKeeperOnX, ALockerStaysOnTop) {
  const support::XServer server;
  support::XClient client(server.display());
  Keeper keeper(server.display());
  const xcb_window_t screenLock = client.createWindow({.frame = monitor});
  client.sync();
  // A rival that comes and goes shows that the keeper is at work.
  const xcb_window_t rivalWindow = client.createWindow({.frame = {200, 200, 300, 300}});
  client.restack(rivalWindow, XCB_STACK_MODE_BELOW, screenLock);
  client.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    keeper.run();
    return keeper.moves() >= 1 &&
           client.children(client.root()) == std::vector{rivalWindow, keeper.window(), screenLock};
  }));
  // If somebody raises our window above the locker, it goes back.
  client.raise(keeper.window());
  client.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    keeper.run();
    return client.children(client.root()) == std::vector{rivalWindow, keeper.window(), screenLock};
  }));
}

}  // namespace
}  // namespace platform::linux::scene
