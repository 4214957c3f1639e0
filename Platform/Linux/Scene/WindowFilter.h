// Which windows a stream leaves out of its picture: those named when it started, every window of our own clients, and,
// if told to hold back new windows, large ones that nobody has judged yet.
//
// Threads: plain value. Units: areas in square pixels, including the border.
// Lifetime: a named window stays named for the life of a stream. The server may give the id of a destroyed window to
// another one, so `forget` it then. An admitted window stays admitted until it is unmapped; `holdBack` it then.
#pragma once

#include <xcb/xcb.h>

#include <algorithm>
#include <cstdint>
#include <optional>
#include <unordered_set>
#include <utility>
#include <vector>

#include "Platform/Linux/Scene/SceneModel.h"

namespace platform::linux::scene {

class WindowFilter {
 public:
  // `ownClients`: the resource bases of our own connections; `resourceMask`: the part of an id that is not its base.
  WindowFilter(std::vector<xcb_window_t> excluded, std::vector<std::uint32_t> ownClients, std::uint32_t resourceMask)
      : excluded_(std::move(excluded)), ownClients_(std::move(ownClients)), resourceMask_(resourceMask) {}

  [[nodiscard]] bool leavesOut(const SceneWindow& window) const { return isNamed(window) || isHeldBack(window); }

  void addOwnClient(std::uint32_t resourceBase) { ownClients_.push_back(resourceBase); }
  void forget(xcb_window_t destroyed) {
    std::erase(excluded_, destroyed);
    holdBack(destroyed);
  }

  // From now on, windows of at least this area are left out until they are admitted.
  void holdBackFrom(double area) { heldBackFrom_ = area; }
  void admit(xcb_window_t window) {
    if (heldBackFrom_) admitted_.insert(window);
  }
  void holdBack(xcb_window_t window) { admitted_.erase(window); }
  [[nodiscard]] bool isHeldBack(const SceneWindow& window) const {
    return heldBackFrom_ && double{1} * window.outer.width * window.outer.height >= *heldBackFrom_ &&
           !admitted_.contains(window.id) && !isNamed(window);
  }

 private:
  [[nodiscard]] bool isNamed(const SceneWindow& window) const {
    return std::ranges::find(excluded_, window.id) != excluded_.end() ||
           std::ranges::find(ownClients_, window.id & ~resourceMask_) != ownClients_.end();
  }

  std::vector<xcb_window_t> excluded_;
  std::vector<std::uint32_t> ownClients_;
  std::uint32_t resourceMask_;
  std::optional<double> heldBackFrom_;
  std::unordered_set<xcb_window_t> admitted_;
};

}  // namespace platform::linux::scene
