// Which windows a stream leaves out of its picture: those named when it started, and every window of our own clients.
//
// Threads: plain value.
// Lifetime: fixed for the life of a stream, except that the server may give the id of a destroyed window to another
// one: `forget` it then. This is the place to add a rule that also judges windows that appear later.
#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <utility>
#include <vector>

#include "Platform/Linux/X11/SceneModel.h"

namespace platform::x11 {

class WindowFilter {
 public:
  // `ownClients`: the resource bases of our own connections; `resourceMask`: the part of an id that is not its base.
  WindowFilter(std::vector<xcb_window_t> excluded, std::vector<std::uint32_t> ownClients, std::uint32_t resourceMask)
      : excluded_(std::move(excluded)), ownClients_(std::move(ownClients)), resourceMask_(resourceMask) {}

  [[nodiscard]] bool leavesOut(const SceneWindow& window) const {
    return std::ranges::find(excluded_, window.id) != excluded_.end() ||
           std::ranges::find(ownClients_, window.id & ~resourceMask_) != ownClients_.end();
  }

  void addOwnClient(std::uint32_t resourceBase) { ownClients_.push_back(resourceBase); }
  void forget(xcb_window_t destroyed) { std::erase(excluded_, destroyed); }

 private:
  std::vector<xcb_window_t> excluded_;
  std::vector<std::uint32_t> ownClients_;
  std::uint32_t resourceMask_;
};

}  // namespace platform::x11
