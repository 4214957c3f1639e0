#include "Platform/Linux/X11/Compositor.h"

#include <xcb/damage.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <ranges>
#include <utility>

namespace platform::x11 {

namespace {

// More rectangles than this are kept as the one that holds them all.
constexpr std::size_t maximumSoiledRects = 64;

bool contains(const PixelRect& outer, const PixelRect& inner) {
  return outer.x <= inner.x && outer.y <= inner.y && outer.right() >= inner.right() && outer.bottom() >= inner.bottom();
}

PixelRect united(const PixelRect& a, const PixelRect& b) {
  const std::int32_t x = std::min(a.x, b.x);
  const std::int32_t y = std::min(a.y, b.y);
  return {x, y, std::max(a.right(), b.right()) - x, std::max(a.bottom(), b.bottom()) - y};
}

}  // namespace

Compositor::Compositor(Connection& connection, Scene& scene, const PixelRect& source, WindowFilter filter,
                       xcb_render_picture_t target)
    : connection_(connection),
      scene_(scene),
      source_(source),
      filter_(std::move(filter)),
      target_(target),
      wallpaper_(connection, source),
      pending_(connection),
      bounds_(connection),
      parts_(connection),
      remaining_(connection),
      clip_(connection) {
  filter_.addOwnClient(connection_.resourceBase());
  bounds_.set(PixelRect{0, 0, source_.width, source_.height});
  for (const SceneWindow& window : scene_.windows()) watch(window);
  scene_.setListener(this);
  invalidate();
}

Compositor::~Compositor() {
  scene_.setListener(nullptr);
  forgetPending();
}

bool Compositor::isVisible(const SceneWindow& window) const {
  return window.isViewable && window.isDescribed && !window.isInputOnly &&
         connection_.formatOfVisual(window.visual) != 0 && !filter_.leavesOut(window) &&
         !intersection(window.outer, source_).isEmpty();
}

// Without a compositing manager the server shows the colours of a window and ignores how transparent they are.
bool Compositor::isTranslucent(const SceneWindow& window) const {
  return scene_.hasCompositingManager() && connection_.visualHasAlpha(window.visual);
}

// Whether a single opaque window hides it entirely: what is drawn there then need not wake anybody.
bool Compositor::isCovered(const SceneWindow& window) const {
  const PixelRect shown = intersection(window.outer, source_);
  const std::span<const SceneWindow> windows = scene_.windows();
  const auto above = windows.subspan(static_cast<std::size_t>(&window - windows.data()) + 1);
  return std::ranges::any_of(above, [&](const SceneWindow& cover) {
    return contains(cover.outer, shown) && !cover.isShaped && isVisible(cover) && !isTranslucent(cover);
  });
}

WindowContent* Compositor::contentOf(xcb_window_t window) const {
  const auto found = contents_.find(window);
  return found == contents_.end() ? nullptr : found->second.get();
}

// Content is kept, and damage reported, of visible windows only: others must not cost anything.
void Compositor::watch(const SceneWindow& window) {
  if (!isVisible(window)) {
    contents_.erase(window.id);
  } else if (auto& content = contents_[window.id]; content == nullptr) {
    content = std::make_unique<WindowContent>(connection_, window);
    noteTaking(*content);
  }
}

void Compositor::windowAdded(const SceneWindow& window) {
  watch(window);
  soil(window);
}

void Compositor::windowRemoved(const SceneWindow& window, Departure departure) {
  soil(window);
  contents_.erase(window.id);
  if (departure == Departure::destroyed) filter_.forget(window.id);
}

void Compositor::windowChanged(const SceneWindow& before, const SceneWindow& after) {
  SceneWindow sameLooks = before;
  sameLooks.isOverrideRedirect = after.isOverrideRedirect;
  if (sameLooks == after) return;
  soil(before);
  soil(after);
  watch(after);
  WindowContent* content = contentOf(after.id);
  if (content == nullptr) return;
  content->forgetOutline();
  const bool isMoveOnly = before.outer.width == after.outer.width && before.outer.height == after.outer.height &&
                          before.border == after.border;
  if (!isMoveOnly) content->forgetPicture();
}

void Compositor::windowReshaped(const SceneWindow& window) {
  if (WindowContent* content = contentOf(window.id)) content->forgetOutline();
  soil(window);
}

void Compositor::windowRestacked(const SceneWindow& window) { soil(window); }

void Compositor::compositingManagerChanged(bool /*isRunning*/) {
  wallpaper_.forget();
  for (const auto& [id, content] : contents_) content->forgetPicture();
  invalidate();
}

void Compositor::soil(const SceneWindow& window) {
  if (isVisible(window)) soil(window.outer);
}

void Compositor::soil(const PixelRect& rect) {
  const PixelRect shown = intersection(rect, source_);
  if (shown.isEmpty() || (!soiled_.empty() && soiled_.back() == shown)) return;
  soiled_.push_back(shown);
  if (soiled_.size() <= maximumSoiledRects) return;
  for (const PixelRect& other : soiled_) soiled_.front() = united(soiled_.front(), other);
  soiled_.resize(1);
}

void Compositor::invalidate() { soil(source_); }

void Compositor::handle(const xcb_generic_event_t& event) {
  while (!takings_.empty() && isNotAfter(takings_.front().sequence, event.full_sequence)) takings_.pop_front();
  if (eventType(event) == connection_.firstEvent(Extension::damage) + XCB_DAMAGE_NOTIFY) {
    noteDamage(eventAs<xcb_damage_notify_event_t>(event));
  } else if (wallpaper_.isChangedBy(event)) {
    wallpaper_.forget();
    invalidate();
  }
}

void Compositor::noteTaking(const WindowContent& content) {
  takings_.push_back({content.damage(), content.lastTaking()});
}

void Compositor::noteDamage(const xcb_damage_notify_event_t& event) {
  WindowContent* content = contentOf(event.drawable);
  if (content == nullptr || content->damage() != event.damage) return;
  // Only takings that came after the report are still listed.
  if (std::ranges::find(takings_, event.damage, &Taking::damage) == takings_.end()) content->noteDamage();
}

Compositor::Changes Compositor::changes() const {
  if (!soiled_.empty() || isPendingCertain_) return Changes::certain;
  Changes found = Changes::none;
  for (const auto& [id, content] : contents_) {
    if (!content->isDamaged()) continue;
    const SceneWindow* window = scene_.find(id);
    if (isCovered(*window)) continue;
    if (contains(source_, window->outer)) return Changes::certain;
    found = Changes::possible;
  }
  return found;
}

void Compositor::examine() {
  if (isExamining()) return;
  gatherDamage();
  pending_.intersect(bounds_);
  examination_ = xcb_xfixes_fetch_region(connection_.get(), pending_.id()).sequence;
}

bool Compositor::collectReplies() {
  if (!examination_) return false;
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(connection_.get(), *examination_, &reply, &error) == 0) return false;
  const Reply<xcb_xfixes_fetch_region_reply_t> region(static_cast<xcb_xfixes_fetch_region_reply_t*>(reply));
  const Reply<xcb_generic_error_t> ownedError(error);
  examination_.reset();
  isPendingCertain_ = region && xcb_xfixes_fetch_region_rectangles_length(region.get()) > 0;
  if (!isPendingCertain_) forgetPending();
  return true;
}

