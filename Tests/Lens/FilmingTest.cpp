// A program that films the screen through a lens: only its reads cost anything.

#include <gtest/gtest.h>

#include <chrono>

#include "Tests/Lens/OpenLens.h"
#include "Tests/Support/ProcessState.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

using support::XClient;
using Clock = std::chrono::steady_clock;

constexpr int steps = 20;

class Filming : public testing::Test {
 protected:
  // How often the lens wakes up while a window moves about, each step of which the server reports to it.
  std::size_t wakeUpsOfMovements() {
    const std::size_t before = support::wakeUps(open_.process().id());
    for (int step = 0; step < steps; ++step) {
      client_.move(window_, 100 + step, 100);
      client_.sync();
    }
    return support::wakeUps(open_.process().id()) - before;
  }

  support::XServer server_;
  XClient client_{server_.display()};
  xcb_window_t window_ = client_.createWindow({.frame = {100, 100, 50, 50}, .color = 0xff336699});
  OpenLens open_{server_.display()};
};

TEST_F(Filming, BetweenTwoReadsScreenChangesDoNotWakeTheLens) {
  const auto program = open_.connect();
  const auto isUndisturbed = [&] {
    const auto begin = Clock::now();
    EXPECT_EQ(program->screenshot().at(100, 100), client_.screenshot().at(100, 100));
    // The lens may only just be going to sleep.
    const bool isQuiet = wakeUpsOfMovements() <= 1;
    // Inconclusive if the machine took so long that the program no longer counts as filming.
    return isQuiet && Clock::now() - begin < std::chrono::seconds(1);
  };
  EXPECT_TRUE(support::waitUntil(isUndisturbed));
}

TEST_F(Filming, OnceNobodyReadsAnyMoreTheLensHandlesEvents) {
  const auto program = open_.connect();
  (void)program->screenshot();
  EXPECT_TRUE(support::waitUntil([&] { return wakeUpsOfMovements() >= steps / 2; }));
  EXPECT_EQ(program->screenshot(), client_.screenshot());
}

}  // namespace
}  // namespace lens
