// The pixels of one top-level window, wherever it is hidden: its off-screen picture, its outline and what was drawn to
// it since the last look. Everything stays in the X server.
//
// Threads: that of its connection.
// Units and axes: rectangles in root pixels; the outline in pixels of the picture being composed.
// Ownership: RAII; the connection must outlive it.
// Failure: the window may be gone, unmapped or of another size at any moment. Every request about it is sent with its
// errors expected; what cannot be had leaves an empty outline or a picture that paints nothing, until the event arrives
// that tells.
#pragma once

#include <xcb/damage.h>
#include <xcb/render.h>

#include <cstdint>
#include <optional>

#include "Platform/Linux/Compositor/WindowEffects.h"
#include "Platform/Linux/Scene/SceneModel.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::compositor {

class WindowContent {
 public:
  WindowContent(xcb::Connection& connection, const scene::SceneWindow& window);
  ~WindowContent();
  WindowContent(const WindowContent&) = delete;
  WindowContent& operator=(const WindowContent&) = delete;

  // The window as of now, with its border. Named on first use.
  [[nodiscard]] xcb_render_picture_t picture();
  // How opaque it is, as a mask; none when it is opaque.
  [[nodiscard]] xcb_render_picture_t mask();
  // What of it is seen in a picture of `source`.
  [[nodiscard]] const xcb::Region& outline(const scene::SceneWindow& window, const xcb::PixelRect& source);
  // After a resize, an unmap or a change of the compositing manager the window has other pixels.
  void forgetPicture();
  void forgetOutline() { hasOutline_ = false; }

  [[nodiscard]] const WindowEffect& effect() const { return effect_; }
  void setEffect(const WindowEffect& effect);

  [[nodiscard]] xcb_damage_damage_t damage() const { return damage_; }
  // Moves the damage into `parts`, in pixels from the inner corner of the window's border. If the window is gone,
  // `parts` stays as it is.
  void takeDamage(xcb::Region& parts);
  // The request that took the damage last: earlier reports of it mean nothing any more.
  [[nodiscard]] std::uint32_t lastTaking() const { return lastTaking_; }

 private:
  xcb::Connection& connection_;
  xcb_window_t window_;
  xcb_render_pictformat_t format_;
  xcb_damage_damage_t damage_;
  std::uint32_t lastTaking_ = 0;
  bool isRedirected_ = false;
  std::optional<xcb_render_picture_t> picture_;
  WindowEffect effect_;
  std::optional<xcb_render_picture_t> mask_;
  xcb::Region outline_;
  bool hasOutline_ = false;
};

}  // namespace platform::linux::compositor
