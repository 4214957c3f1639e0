// When to ask for the next event again and again instead of sleeping until it comes.
//
// Where there is a proxy, it sleeps and is woken up between two programs that hand things to each other, which takes
// longer than most answers do. So while events promptly follow each other, the proxy stays awake for the next one:
//
// - While two ends take turns, or a long message goes by, it keeps its processor: nobody has anything to do before it
//   has passed on what comes.
// - In a stream of short messages both ends are at work, and it lets others have the processor: what they send
//   meanwhile comes in larger pieces.
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
  static constexpr Duration longestPause = std::chrono::microseconds(60);
  // A program that captures a picture now and then causes fewer events for one.
  static constexpr int eventsOfSeries = 4;

  // How long to poll before going to sleep.
  [[nodiscard]] Duration patience() const;
  // Whether not to let others have the processor meanwhile.
  [[nodiscard]] bool keepsProcessor() const { return turns_ >= eventsOfSeries || isLong_; }

  // A descriptor that could be read, and nothing else, has ended the wait.
  void noteTurn(int descriptor, Duration waited);
  // Anything else has.
  void noteOther(Duration waited);
  // What came then belongs to a long message.
  void noteLongMessage() { isLong_ = true; }

 private:
  int last_ = -1;
  int turns_ = 0;        // that two ends have promptly taken
  int shortWaits_ = 0;   // up to now
  bool isLong_ = false;  // whether a long message goes by
};

}  // namespace platform::x11::lens
