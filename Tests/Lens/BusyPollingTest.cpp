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

void expectStaysAwake(const BusyPolling& polling) {
  EXPECT_EQ(polling.patience(), BusyPolling::longestAnswer);
  EXPECT_FALSE(polling.isStream());
}

void expectGathers(const BusyPolling& polling) {
  EXPECT_EQ(polling.patience(), 0ns);
  EXPECT_TRUE(polling.isStream());
}

void expectJustSleeps(const BusyPolling& polling) {
  EXPECT_EQ(polling.patience(), 0ns);
  EXPECT_FALSE(polling.isStream());
}

TEST(BusyPolling, SleepsAtFirst) { expectJustSleeps(BusyPolling()); }

TEST(BusyPolling, StaysAwakeOnceTwoEndsHaveTakenTurnsForAWhile) {
  expectJustSleeps(afterTurns(BusyPolling::eventsOfSeries - 1));
  expectStaysAwake(afterTurns(BusyPolling::eventsOfSeries));
  expectStaysAwake(afterTurns(manyEvents));
}

TEST(BusyPolling, SleepsWhileAnswersAreSlow) {
  expectJustSleeps(afterTurns(manyEvents, BusyPolling::longestAnswer + 1ns));
  expectJustSleeps(afterStream(manyEvents, BusyPolling::longestAnswer + 1ns));
}

TEST(BusyPolling, SleepsAgainAfterOneSlowAnswer) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(server, 33ms);
  expectJustSleeps(polling);
  polling.noteTurn(client, 50us);
  expectJustSleeps(polling);
}

TEST(BusyPolling, SleepsAndGathersWhileOnlyOneEndSpeaks) {
  expectJustSleeps(afterStream(BusyPolling::eventsOfSeries - 1));
  expectGathers(afterStream(BusyPolling::eventsOfSeries));
  expectGathers(afterStream(manyEvents));
}

TEST(BusyPolling, ADialogueEndsWhenOneEndGoesOnSpeakingOrAnythingElseHappens) {
  BusyPolling polling = afterTurns(manyEvents);
  polling.noteTurn(client, 10us);
  expectGathers(polling);
  polling = afterTurns(manyEvents);
  polling.noteOther(10us);
  expectGathers(polling);
}

TEST(BusyPolling, StaysAwakeWhileALongAnswerGoesBy) {
  BusyPolling polling;
  polling.noteTurn(server, 33ms);
  polling.notePassing(Passing::longReply);
  expectStaysAwake(polling);
  // Its next part, with which it ends.
  polling.noteTurn(server, 10us);
  polling.notePassing(Passing::shortMessages);
  expectJustSleeps(polling);
}

TEST(BusyPolling, StaysAwakeForAShortWhileAmidALongRequestEvenInADialogue) {
  for (BusyPolling polling : {BusyPolling(), afterTurns(manyEvents), afterStream(manyEvents)}) {
    polling.noteTurn(client, 10us);
    polling.notePassing(Passing::longRequest);
    EXPECT_EQ(polling.patience(), BusyPolling::longestPause);
    EXPECT_FALSE(polling.isStream());
  }
}

// An answer in many parts, amid which the client may be slow to take them.
TEST(BusyPolling, ATurnIsAsLongAsItsMessage) {
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
      expectJustSleeps(polling);
    }
  }
}

}  // namespace
}  // namespace platform::x11::lens
