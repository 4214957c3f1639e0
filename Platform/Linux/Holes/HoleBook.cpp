#include "Platform/Linux/Holes/HoleBook.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "Platform/Linux/Holes/Hole.h"

namespace platform::linux::holes {

void HoleBook::open(Stream stream, const xcb::PixelRect& area, scene::WindowFilter filter) {
  streams_.insert_or_assign(stream, Opening{area, std::move(filter)});
}

void HoleBook::close(Stream stream) { streams_.erase(stream); }

void HoleBook::admit(Stream stream, std::span<const xcb_window_t> windows) {
  const auto opening = streams_.find(stream);
  if (opening == streams_.end()) return;
  for (const xcb_window_t window : windows) opening->second.filter.admit(window);
}

void HoleBook::unmapped(xcb_window_t window) {
  for (auto& [stream, opening] : streams_) opening.filter.holdBack(window);
}

void HoleBook::destroyed(xcb_window_t window) {
  for (auto& [stream, opening] : streams_) opening.filter.forget(window);
  done_.erase(window);
}

void HoleBook::reshaped(xcb_window_t window) {
  if (const auto done = done_.find(window); done != done_.end()) done->second.isReshaped = true;
}

void HoleBook::renewed(xcb_window_t window) {
  if (const auto done = done_.find(window); done != done_.end()) done->second.clears = false;
}

// A window is heard of a moment before it is known to be opaque, and no moment of ink is to be seen.
bool HoleBook::leavesOut(const scene::WindowFilter& filter, const scene::SceneWindow& window) const {
  if (!filter.leavesOut(window)) return false;
  const bool couldBeInk = window.isOverrideRedirect && (!window.isDescribed || hasAlpha_(window.visual));
  return !filter.isHeldBack(window) || couldBeInk;
}

HoleBook::Step HoleBook::wanted(const scene::SceneWindow& window) const {
  Step step{.window = window.id};
  if (window.isInputOnly || isOwn_(window.id)) return step;
  for (const auto& [stream, opening] : streams_) {
    if (intersection(opening.area, window.outer).isEmpty() || !leavesOut(opening.filter, window)) continue;
    step.clears = step.clears || !opening.filter.isHeldBack(window);
    // Not cut off at the window's edges: it may grow.
    const xcb::PixelRect area{opening.area.x - window.outer.x - window.border,
                              opening.area.y - window.outer.y - window.border, opening.area.width, opening.area.height};
    std::ranges::copy(without({intersection(area, largestShape)}, step.areas), std::back_inserter(step.areas));
  }
  return step;
}

std::vector<HoleBook::Step> HoleBook::steps(std::span<const scene::SceneWindow> windows) {
  std::vector<Step> steps;
  auto left = std::exchange(done_, {});
  for (const scene::SceneWindow& window : windows) {
    Step step = wanted(window);
    Done done;
    if (auto before = left.extract(window.id)) done = std::move(before.mapped());
    const bool isSame = (done.clears || !step.clears) && holdSame(done.areas, step.areas);
    if (!step.areas.empty()) done_[window.id] = {.areas = step.areas, .clears = step.clears};
    step.isForReshaped = isSame;
    if (!isSame || done.isReshaped) steps.push_back(std::move(step));
  }
  for (const auto& [window, done] : left) steps.push_back({.window = window});
  return steps;
}

}  // namespace platform::linux::holes