void Compositor::forgetPending() {
  if (examination_) xcb_discard_reply(connection_.get(), *examination_);
  examination_.reset();
  pending_.clear();
  pendingBounds_.clear();
  isPendingCertain_ = false;
}

void Compositor::gatherDamage() {
  for (const auto& [id, content] : contents_) {
    if (!content->isDamaged()) continue;
    const SceneWindow* window = scene_.find(id);
    if (isCovered(*window)) continue;
    content->takeDamage(parts_);
    noteTaking(*content);
    parts_.translate(window->outer.x + window->border - source_.x, window->outer.y + window->border - source_.y);
    // The window may have grown and moved already; then that is still to be told, and painted.
    parts_.intersect(content->outline(*window, source_));
    pending_.unite(parts_);
    pendingBounds_.push_back(intersection(window->outer, source_));
  }
}

void Compositor::gatherSoil() {
  if (soiled_.empty()) return;
  std::vector<xcb_rectangle_t> rectangles;
  for (const PixelRect& rect : soiled_)
    rectangles.push_back(toRectangle({rect.x - source_.x, rect.y - source_.y, rect.width, rect.height}));
  parts_.set(rectangles);
  pending_.unite(parts_);
  pendingBounds_.insert(pendingBounds_.end(), soiled_.begin(), soiled_.end());
  soiled_.clear();
}

