// Keeps our windows above everything that other programs show, except above a locked screen.
//
// Anybody can raise a window at any time, so staying on top means raising again. Two programs that both do so without
// restraint would keep the server busy with nothing else. So we raise only when another program's window really covers
// one of ours, at most every quarter of a second, and ever more rarely against one that keeps coming back.
// Threads: one thread. Pure: stack and time go in, moves come out; `apply` carries one out.
// Units and axes: device pixels in root coordinates; stacks are listed bottom to top.
#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <map>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::scene {

// One viewable window.
struct StackedWindow {
  xcb_window_t id = 0;
  xcb::PixelRect frame{};
  bool isOwn = false;     // belongs to this program, whether it is kept on top or not
  bool isLocker = false;  // nothing may be shown above it
};

// Asks the window list only about the few windows that could be lockers.
[[nodiscard]] std::vector<StackedWindow> viewableStack(const Scene& scene, WindowList& list);

// The locker below which a new window of ours has to stay; absent when it may come on top.
[[nodiscard]] std::optional<xcb_window_t> lowestLocker(std::span<const StackedWindow> stack);

class StackKeeper {
 public:
  using TimePoint = std::chrono::steady_clock::time_point;
  using Duration = std::chrono::steady_clock::duration;

  static constexpr Duration shortestPause = std::chrono::milliseconds(250);
  static constexpr Duration longestPause = std::chrono::seconds(5);

  struct Move {
    xcb_window_t window = 0;
    xcb_stack_mode_t mode = XCB_STACK_MODE_ABOVE;  // above or below ...
    xcb_window_t sibling = 0;                      // ... this one
    friend bool operator==(const Move&, const Move&) = default;
  };
  struct Decision {
    std::vector<Move> moves;
    std::optional<TimePoint> again;  // when to decide again, even if nothing changes until then
  };

  void keepOnTop(xcb_window_t window) { kept_.try_emplace(window); }
  void release(xcb_window_t window) { kept_.erase(window); }

  // Call it once after each batch of events.
  [[nodiscard]] Decision decide(std::span<const StackedWindow> stack, TimePoint now);

 private:
  struct Rivalry {
    TimePoint raisedAt;
    Duration pause = shortestPause;
  };
  struct Kept {
    std::optional<TimePoint> raisedAt;
    std::map<xcb_window_t, Rivalry> rivals;
  };

  static void forgetOldRivals(Kept& kept, std::span<const StackedWindow> stack, TimePoint now);
  static TimePoint nextRaise(const Kept& kept, std::span<const xcb_window_t> rivals, TimePoint now);
  static void noteRaise(Kept& kept, std::span<const xcb_window_t> rivals, TimePoint now);

  std::map<xcb_window_t, Kept> kept_;
};

// Sends one request. If the sibling has gone or left meanwhile, nothing moves, and its departure leads to a new
// decision.
void apply(xcb::Connection& connection, const StackKeeper::Move& move);

}  // namespace platform::linux::scene
