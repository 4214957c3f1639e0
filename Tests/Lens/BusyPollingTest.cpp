#include "Platform/Linux/Lens/BusyPolling.h"

#include <gtest/gtest.h>

namespace platform::x11::lens {
namespace {

using namespace std::chrono_literals;

constexpr int client = 5;
constexpr int server = 6;
constexpr int composing = 7;

constexpr int manyEvents = 1000;

// The client speaks last.
BusyPolling afterTurns(int turns, BusyPolling::Duration waited = 50us) {
  BusyPolling polling;
  for (int turn = turns; turn > 0; --turn) polling.noteTurn(turn % 2 == 0 ? server : client, waited);
  return polling;
}

BusyPolling afterStream(int messages, BusyPolling::Duration waited = 10us) {
  BusyPolling polling;
  for (int message = 0; message < messages; ++message) polling.noteTurn(client, waited);
  return polling;
}

void expectKeepsProcessor(const BusyPolling& polling) {
  EXPECT_EQ(polling.patience(), BusyPolling::longestAnswer);
  EXPECT_TRUE(polling.keepsProcessor());
}

void expectLetsOthersRun(const BusyPolling& polling) {
  EXPECT_EQ(polling.patience(), BusyPolling::longestPause);
  EXPECT_FALSE(polling.keepsProcessor());
}

TEST(BusyPolling, SleepsAtFirst) { EXPECT_EQ(BusyPolling().patience(), 0ns); }

TEST(BusyPolling, KeepsTheProcessorOnceTwoEndsHaveTakenTurnsForAWhile) {
  EXPECT_EQ(afterTurns(BusyPolling::eventsOfSeries - 1).patience(), 0ns);
  expectKeepsProcessor(afterTurns(BusyPolling::eventsOfSeries));
  expectKeepsProcessor(afterTurns(manyEvents));
}

TEST(BusyPolling, SleepsWhileAnswersAreSlow) {
  EXPECT_EQ(afterTurns(manyEvents, BusyPolling::longestAnswer + 1ns).patience(), 0ns);
  EXPECT_EQ(afterStream(manyEvents, BusyPolling::longestAnswer + 1ns).patience(), 0ns);
}

TEST(BusyPolling, SleepsAgainAfterOneSlowAnswer) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(server, 33ms);
  EXPECT_EQ(polling.patience(), 0ns);
  polling.noteTurn(client, 50us);
  EXPECT_EQ(polling.patience(), 0ns);
}

TEST(BusyPolling, LetsOthersRunWhileOnlyOneEndSpeaks) {
  EXPECT_EQ(afterStream(BusyPolling::eventsOfSeries - 1).patience(), 0ns);
  expectLetsOthersRun(afterStream(BusyPolling::eventsOfSeries));
  expectLetsOthersRun(afterStream(manyEvents));
}

TEST(BusyPolling, ADialogueEndsWhenOneEndGoesOnSpeakingOrAnythingElseHappens) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(client, 10us);
  expectLetsOthersRun(polling);
  polling = afterTurns(manyEvents);
  polling.noteOther(10us);
  expectLetsOthersRun(polling);
}

TEST(BusyPolling, KeepsTheProcessorWhileALongMessageGoesBy) {
  BusyPolling polling;
  polling.noteTurn(client, 33ms);
  polling.noteLongMessage();
  expectKeepsProcessor(polling);
  // Its next part, with which it ends.
  polling.noteTurn(client, 10us);
  EXPECT_EQ(polling.patience(), 0ns);
}

// An answer in many parts, amid which the client may be slow to take them.
TEST(BusyPolling, ATurnIsAsLongAsItsMessage) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(server, 50us);
  for (int part = 0; part < 30; ++part) {
    polling.noteLongMessage();
    if (part % 3 == 0) {
      polling.noteOther(10us);
    } else {
      polling.noteTurn(server, 10us);
    }
  }
  polling.noteTurn(client, 50us);
  expectKeepsProcessor(polling);
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