void Compositor::paint(Region& painted) {
  gatherDamage();
  gatherSoil();
  pending_.intersect(bounds_);
  painted.copy(pending_);
  remaining_.copy(pending_);
  paintLayers();
  forgetPending();
}

// Top to bottom, as far as anything can show through.
std::vector<Compositor::Layer> Compositor::layersToPaint(bool& reachesWallpaper) const {
  std::vector<Layer> layers;
  reachesWallpaper = true;
  for (const SceneWindow& window : scene_.windows() | std::views::reverse) {
    WindowContent* content = contentOf(window.id);
    if (content == nullptr) continue;
    const auto touches = [&](const PixelRect& rect) { return !intersection(rect, window.outer).isEmpty(); };
    if (std::ranges::none_of(pendingBounds_, touches)) continue;
    layers.push_back({&window, content});
    reachesWallpaper =
        isTranslucent(window) || window.isShaped ||
        !std::ranges::all_of(pendingBounds_, [&](const PixelRect& r) { return contains(window.outer, r); });
    if (!reachesWallpaper) break;
  }
  return layers;
}

// Opaque windows go first, from the top, each where nothing above it has been painted: so no pixel is painted twice.
// Then what shines through goes on top, from the bottom.
void Compositor::paintLayers() {
  struct Veil {
    Layer layer;
    std::unique_ptr<Region> visible;
  };
  std::vector<Veil> veils;
  bool reachesWallpaper = true;
  for (const Layer& layer : layersToPaint(reachesWallpaper)) {
    if (!isTranslucent(*layer.window)) {
      paintOpaque(layer);
      continue;
    }
    veils.push_back({layer, std::make_unique<Region>(connection_)});
    veils.back().visible->copy(remaining_);
  }
  if (reachesWallpaper) paintWallpaper();
  for (const Veil& veil : veils | std::views::reverse) paintTranslucent(veil.layer, *veil.visible);
}

void Compositor::paintOpaque(const Layer& layer) {
  const Region& outline = layer.content->outline(*layer.window, source_);
  if (layer.window->isShaped) {
    clip_.copy(remaining_);
    clip_.intersect(outline);
    composite(layer, XCB_RENDER_PICT_OP_SRC, clip_);
  } else {
    composite(layer, XCB_RENDER_PICT_OP_SRC, remaining_);
  }
  remaining_.subtract(outline);
}

void Compositor::paintTranslucent(const Layer& layer, Region& visible) {
  visible.intersect(layer.content->outline(*layer.window, source_));
  composite(layer, XCB_RENDER_PICT_OP_OVER, visible);
}

void Compositor::composite(const Layer& layer, std::uint8_t operation, const Region& clip) {
  const PixelRect& outer = layer.window->outer;
  const PixelRect shown = intersection(outer, source_);
  xcb_xfixes_set_picture_clip_region(connection_.get(), target_, clip.id(), 0, 0);
  // The window may have lost its pixels.
  connection_.ignoreErrors(xcb_render_composite(
      connection_.get(), operation, layer.content->picture(), XCB_NONE, target_,
      static_cast<std::int16_t>(shown.x - outer.x), static_cast<std::int16_t>(shown.y - outer.y), 0, 0,
      static_cast<std::int16_t>(shown.x - source_.x), static_cast<std::int16_t>(shown.y - source_.y),
      static_cast<std::uint16_t>(shown.width), static_cast<std::uint16_t>(shown.height)));
}

void Compositor::paintWallpaper() {
  const xcb_render_picture_t picture = wallpaper_.picture(scene_.hasCompositingManager());
  xcb_xfixes_set_picture_clip_region(connection_.get(), target_, remaining_.id(), 0, 0);
  // The pixmap of a compositing manager's wallpaper belongs to another client.
  connection_.ignoreErrors(xcb_render_composite(
      connection_.get(), XCB_RENDER_PICT_OP_SRC, picture, XCB_NONE, target_,
      static_cast<std::int16_t>(wallpaper_.part().x), static_cast<std::int16_t>(wallpaper_.part().y), 0, 0, 0, 0,
      static_cast<std::uint16_t>(source_.width), static_cast<std::uint16_t>(source_.height)));
}

}  // namespace platform::x11
