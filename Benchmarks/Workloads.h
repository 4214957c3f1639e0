// What happens on the screen during a measurement.
//
// Each workload starts its own programs and windows in the top-left corner of the screen, and ends with the object. Its
// own processor time does not count, only what it makes the X server do.
// Threads: one; the windows change on threads of their own.
#pragma once

#include <memory>
#include <string>
#include <vector>

namespace bench {

class Workload {
 public:
  virtual ~Workload() = default;
};

// "idle", "typing" (20 characters a second in xterm), "scrolling" (30 lines a second in xterm), "video" (a window of
// 1280 x 720, redrawn 30 times a second), "windows-N" (N windows of 160 x 120 stacked on each other, one of which
// changes 30 times a second).
[[nodiscard]] std::unique_ptr<Workload> makeWorkload(const std::string& name, const std::string& display);

// Where the pointer is left: typed keys go to the window there.
struct PointerPlace {
  int x;
  int y;
};
inline constexpr PointerPlace pointerPlace{200, 200};

// What runs in the xterm that scrolls: prints lines until it is ended.
[[noreturn]] void printLines();

}  // namespace bench
