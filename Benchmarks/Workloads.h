// What happens on the screen while it is measured.
//
// Each starts its own programs and windows in the top-left corner of the screen and ends with the object. None of their
// processor time is counted, but for what they make the X server do.
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
// 1280 x 720, drawn anew 30 times a second), "windows-N" (N windows of 160 x 120 one over the other, of which one
// changes 30 times a second).
[[nodiscard]] std::unique_ptr<Workload> makeWorkload(const std::string& name, const std::string& display);

// Where the pointer is left: whatever is typed goes to the window there.
struct PointerPlace {
  int x;
  int y;
};
inline constexpr PointerPlace pointerPlace{200, 200};

// What runs in the xterm that scrolls: prints lines until it is ended.
[[noreturn]] void printLines();

}  // namespace bench
