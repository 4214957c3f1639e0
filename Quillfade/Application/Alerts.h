// The application's alerts, one at a time: a second one would lie on top of the first and take its keys.
//
// Threads: main thread only. While an alert waits for its answer, everything else goes on.
#pragma once

#include <optional>
#include <vector>

#include "Platform/Platform.h"

namespace quillfade {

class Alerts {
 public:
  explicit Alerts(platform::Platform& platform) : platform_(platform) {}

  // Shows the alert in front of all applications, in the user's language, and waits for the answer. If another alert is
  // already waiting, brings that one to the front instead and returns nothing.
  std::optional<int> ask(const platform::Alert& alert);
  // The same, for an alert whose answer does not matter. If another alert is waiting, this one is shown after it.
  void tell(const platform::Alert& alert);

 private:
  int show(const platform::Alert& alert);
  void showPostponed();

  platform::Platform& platform_;
  bool isShowing_ = false;
  std::vector<platform::Alert> postponed_;
};

}  // namespace quillfade
