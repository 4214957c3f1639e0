// Commands from outside the process, so that a desktop without a tray and anyone's own key bindings can drive the
// application.
//
// Threads: main thread only; the handler is called there, from the event loop.
// Failure: values. A desktop that offers no way in leaves everything else as it is.
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
  int status = 0;      // what the asking process ends with
  std::string output;  // for its standard output, or for its standard error when the status is not 0
  friend bool operator==(const RemoteReply&, const RemoteReply&) = default;
};

class RemoteControl {
 public:
  using Completion = std::function<void(RemoteReply)>;
  // Receives the words of one command and calls the completion once, now or later.
  using Handler = std::function<void(const std::vector<std::string>& arguments, Completion completion)>;

  enum class Claim {
    first,        // commands come to the handler from now on
    taken,        // another instance runs already
    unavailable,  // there is no way in; where that is unusual, the adapter has told the user
  };

  virtual ~RemoteControl() = default;
  virtual Claim claim(Handler handler) = 0;
  // Tells every process that waits for a reply that the user is being asked something first. Harmless when none does.
  virtual void announceQuestion() = 0;
};

// A command may wait for the user to answer an alert.
inline constexpr std::chrono::milliseconds untilAnswered = std::chrono::milliseconds::max();

// Defined by the adapter that is linked in. Hands a command to the running instance and waits for its reply, without
// connecting to a display; an error when there is no running instance, or none that answers within the limit.
// `onQuestion` is called, once or more, when the reply may have to wait for the user.
std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& arguments,
                                                        std::chrono::milliseconds limit = untilAnswered,
                                                        const std::function<void()>& onQuestion = {});

}  // namespace platform
