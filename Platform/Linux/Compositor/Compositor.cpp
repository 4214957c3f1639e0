#include "Platform/Linux/Compositor/Compositor.h"

#include <xcb/damage.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <utility>

namespace platform::linux::compositor {

namespace {

// More rectangles than this are merged into the one that holds them all.
constexpr std::size_t maximumSoiledRects = 64;

}  // namespace

Compositor::Compositor(xcb::Connection& connection, scene::Scene& scene, const xcb::PixelRect& source,
                       scene::WindowFilter filter)
    : connection_(connection),
      scene_(scene),
      source_(source),
      filter_(std::move(filter)),
      wallpaper_(connection, source),
      effects_(connection),
      pending_(connection),
      parts_(connection),
      remaining_(connection),
      clip_(connection) {
  filter_.addOwnClient(connection_.resourceBase());
  for (const scene::SceneWindow& window : scene_.windows()) watch(window);
  scene_.addListener(*this);
  invalidate();
}

Compositor::~Compositor() {
  scene_.removeListener(*this);
  forgetPending();
}

bool Compositor::isVisible(const scene::SceneWindow& window) const {
  return window.isViewable && window.isDescribed && !window.isInputOnly &&
         connection_.formatOfVisual(window.visual) != 0 && !filter_.leavesOut(window) &&
         !intersection(window.outer, source_).isEmpty();
}

// Without a compositing manager the server shows a window's colours and ignores their transparency.
bool Compositor::isTranslucent(const scene::SceneWindow& window) const {
  if (!scene_.hasCompositingManager()) return false;
  const WindowContent* content = contentOf(window.id);
  return connection_.visualHasAlpha(window.visual) ||
         (content != nullptr && content->effect().opacity != WindowEffect::opaque);
}

// Whether the whole of its rectangle is seen.
bool Compositor::isRectangle(const scene::SceneWindow& window) const {
  const WindowContent* content = contentOf(window.id);
  return !window.isShaped && (content == nullptr || !content->effect().visiblePart);
}

std::span<const scene::SceneWindow> Compositor::windowsAbove(const scene::SceneWindow& window) const {
  const std::span<const scene::SceneWindow> windows = scene_.windows();
  return windows.subspan(static_cast<std::size_t>(&window - windows.data()) + 1);
}

// Whether a single opaque window hides it entirely: what is drawn there then need not wake anybody.
bool Compositor::isCovered(const scene::SceneWindow& window) const {
  const xcb::PixelRect shown = intersection(window.outer, source_);
  return std::ranges::any_of(windowsAbove(window), [&](const scene::SceneWindow& cover) {
    return intersection(cover.outer, shown) == shown && isVisible(cover) && isRectangle(cover) && !isTranslucent(cover);
  });
}

WindowContent* Compositor::contentOf(xcb_window_t window) const {
  const auto found = contents_.find(window);
  return found == contents_.end() ? nullptr : found->second.get();
}

// Content is kept, and damage reported, for visible windows only: the others must cost nothing.
void Compositor::watch(const scene::SceneWindow& window) {
  if (!isVisible(window)) {
    abandon(window.id);
  } else if (auto& content = contents_[window.id]; content == nullptr) {
    content = std::make_unique<WindowContent>(connection_, window);
    noteTaking(*content);
    if (scene_.hasCompositingManager()) effects_.follow(window.id);
  }
}

void Compositor::abandon(xcb_window_t window) {
  std::erase(damaged_, window);
  contents_.erase(window);
  effects_.forget(window);
}

void Compositor::windowAdded(const scene::SceneWindow& window) {
  isHoldingBack_.reset();
  watch(window);
  soil(window);
}

void Compositor::windowRemoved(const scene::SceneWindow& window, scene::Departure departure) {
  isHoldingBack_.reset();
  soil(window);
  abandon(window.id);
  if (departure == scene::Departure::destroyed) filter_.forget(window.id);
}

void Compositor::windowChanged(const scene::SceneWindow& before, const scene::SceneWindow& after) {
  isHoldingBack_.reset();
  scene::SceneWindow sameLooks = before;
  sameLooks.isOverrideRedirect = after.isOverrideRedirect;
  if (sameLooks == after) return;
  soil(before);
  if (before.isViewable && !after.isViewable) filter_.holdBack(after.id);
  soil(after);
  watch(after);
  WindowContent* content = contentOf(after.id);
  if (content == nullptr) return;
  content->forgetOutline();
  const bool isMoveOnly = before.outer.width == after.outer.width && before.outer.height == after.outer.height &&
                          before.border == after.border;
  if (!isMoveOnly) content->forgetPicture();
}

void Compositor::windowReshaped(const scene::SceneWindow& window) {
  if (WindowContent* content = contentOf(window.id)) content->forgetOutline();
  soil(window);
}

void Compositor::windowRestacked(const scene::SceneWindow& window) { soil(window); }

void Compositor::compositingManagerChanged(bool isRunning) {
  wallpaper_.forget();
  for (const auto& [id, content] : contents_) {
    content->forgetPicture();
    content->setEffect({});
    effects_.forget(id);
    if (isRunning) effects_.follow(id);
  }
  invalidate();
}

void Compositor::readLooks() {
  for (const auto& [topLevel, effect] : effects_.read()) {
    WindowContent* content = contentOf(topLevel);
    const scene::SceneWindow* window = scene_.find(topLevel);
    if (content == nullptr || window == nullptr || content->effect() == effect) continue;
    soil(*window);
    content->setEffect(effect);
  }
}

void Compositor::forgetWallpaper() {
  wallpaper_.forget();
  invalidate();
}

void Compositor::admit(std::span<const xcb_window_t> windows) {
  isHoldingBack_.reset();
  for (const xcb_window_t id : windows) {
    const scene::SceneWindow* window = scene_.find(id);
    const bool wasVisible = window != nullptr && isVisible(*window);
    filter_.admit(id);
    if (window == nullptr || wasVisible || !isVisible(*window)) continue;
    watch(*window);
    soil(*window);
  }
}

bool Compositor::isHoldingBack() const {
  if (!isHoldingBack_)
    isHoldingBack_ = std::ranges::any_of(scene_.windows(), [&](const scene::SceneWindow& window) {
      return window.isViewable && !window.isInputOnly && filter_.isHeldBack(window);
    });
  return *isHoldingBack_;
}

void Compositor::soil(const scene::SceneWindow& window) {
  if (isVisible(window)) soil(window.outer);
}

void Compositor::soil(const xcb::PixelRect& rect) {
  const xcb::PixelRect shown = intersection(rect, source_);
  if (shown.isEmpty() || (!soiled_.empty() && soiled_.back() == shown)) return;
  soiled_.push_back(shown);
  if (soiled_.size() <= maximumSoiledRects) return;
  for (const xcb::PixelRect& other : soiled_) soiled_.front() = united(soiled_.front(), other);
  soiled_.resize(1);
}

void Compositor::invalidate() { soil(source_); }

void Compositor::handle(const xcb_generic_event_t& event) {
  while (!takings_.empty() && xcb::isNotAfter(takings_.front().sequence, event.full_sequence)) takings_.pop_front();
  if (xcb::eventType(event) == connection_.firstEvent(xcb::Extension::damage) + XCB_DAMAGE_NOTIFY) {
    noteDamage(xcb::eventAs<xcb_damage_notify_event_t>(event));
  } else if (wallpaper_.isChangedBy(event)) {
    forgetWallpaper();
  } else if (const auto changed = effects_.changedBy(event)) {
    if (const scene::SceneWindow* window = scene_.find(*changed)) soil(*window);
  }
}

void Compositor::noteTaking(const WindowContent& content) {
  takings_.push_back({content.damage(), content.lastTaking()});
}

void Compositor::noteDamage(const xcb_damage_notify_event_t& event) {
  WindowContent* content = contentOf(event.drawable);
  if (content == nullptr || content->damage() != event.damage) return;
  // The takings still listed were sent after this report and include it. A reported damage is not reported again until
  // it is taken.
  if (std::ranges::find(takings_, event.damage, &Taking::damage) == takings_.end()) damaged_.push_back(event.drawable);
}

Compositor::Changes Compositor::changes() const {
  if (!soiled_.empty() || isPendingCertain_) return Changes::certain;
  Changes found = Changes::none;
  for (const xcb_window_t id : damaged_) {
    const scene::SceneWindow* window = scene_.find(id);
    if (isCovered(*window)) continue;
    if (intersection(source_, window->outer) == window->outer) return Changes::certain;
    found = Changes::possible;
  }
  return found;
}

void Compositor::examine() {
  if (isExamining()) return;
  gatherDamage();
  if (pendingBounds_.empty()) return;
  examination_ = xcb_xfixes_fetch_region(connection_.get(), pending_.id()).sequence;
}

bool Compositor::collectReplies() {
  if (!examination_) return false;
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(connection_.get(), *examination_, &reply, &error) == 0) return false;
  const xcb::Reply<xcb_xfixes_fetch_region_reply_t> region(static_cast<xcb_xfixes_fetch_region_reply_t*>(reply));
  const xcb::Reply<xcb_generic_error_t> ownedError(error);
  examination_.reset();
  isPendingCertain_ = region && xcb_xfixes_fetch_region_rectangles_length(region.get()) > 0;
  if (!isPendingCertain_) forgetPending();
  return true;
}

