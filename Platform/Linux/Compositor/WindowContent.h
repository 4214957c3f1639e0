// The pixels of one top-level window, even where it is hidden: its off-screen picture, its outline, and what was drawn
// to it since the last look. Everything stays in the X server.
//
// Threads: that of its connection. Units and axes: rectangles in root pixels; the outline in pixels of the picture
// being composed. Ownership: owns its server resources; the connection must outlive it.
// Failure: the window may be gone, unmapped or resized at any moment. Every request about it is sent with its errors
// expected. What cannot be had leaves an empty outline or a picture that paints nothing, until the event about it
// arrives.
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

  // The window as it is now, with its border. Named on first use.
  [[nodiscard]] xcb_render_picture_t picture();
  // The window's opacity as a mask; none when it is opaque.
  [[nodiscard]] xcb_render_picture_t mask();
  // The part of the window that is visible in a picture of `source`.
  [[nodiscard]] const xcb::Region& outline(const scene::SceneWindow& window, const xcb::PixelRect& source);
  // Call it after a resize, an unmap or a change of the compositing manager: the window then has other pixels.
  void forgetPicture();
  void forgetOutline() { hasOutline_ = false; }

  [[nodiscard]] const WindowEffect& effect() const { return effect_; }
  void setEffect(const WindowEffect& effect);

  [[nodiscard]] xcb_damage_damage_t damage() const { return damage_; }
  // Moves the damage into `parts`, in pixels from the inner corner of the window's border. If the window is gone,
  // `parts` stays as it is.
  void takeDamage(xcb::Region& parts);
  // The request that last took the damage: reports from before it are void.
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
