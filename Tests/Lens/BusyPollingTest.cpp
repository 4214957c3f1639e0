#include "Platform/Linux/Lens/BusyPolling.h"

#include <gtest/gtest.h>

namespace platform::x11::lens {
namespace {

using namespace std::chrono_literals;

constexpr int client = 5;
constexpr int server = 6;
constexpr int composing = 7;

// The client speaks last.
BusyPolling afterTurns(int turns, BusyPolling::Duration waited = 50us) {
  BusyPolling polling;
  for (int turn = turns; turn > 0; --turn) polling.noteTurn(turn % 2 == 0 ? server : client, waited);
  return polling;
}

TEST(BusyPolling, SleepsAtFirst) { EXPECT_EQ(BusyPolling().patience(), 0ns); }

TEST(BusyPolling, StaysAwakeOnceTwoEndsHaveTakenTurnsForAWhile) {
  EXPECT_EQ(afterTurns(BusyPolling::turnsOfDialogue - 1).patience(), 0ns);
  EXPECT_EQ(afterTurns(BusyPolling::turnsOfDialogue).patience(), BusyPolling::longestAnswer);
  EXPECT_EQ(afterTurns(1000).patience(), BusyPolling::longestAnswer);
}

TEST(BusyPolling, SleepsWhileAnswersAreSlow) {
  EXPECT_EQ(afterTurns(1000, BusyPolling::longestAnswer + 1ns).patience(), 0ns);
}

TEST(BusyPolling, SleepsAgainAfterOneSlowAnswer) {
  BusyPolling polling = afterTurns(1000);
  polling.noteTurn(server, 33ms);
  EXPECT_EQ(polling.patience(), 0ns);
  polling.noteTurn(client, 50us);
  EXPECT_EQ(polling.patience(), 0ns);
}

TEST(BusyPolling, SleepsWhileOnlyOneEndSpeaks) {
  BusyPolling polling = afterTurns(1000);
  for (int message = 0; message < 1000; ++message) {
    polling.noteTurn(client, 10us);
    EXPECT_EQ(polling.patience(), 0ns);
  }
}

TEST(BusyPolling, SleepsAgainWhenAnythingElseHappens) {
  BusyPolling polling = afterTurns(1000);
  polling.noteOther();
  EXPECT_EQ(polling.patience(), 0ns);
}

TEST(BusyPolling, SleepsBetweenThirtyPicturesASecond) {
  BusyPolling polling;
  for (int picture = 0; picture < 30; ++picture) {
    polling.noteTurn(client, 33ms);
    for (const int answering : {server, composing, server}) {
      polling.noteTurn(answering, 50us);
      EXPECT_EQ(polling.patience(), 0ns);
    }
  }
}

}  // namespace
}  // namespace platform::x11::lens
