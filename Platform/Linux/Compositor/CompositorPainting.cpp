// The part of the compositor that paints.
#include <algorithm>
#include <ranges>

#include "Platform/Linux/Compositor/Compositor.h"

namespace platform::linux::compositor {

xcb::PixelRect Compositor::paintTo(const Target& target, xcb::Region& painted) {
  target_ = target;
  readLooks();
  if (const auto lone = loneLayer()) return paintLone(*lone, painted);
  gather();
  painted.swap(pending_);
  paintLayers(painted);
  xcb::PixelRect bounds;
  for (const xcb::PixelRect& each : pendingBounds_) bounds = bounds.isEmpty() ? each : united(bounds, each);
  forgetPending();
  return {bounds.x - source_.x, bounds.y - source_.y, bounds.width, bounds.height};
}

// The last plan may still be in use, so its regions keep their ids and change only here.
std::vector<PaintStep> Compositor::plan(xcb::Region& changed) {
  std::vector<PaintStep> steps;
  clipsInUse_ = 0;
  readLooks();
  gather();
  changed.copy(pending_);
  plan_ = &steps;
  paintLayers(changed);
  plan_ = nullptr;
  forgetPending();
  return steps;
}

void Compositor::repaint(const xcb::Region& part) {
  if (pendingBounds_.empty())
    pending_.copy(part);
  else
    pending_.unite(part);
  pendingBounds_.push_back(source_);
}

// The only window that was drawn to, if it lies uncovered within the clear part. This is by far the most frequent case,
// and the server then need not work out where the drawing is visible.
std::optional<Compositor::Layer> Compositor::loneLayer() const {
  if (damaged_.size() != 1 || !soiled_.empty() || !pendingBounds_.empty()) return std::nullopt;
  const scene::SceneWindow& window = *scene_.find(damaged_.front());
  const xcb::PixelRect& outer = window.outer;
  const xcb::PixelRect place{outer.x - source_.x, outer.y - source_.y, outer.width, outer.height};
  const bool isInside = intersection(outer, source_) == outer && intersection(place, target_.clear) == place;
  if (!isInside || !isRectangle(window) || isTranslucent(window)) return std::nullopt;
  const bool isOverlaid = std::ranges::any_of(windowsAbove(window), [&](const scene::SceneWindow& other) {
    return !intersection(other.outer, outer).isEmpty() && isVisible(other);
  });
  if (isOverlaid) return std::nullopt;
  return Layer{&window, contentOf(window.id)};
}

xcb::PixelRect Compositor::paintLone(const Layer& layer, xcb::Region& scratch) {
  damaged_.clear();
  layer.content->takeDamage(scratch);
  noteTaking(*layer.content);
  const PaintStep step = paintStep(layer, XCB_RENDER_PICT_OP_SRC);
  carryOut(step, scratch, step.x + layer.window->border, step.y + layer.window->border);
  return {step.x, step.y, step.width, step.height};
}

// Top to bottom, down to the first layer that nothing shows through.
std::vector<Compositor::Layer> Compositor::layersToPaint(bool& reachesWallpaper) const {
  std::vector<Layer> layers;
  reachesWallpaper = true;
  for (const scene::SceneWindow& window : scene_.windows() | std::views::reverse) {
    const auto touches = [&](const xcb::PixelRect& rect) { return !intersection(rect, window.outer).isEmpty(); };
    if (std::ranges::none_of(pendingBounds_, touches)) continue;
    WindowContent* content = contentOf(window.id);
    if (content == nullptr) continue;
    layers.push_back({&window, content});
    reachesWallpaper = isTranslucent(window) || !isRectangle(window) ||
                       !std::ranges::all_of(
                           pendingBounds_, [&](const xcb::PixelRect& r) { return intersection(window.outer, r) == r; });
    if (!reachesWallpaper) break;
  }
  return layers;
}

// Opaque windows go first, from the top, each where nothing above it has been painted, so no pixel is painted twice.
// Then come the translucent ones, from the bottom.
void Compositor::paintLayers(const xcb::Region& changed) {
  struct Veil {
    Layer layer;
    std::unique_ptr<xcb::Region> visible;
  };
  std::vector<Veil> veils;
  bool reachesWallpaper = true;
  const std::vector<Layer> layers = layersToPaint(reachesWallpaper);
  // The part not painted over yet: copied only when it shrinks.
  const xcb::Region* rest = &changed;
  for (const Layer& layer : layers) {
    if (isTranslucent(*layer.window)) {
      veils.push_back({layer, std::make_unique<xcb::Region>(connection_)});
      veils.back().visible->copy(*rest);
      continue;
    }
    paintOpaque(layer, *rest);
    const bool isLast = &layer == &layers.back() && !reachesWallpaper;
    if (isLast) break;
    if (rest == &changed) remaining_.copy(changed);
    rest = &remaining_;
    remaining_.subtract(layer.content->outline(*layer.window, source_));
  }
  if (reachesWallpaper) paintWallpaper(*rest);
  for (const Veil& veil : veils | std::views::reverse) paintTranslucent(veil.layer, *veil.visible);
}

void Compositor::paintOpaque(const Layer& layer, const xcb::Region& rest) {
  if (isRectangle(*layer.window)) return perform(paintStep(layer, XCB_RENDER_PICT_OP_SRC), rest);
  clip_.copy(rest);
  clip_.intersect(layer.content->outline(*layer.window, source_));
  perform(paintStep(layer, XCB_RENDER_PICT_OP_SRC), clip_);
}

void Compositor::paintTranslucent(const Layer& layer, xcb::Region& visible) {
  visible.intersect(layer.content->outline(*layer.window, source_));
  perform(paintStep(layer, XCB_RENDER_PICT_OP_OVER), visible);
}

PaintStep Compositor::paintStep(const Layer& layer, std::uint8_t operation) const {
  const xcb::PixelRect& outer = layer.window->outer;
  const xcb::PixelRect shown = intersection(outer, source_);
  return {.operation = operation,
          .source = layer.content->picture(),
          .mask = layer.content->mask(),
          .sourceX = static_cast<std::int16_t>(shown.x - outer.x),
          .sourceY = static_cast<std::int16_t>(shown.y - outer.y),
          .x = static_cast<std::int16_t>(shown.x - source_.x),
          .y = static_cast<std::int16_t>(shown.y - source_.y),
          .width = static_cast<std::uint16_t>(shown.width),
          .height = static_cast<std::uint16_t>(shown.height)};
}

void Compositor::paintWallpaper(const xcb::Region& rest) {
  const xcb_render_picture_t picture = wallpaper_.picture(scene_.compositingManager());
  perform({.source = picture,
           .sourceX = static_cast<std::int16_t>(wallpaper_.part().x),
           .sourceY = static_cast<std::int16_t>(wallpaper_.part().y),
           .width = static_cast<std::uint16_t>(source_.width),
           .height = static_cast<std::uint16_t>(source_.height)},
          rest);
}

void Compositor::perform(PaintStep step, const xcb::Region& clip) {
  if (plan_ != nullptr) {
    step.clip = keptCopy(clip).id();
    plan_->push_back(step);
    return;
  }
  carryOut(step, clip, 0, 0);
}

// (clipX, clipY) is the clip's origin in the source's picture.
void Compositor::carryOut(const PaintStep& step, const xcb::Region& clip, std::int32_t clipX, std::int32_t clipY) {
  xcb_connection_t* c = connection_.get();
  connection_.ignoreErrors(xcb_xfixes_set_picture_clip_region(c, target_.picture, clip.id(),
                                                              static_cast<std::int16_t>(target_.x + clipX),
                                                              static_cast<std::int16_t>(target_.y + clipY)));
  // A window may have lost its pixels, and a compositing manager's wallpaper pixmap belongs to another client.
  connection_.ignoreErrors(
      xcb_render_composite(c, step.operation, step.source, step.mask, target_.picture, step.sourceX, step.sourceY, 0, 0,
                           static_cast<std::int16_t>(target_.x + step.x), static_cast<std::int16_t>(target_.y + step.y),
                           step.width, step.height));
}

// A copy, because the following layers change the clip.
const xcb::Region& Compositor::keptCopy(const xcb::Region& clip) {
  if (clipsInUse_ == clips_.size()) clips_.push_back(std::make_unique<xcb::Region>(connection_));
  xcb::Region& copy = *clips_[clipsInUse_++];
  copy.copy(clip);
  return copy;
}

}  // namespace platform::linux::compositor
