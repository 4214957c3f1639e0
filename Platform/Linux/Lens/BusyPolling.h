// When to ask for the next event again and again instead of sleeping until it comes.
//
// Where there is a proxy, it sleeps and is woken up between two programs that hand things to each other, which takes
// longer than most answers do. So while two ends promptly take turns, or a long message goes by, the proxy stays awake:
// nobody has anything to do before it has passed on what comes.
//
// In a stream of short messages both ends are at work. There the proxy sleeps: what has piled up until it has woken up
// goes on in one piece, which wakes up others less often.
//
// Threads: one at a time.
#pragma once

#include <chrono>
#include <cstdint>

namespace platform::linux::lens {

// What the bytes that were passed on last belong to.
enum class Passing : std::uint8_t { shortMessages, longRequest, longReply };

class BusyPolling {
 public:
  using Duration = std::chrono::nanoseconds;

  // As long as most answers take, together with waking up for them.
  static constexpr Duration longestAnswer = std::chrono::microseconds(200);
  // As long as a program takes for the next piece of a long request. One that takes longer has lost its processor, as
  // may have the server, and gets it back sooner when nobody else is awake.
  static constexpr Duration longestPause = std::chrono::microseconds(10);
  // A program that captures a picture now and then causes fewer events for one.
  static constexpr int eventsOfSeries = 4;

  // How long to poll before going to sleep.
  [[nodiscard]] Duration patience() const;

  // A descriptor that could be read, and nothing else, has ended the wait.
  void noteTurn(int descriptor, Duration waited);
  // Anything else has.
  void noteOther(Duration waited);
  // What came then has been passed on.
  void notePassing(Passing passing) { passing_ = passing; }

 private:
  int last_ = -1;
  int turns_ = 0;       // that two ends have promptly taken
  int shortWaits_ = 0;  // up to now
  Passing passing_ = Passing::shortMessages;
};

}  // namespace platform::linux::lens
