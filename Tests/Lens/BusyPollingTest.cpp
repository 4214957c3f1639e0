#include "Platform/Linux/Lens/BusyPolling.h"

#include <gtest/gtest.h>

namespace platform::linux::lens {
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

BusyPolling afterStream(int messages) {
  BusyPolling polling;
  for (int message = 0; message < messages; ++message) polling.noteTurn(client, 10us);
  return polling;
}

void expectStaysAwake(const BusyPolling& polling) { EXPECT_EQ(polling.patience(), BusyPolling::longestAnswer); }

void expectSleeps(const BusyPolling& polling) { EXPECT_EQ(polling.patience(), 0ns); }

TEST(BusyPolling, SleepsAtFirst) { expectSleeps(BusyPolling()); }

TEST(BusyPolling, StaysAwakeOnceTwoEndsHaveTakenTurnsForAWhile) {
  expectSleeps(afterTurns(BusyPolling::eventsOfSeries - 1));
  expectStaysAwake(afterTurns(BusyPolling::eventsOfSeries));
  expectStaysAwake(afterTurns(manyEvents));
}

TEST(BusyPolling, SleepsWhileAnswersAreSlow) { expectSleeps(afterTurns(manyEvents, BusyPolling::longestAnswer + 1ns)); }

TEST(BusyPolling, SleepsAgainAfterOneSlowAnswer) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(server, 33ms);
  expectSleeps(polling);
  polling.noteTurn(client, 50us);
  expectSleeps(polling);
}

TEST(BusyPolling, SleepsWhileOnlyOneEndSpeaks) {
  expectSleeps(afterStream(BusyPolling::eventsOfSeries));
  expectSleeps(afterStream(manyEvents));
}

TEST(BusyPolling, ADialogueEndsWhenOneEndGoesOnSpeakingOrAnythingElseHappens) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(client, 10us);
  expectSleeps(polling);
  polling = afterTurns(manyEvents);
  polling.noteOther(10us);
  expectSleeps(polling);
}

TEST(BusyPolling, StaysAwakeWhileALongReplyPasses) {
  BusyPolling polling;
  polling.noteTurn(server, 33ms);
  polling.notePassing(Passing::longReply);
  expectStaysAwake(polling);
  // The reply's next part, which is its last.
  polling.noteTurn(server, 10us);
  polling.notePassing(Passing::shortMessages);
  expectSleeps(polling);
}

TEST(BusyPolling, StaysAwakeForAShortWhileAmidALongRequestEvenInADialogue) {
  for (BusyPolling polling : {BusyPolling(), afterTurns(manyEvents), afterStream(manyEvents)}) {
    polling.noteTurn(client, 10us);
    polling.notePassing(Passing::longRequest);
    EXPECT_EQ(polling.patience(), BusyPolling::longestPause);
  }
}

// A reply in many parts, while the client may be slow to read them.
TEST(BusyPolling, ALongMessageIsOneTurn) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(server, 50us);
  for (int part = 0; part < 30; ++part) {
    polling.notePassing(Passing::longReply);
    if (part % 3 == 0) {
      polling.noteOther(10us);
    } else {
      polling.noteTurn(server, 10us);
    }
  }
  polling.noteTurn(client, 50us);
  expectStaysAwake(polling);
}

TEST(BusyPolling, SleepsBetweenThirtyPicturesASecond) {
  BusyPolling polling;
  for (int picture = 0; picture < 30; ++picture) {
    polling.noteTurn(client, 33ms);
    for (const int answering : {server, composing, server}) {
      polling.noteTurn(answering, 50us);
      expectSleeps(polling);
    }
  }
}

}  // namespace
}  // namespace platform::linux::lens
