// When to ask for the next event again and again instead of sleeping until it comes.
//
// A program that waits for each answer, and a server that waits for each question, have two sleepers between them where
// there is a proxy; to wake one up takes longer than most answers do. So once two ends have promptly taken turns for a
// while, the proxy stays awake for the next turn, until one of them takes its time.
//
// A stream in one direction is no such dialogue: its ends have work for the processors that waiting would keep busy.
//
// Threads: one at a time.
#pragma once

#include <chrono>

namespace platform::x11::lens {

class BusyPolling {
 public:
  using Duration = std::chrono::nanoseconds;

  // As long as most answers take, together with waking up for them.
  static constexpr Duration longestAnswer = std::chrono::microseconds(200);
  // A program that captures a picture now and then takes fewer turns for one.
  static constexpr int turnsOfDialogue = 4;

  // How long to poll before going to sleep.
  [[nodiscard]] Duration patience() const { return turns_ < turnsOfDialogue ? Duration::zero() : longestAnswer; }

  // A descriptor that could be read, and nothing else, has ended the wait.
  void noteTurn(int descriptor, Duration waited);
  // Anything else has.
  void noteOther() { turns_ = 0; }

 private:
  int last_ = -1;
  int turns_ = 0;
};

}  // namespace platform::x11::lens
