#include "Platform/Linux/Scene/SceneModel.h"

#include <algorithm>
#include <utility>

namespace platform::linux::scene {

namespace {

constexpr unsigned attributesPart = 1;
constexpr unsigned geometryPart = 2;
constexpr unsigned shapePart = 4;
constexpr unsigned everyPart = attributesPart | geometryPart | shapePart;

}  // namespace

std::optional<std::size_t> SceneModel::indexOf(xcb_window_t id) const {
  // From the top: the windows that change most are there.
  for (std::size_t index = windows_.size(); index-- > 0;)
    if (windows_[index].id == id) return index;
  return std::nullopt;
}

const SceneWindow* SceneModel::find(xcb_window_t id) const {
  const auto index = indexOf(id);
  return index ? &windows_[*index] : nullptr;
}

template <typename Telling>
void SceneModel::tell(Telling telling) {
  for (SceneListener* listener : listeners_) telling(*listener);
}

std::vector<SceneModel::Stub> SceneModel::takeStubs() { return std::exchange(stubs_, {}); }

void SceneModel::add(const SceneWindow& window) {
  windows_.push_back(window);
  windows_.back().generation = nextGeneration_++;
  const Stub stub{window.id, windows_.back().generation};
  stubs_.push_back(stub);
  missing_.push_back({stub, everyPart});
  tell([&](SceneListener& listener) { listener.windowAdded(windows_.back()); });
}

void SceneModel::adopt(xcb_window_t id) {
  if (indexOf(id)) return;
  SceneWindow window;
  window.id = id;
  add(window);
}

void SceneModel::created(xcb_window_t id, const WindowGeometry& geometry, bool isOverrideRedirect) {
  // An id that is created again was destroyed, even if we did not hear of it.
  removed(id, Departure::destroyed);
  SceneWindow window;
  window.id = id;
  window.outer = geometry.outer;
  window.border = geometry.border;
  window.isOverrideRedirect = isOverrideRedirect;
  add(window);
}

void SceneModel::removed(xcb_window_t id, Departure departure) {
  const auto index = indexOf(id);
  if (!index) return;
  const SceneWindow window = windows_[*index];
  windows_.erase(windows_.begin() + static_cast<std::ptrdiff_t>(*index));
  std::erase_if(missing_, [&](const Missing& missing) { return missing.window.id == id; });
  std::erase_if(stubs_, [&](const Stub& stub) { return stub.id == id; });
  tell([&](SceneListener& listener) { listener.windowRemoved(window, departure); });
}

template <typename Change>
void SceneModel::change(xcb_window_t id, Change apply) {
  const auto index = indexOf(id);
  if (!index) return;
  const SceneWindow before = windows_[*index];
  apply(windows_[*index]);
  if (windows_[*index] != before)
    tell([&](SceneListener& listener) { listener.windowChanged(before, windows_[*index]); });
}

void SceneModel::mapped(xcb_window_t id, bool isOverrideRedirect) {
  change(id, [&](SceneWindow& window) {
    window.isViewable = true;
    window.isOverrideRedirect = isOverrideRedirect;
  });
}

void SceneModel::unmapped(xcb_window_t id) {
  change(id, [](SceneWindow& window) { window.isViewable = false; });
}

void SceneModel::configured(xcb_window_t id, const WindowGeometry& geometry, bool isOverrideRedirect) {
  change(id, [&](SceneWindow& window) {
    window.outer = geometry.outer;
    window.border = geometry.border;
    window.isOverrideRedirect = isOverrideRedirect;
  });
}

void SceneModel::moved(xcb_window_t id, std::int32_t x, std::int32_t y) {
  change(id, [&](SceneWindow& window) {
    window.outer.x = x;
    window.outer.y = y;
  });
}

void SceneModel::reshaped(xcb_window_t id, bool isShaped) {
  change(id, [&](SceneWindow& window) { window.isShaped = isShaped; });
  const SceneWindow* window = find(id);
  if (window != nullptr) tell([&](SceneListener& listener) { listener.windowReshaped(*window); });
}

void SceneModel::moveTo(std::size_t from, std::size_t to) {
  if (from == to) return;
  const auto at = [&](std::size_t index) { return windows_.begin() + static_cast<std::ptrdiff_t>(index); };
  if (from < to)
    std::rotate(at(from), at(from + 1), at(to + 1));
  else
    std::rotate(at(to), at(from), at(from + 1));
  tell([&](SceneListener& listener) { listener.windowRestacked(windows_[to]); });
}

void SceneModel::restacked(xcb_window_t id, std::optional<xcb_window_t> sibling) {
  const auto from = indexOf(id);
  if (!from || sibling == id) return;
  if (!sibling) return moveTo(*from, 0);
  const auto below = indexOf(*sibling);
  if (!below) return raised(id);
  moveTo(*from, *from < *below ? *below : *below + 1);
}

void SceneModel::raised(xcb_window_t id) {
  if (const auto from = indexOf(id)) moveTo(*from, windows_.size() - 1);
}

void SceneModel::compositingManagerIs(xcb_window_t window) {
  if (std::exchange(compositingManager_, window) == window) return;
  tell([&](SceneListener& listener) { listener.compositingManagerChanged(hasCompositingManager()); });
}

template <typename Change>
void SceneModel::describe(Stub stub, unsigned part, Change apply) {
  const SceneWindow* window = find(stub.id);
  if (window == nullptr || window->generation != stub.generation) return;
  change(stub.id, [&](SceneWindow& described) {
    apply(described);
    const auto missing = std::ranges::find(missing_, stub, &Missing::window);
    if (missing == missing_.end()) return;
    missing->parts &= ~part;
    if (missing->parts != 0) return;
    missing_.erase(missing);
    described.isDescribed = true;
  });
}

void SceneModel::describeAttributes(Stub stub, const Attributes& attributes) {
  describe(stub, attributesPart, [&](SceneWindow& window) {
    window.visual = attributes.visual;
    window.isInputOnly = attributes.isInputOnly;
    window.isOverrideRedirect = attributes.isOverrideRedirect;
    window.isViewable = attributes.isViewable;
  });
}

void SceneModel::describeGeometry(Stub stub, const WindowGeometry& geometry, std::uint8_t depth) {
  describe(stub, geometryPart, [&](SceneWindow& window) {
    window.outer = geometry.outer;
    window.border = geometry.border;
    window.depth = depth;
  });
}

void SceneModel::describeShape(Stub stub, bool isShaped) {
  describe(stub, shapePart, [&](SceneWindow& window) { window.isShaped = isShaped; });
}

}  // namespace platform::linux::scene
