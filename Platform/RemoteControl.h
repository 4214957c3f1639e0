// Commands from outside the process: they drive the application on a desktop without a tray, and from key bindings of
// the user's own.
//
// Threads: main thread only; the handler is called there, from the event loop.
// Failure: values. On a desktop that offers no way in, everything else works as before.
#pragma once

#include <chrono>
#include <expected>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Error.h"

namespace platform {

struct RemoteReply {
  int status = 0;      // exit status of the asking process
  std::string output;  // for its standard output, or for its standard error when the status is not 0
  friend bool operator==(const RemoteReply&, const RemoteReply&) = default;
};

class RemoteControl {
 public:
  using Completion = std::function<void(RemoteReply)>;
  // Receives the words of one command and calls the completion once, now or later.
  using Handler = std::function<void(const std::vector<std::string>& arguments, Completion completion)>;

  enum class Claim {
    first,        // commands reach the handler from now on
    taken,        // another instance is already running
    unavailable,  // there is no way in; where that is unusual, the adapter has told the user
  };

  virtual ~RemoteControl() = default;
  virtual Claim claim(Handler handler) = 0;
  // Tells every process that waits for a reply that the user is being asked something first. Harmless when none waits.
  virtual void announceQuestion() = 0;
};

// A command may wait for the user to answer an alert.
inline constexpr std::chrono::milliseconds untilAnswered = std::chrono::milliseconds::max();

// Defined by the adapter that is linked in. Sends a command to the running instance and waits for its reply, without
// connecting to a display. An error when no instance is running, or none answers within the limit. `onQuestion` is
// called, once or more, when the reply may have to wait for the user.
std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& arguments,
                                                        std::chrono::milliseconds limit = untilAnswered,
                                                        const std::function<void()>& onQuestion = {});

}  // namespace platform
