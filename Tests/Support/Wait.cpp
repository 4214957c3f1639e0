#include "Tests/Support/Wait.h"

#include <poll.h>

#include <algorithm>
#include <cerrno>

namespace support {

namespace {

using Clock = std::chrono::steady_clock;

int remaining(Clock::time_point end) {
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(end - Clock::now());
  return static_cast<int>(std::max<std::chrono::milliseconds::rep>(0, left.count()));
}

}  // namespace

bool waitUntil(const std::function<bool()>& predicate, std::chrono::milliseconds deadline) {
  const auto end = Clock::now() + deadline;
  int pause = 1;
  while (!predicate()) {
    const int left = remaining(end);
    if (left == 0) return predicate();
    poll(nullptr, 0, std::min(pause, left));
    pause = std::min(pause * 2, 16);
  }
  return true;
}

bool waitReadable(int descriptor, std::chrono::milliseconds deadline) {
  const auto end = Clock::now() + deadline;
  pollfd entry{descriptor, POLLIN, 0};
  while (true) {
    const int result = poll(&entry, 1, remaining(end));
    if (result > 0) return true;
    if (result == 0 || errno != EINTR) return false;
  }
}

}  // namespace support
