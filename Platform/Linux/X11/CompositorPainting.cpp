// The part of the compositor that paints.
#include <algorithm>
#include <ranges>

#include "Platform/Linux/X11/Compositor.h"

namespace platform::x11 {

PixelRect Compositor::paintTo(const Target& target, Region& painted) {
  target_ = target;
  gather();
  painted.swap(pending_);
  paintLayers(painted);
  PixelRect bounds;
  for (const PixelRect& each : pendingBounds_) bounds = bounds.isEmpty() ? each : united(bounds, each);
  forgetPending();
  return {bounds.x - source_.x, bounds.y - source_.y, bounds.width, bounds.height};
}

// Whoever reads the last plan may still name its regions: they keep their names, and are changed only here.
std::vector<PaintStep> Compositor::plan(Region& changed) {
  std::vector<PaintStep> steps;
  clipsInUse_ = 0;
  gather();
  changed.copy(pending_);
  plan_ = &steps;
  paintLayers(changed);
  plan_ = nullptr;
  forgetPending();
  return steps;
}

void Compositor::repaint(const Region& part) {
  if (pendingBounds_.empty())
    pending_.copy(part);
  else
    pending_.unite(part);
  pendingBounds_.push_back(source_);
}

// Top to bottom, as far as anything can show through.
std::vector<Compositor::Layer> Compositor::layersToPaint(bool& reachesWallpaper) const {
  std::vector<Layer> layers;
  reachesWallpaper = true;
  for (const SceneWindow& window : scene_.windows() | std::views::reverse) {
    const auto touches = [&](const PixelRect& rect) { return !intersection(rect, window.outer).isEmpty(); };
    if (std::ranges::none_of(pendingBounds_, touches)) continue;
    WindowContent* content = contentOf(window.id);
    if (content == nullptr) continue;
    layers.push_back({&window, content});
    reachesWallpaper =
        isTranslucent(window) || !isRectangle(window) ||
        !std::ranges::all_of(pendingBounds_, [&](const PixelRect& r) { return intersection(window.outer, r) == r; });
    if (!reachesWallpaper) break;
  }
  return layers;
}

// Opaque windows go first, from the top, each where nothing above it has been painted: so no pixel is painted twice.
// Then what shines through goes on top, from the bottom.
void Compositor::paintLayers(const Region& changed) {
  struct Veil {
    Layer layer;
    std::unique_ptr<Region> visible;
  };
  std::vector<Veil> veils;
  bool reachesWallpaper = true;
  const std::vector<Layer> layers = layersToPaint(reachesWallpaper);
  // What nothing has been painted over yet: copied only when it becomes less.
  const Region* rest = &changed;
  for (const Layer& layer : layers) {
    if (isTranslucent(*layer.window)) {
      veils.push_back({layer, std::make_unique<Region>(connection_)});
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

void Compositor::paintOpaque(const Layer& layer, const Region& rest) {
  if (isRectangle(*layer.window)) return composite(layer, XCB_RENDER_PICT_OP_SRC, rest);
  clip_.copy(rest);
  clip_.intersect(layer.content->outline(*layer.window, source_));
  composite(layer, XCB_RENDER_PICT_OP_SRC, clip_);
}

void Compositor::paintTranslucent(const Layer& layer, Region& visible) {
  visible.intersect(layer.content->outline(*layer.window, source_));
  composite(layer, XCB_RENDER_PICT_OP_OVER, visible);
}

void Compositor::composite(const Layer& layer, std::uint8_t operation, const Region& clip) {
  const PixelRect& outer = layer.window->outer;
  const PixelRect shown = intersection(outer, source_);
  perform({.operation = operation,
           .source = layer.content->picture(),
           .mask = layer.content->mask(),
           .sourceX = static_cast<std::int16_t>(shown.x - outer.x),
           .sourceY = static_cast<std::int16_t>(shown.y - outer.y),
           .x = static_cast<std::int16_t>(shown.x - source_.x),
           .y = static_cast<std::int16_t>(shown.y - source_.y),
           .width = static_cast<std::uint16_t>(shown.width),
           .height = static_cast<std::uint16_t>(shown.height)},
          clip);
}

void Compositor::paintWallpaper(const Region& rest) {
  const xcb_render_picture_t picture = wallpaper_.picture(scene_.hasCompositingManager());
  perform({.source = picture,
           .sourceX = static_cast<std::int16_t>(wallpaper_.part().x),
           .sourceY = static_cast<std::int16_t>(wallpaper_.part().y),
           .width = static_cast<std::uint16_t>(source_.width),
           .height = static_cast<std::uint16_t>(source_.height)},
          rest);
}

void Compositor::perform(PaintStep step, const Region& clip) {
  if (plan_ != nullptr) {
    step.clip = keptCopy(clip).id();
    plan_->push_back(step);
    return;
  }
  const auto x = static_cast<std::int16_t>(target_.x);
  const auto y = static_cast<std::int16_t>(target_.y);
  connection_.ignoreErrors(xcb_xfixes_set_picture_clip_region(connection_.get(), target_.picture, clip.id(), x, y));
  // A window may have lost its pixels, and the pixmap of a compositing manager's wallpaper belongs to another client.
  connection_.ignoreErrors(xcb_render_composite(
      connection_.get(), step.operation, step.source, step.mask, target_.picture, step.sourceX, step.sourceY, 0, 0,
      static_cast<std::int16_t>(x + step.x), static_cast<std::int16_t>(y + step.y), step.width, step.height));
}

// The clip that the next layers change as they go.
const Region& Compositor::keptCopy(const Region& clip) {
  if (clipsInUse_ == clips_.size()) clips_.push_back(std::make_unique<Region>(connection_));
  Region& copy = *clips_[clipsInUse_++];
  copy.copy(clip);
  return copy;
}

}  // namespace platform::x11
