// When to poll for the next event again and again instead of sleeping until it comes.
//
// Between two programs that take turns, a sleeping proxy has to be woken each time, which takes longer than most
// replies. So while two ends promptly take turns, or a long message passes, the proxy stays awake: nobody has anything
// to do before it has passed on what comes.
//
// In a stream of short messages both ends are busy, so there the proxy sleeps. What has piled up when it wakes goes on
// in one piece, which wakes others less often.
//
// Threads: one at a time.
#pragma once

#include <chrono>
#include <cstdint>

namespace platform::linux::lens {

// What the last bytes passed on belong to.
enum class Passing : std::uint8_t { shortMessages, longRequest, longReply };

class BusyPolling {
 public:
  using Duration = std::chrono::nanoseconds;

  // As long as most replies take, including the wake-up.
  static constexpr Duration longestAnswer = std::chrono::microseconds(200);
  // As long as a program takes for the next piece of a long request. If it takes longer, it or the server has probably
  // lost its processor, and gets it back sooner when nobody else is awake.
  static constexpr Duration longestPause = std::chrono::microseconds(10);
  // A program that captures a picture now and then causes fewer events than this for each.
  static constexpr int eventsOfSeries = 4;

  // How long to poll before going to sleep.
  [[nodiscard]] Duration patience() const;

  // A readable descriptor, and nothing else, ended the wait.
  void noteTurn(int descriptor, Duration waited);
  // Anything else ended the wait.
  void noteOther(Duration waited);
  // What came then has been passed on.
  void notePassing(Passing passing) { passing_ = passing; }

 private:
  int last_ = -1;
  int turns_ = 0;       // taken promptly by the two ends
  int shortWaits_ = 0;  // in a row until now
  Passing passing_ = Passing::shortMessages;
};

}  // namespace platform::linux::lens