void Compositor::forgetPending() {
  if (examination_) xcb_discard_reply(connection_.get(), *examination_);
  examination_.reset();
  pendingBounds_.clear();
  isPendingCertain_ = false;
}

void Compositor::gatherDamage() {
  std::erase_if(damaged_, [&](xcb_window_t id) {
    const scene::SceneWindow* window = scene_.find(id);
    if (isCovered(*window)) return false;
    WindowContent* content = contentOf(id);
    content->takeDamage(parts_);
    noteTaking(*content);
    parts_.translate(window->outer.x + window->border - source_.x, window->outer.y + window->border - source_.y);
    // The window may already have grown and moved; then the report of that is still to come, and so is its painting.
    parts_.intersect(content->outline(*window, source_));
    addPending(parts_, intersection(window->outer, source_));
    return true;
  });
}

void Compositor::gatherSoil() {
  if (soiled_.empty()) return;
  std::vector<xcb_rectangle_t> rectangles;
  for (const xcb::PixelRect& rect : soiled_)
    rectangles.push_back(xcb::toRectangle({rect.x - source_.x, rect.y - source_.y, rect.width, rect.height}));
  parts_.set(rectangles);
  addPending(parts_, soiled_.front());
  pendingBounds_.insert(pendingBounds_.end(), soiled_.begin() + 1, soiled_.end());
  soiled_.clear();
}

// Leaves `part` with arbitrary content.
void Compositor::addPending(xcb::Region& part, const xcb::PixelRect& bounds) {
  if (pendingBounds_.empty())
    pending_.swap(part);
  else
    pending_.unite(part);
  pendingBounds_.push_back(bounds);
}

void Compositor::gather() {
  gatherDamage();
  gatherSoil();
  if (pendingBounds_.empty()) pending_.clear();
}

}  // namespace platform::linux::compositor
