#include "Platform/Linux/Scene/StackKeeper.h"

#include <algorithm>
#include <array>
#include <ranges>

#include "Platform/Linux/Scene/Identity.h"

namespace platform::linux::scene {

namespace {

bool meet(const StackedWindow& a, const StackedWindow& b) { return !intersection(a.frame, b.frame).isEmpty(); }

// Other programs' windows that lie above ours and cover part of it, up to the first locker, bottom to top.
std::vector<xcb_window_t> rivalsOf(const StackedWindow& ours, std::span<const StackedWindow> above) {
  std::vector<xcb_window_t> rivals;
  for (const StackedWindow& window : above) {
    if (window.isLocker) break;
    if (!window.isOwn && meet(ours, window)) rivals.push_back(window.id);
  }
  return rivals;
}

}  // namespace

std::vector<StackedWindow> viewableStack(const Scene& scene, WindowList& list) {
  std::vector<StackedWindow> stack;
  for (const SceneWindow& window : scene.windows()) {
    if (!window.isViewable || window.isInputOnly) continue;
    StackedWindow entry{.id = window.id, .frame = window.outer, .isOwn = list.isOwn(window.id)};
    entry.isLocker = !entry.isOwn && window.isOverrideRedirect && list.isScreenLocker(window.id);
    stack.push_back(entry);
  }
  return stack;
}

std::optional<xcb_window_t> lowestLocker(std::span<const StackedWindow> stack) {
  const auto locker = std::ranges::find_if(stack, &StackedWindow::isLocker);
  return locker == stack.end() ? std::nullopt : std::optional(locker->id);
}

StackKeeper::Decision StackKeeper::decide(std::span<const StackedWindow> stack, TimePoint now) {
  Decision decision;
  for (auto& [id, kept] : kept_) {
    const auto ours = std::ranges::find(stack, id, &StackedWindow::id);
    if (ours == stack.end()) continue;
    const auto index = static_cast<std::size_t>(ours - stack.begin());

    const auto beneath = stack.first(index);
    const auto locker = std::ranges::find_if(
        beneath, [&](const StackedWindow& window) { return window.isLocker && meet(window, *ours); });
    if (locker != beneath.end()) {
      decision.moves.push_back({id, XCB_STACK_MODE_BELOW, locker->id});
      continue;
    }

    forgetOldRivals(kept, stack, now);
    const auto rivals = rivalsOf(*ours, stack.subspan(index + 1));
    if (rivals.empty()) continue;
    const TimePoint next = nextRaise(kept, rivals, now);
    if (next <= now) {
      decision.moves.push_back({id, XCB_STACK_MODE_ABOVE, rivals.back()});
      noteRaise(kept, rivals, now);
    } else {
      decision.again = std::min(decision.again.value_or(next), next);
    }
  }
  return decision;
}

// A rival that went away, or has left us alone for a while, starts afresh.
void StackKeeper::forgetOldRivals(Kept& kept, std::span<const StackedWindow> stack, TimePoint now) {
  std::erase_if(kept.rivals, [&](const auto& entry) {
    const bool isThere = std::ranges::find(stack, entry.first, &StackedWindow::id) != stack.end();
    return !isThere || now - entry.second.raisedAt > 2 * longestPause;
  });
}

// The rival with the longest wait does not keep us from overtaking the others.
StackKeeper::TimePoint StackKeeper::nextRaise(const Kept& kept, std::span<const xcb_window_t> rivals, TimePoint now) {
  const auto allowed = [&](xcb_window_t rival) {
    const auto known = kept.rivals.find(rival);
    return known == kept.rivals.end() ? now : known->second.raisedAt + known->second.pause;
  };
  const TimePoint next = std::ranges::min(rivals | std::views::transform(allowed));
  return kept.raisedAt ? std::max(next, *kept.raisedAt + shortestPause) : next;
}

void StackKeeper::noteRaise(Kept& kept, std::span<const xcb_window_t> rivals, TimePoint now) {
  kept.raisedAt = now;
  for (const xcb_window_t rival : rivals) {
    const auto [known, isNew] = kept.rivals.try_emplace(rival, Rivalry{.raisedAt = now});
    if (isNew) continue;
    known->second.raisedAt = now;
    known->second.pause = std::min(2 * known->second.pause, longestPause);
  }
}

void apply(xcb::Connection& connection, const StackKeeper::Move& move) {
  const std::array<std::uint32_t, 2> values{move.sibling, static_cast<std::uint32_t>(move.mode)};
  connection.ignoreErrors(xcb_configure_window(
      connection.get(), move.window, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data()));
}

}  // namespace platform::linux::scene
