// What lies beneath all windows: the root window's background, or what a compositing manager paints instead.
//
// Threads: that of its connection. Units and axes: root pixels. Ownership: owns the picture; the connection must
// outlive it.
// Failure: without a usable wallpaper, the plain colour that the compositing manager paints.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>

#include <optional>

#include "Platform/Linux/Compositor/DesktopPainting.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Coordinates.h"

namespace platform::linux::compositor {

class Wallpaper {
 public:
  Wallpaper(xcb::Connection& connection, const xcb::PixelRect& source);
  ~Wallpaper();
  Wallpaper(const Wallpaper&) = delete;
  Wallpaper& operator=(const Wallpaper&) = delete;

  // Whether the event means a new wallpaper. A program that paints the root window's background without setting the
  // usual properties goes unnoticed until the picture is made anew.
  [[nodiscard]] bool isChangedBy(const xcb_generic_event_t& event) const;
  void forget();

  // Made on first use, which waits for the server under a compositing manager (given by its window). `part` is the
  // picture's rectangle within the source.
  [[nodiscard]] xcb_render_picture_t picture(xcb_window_t compositingManager);
  [[nodiscard]] xcb::PixelRect part() const { return part_; }

 private:
  void makeFromRootWindow();
  [[nodiscard]] DesktopPainting paintingOf(xcb_window_t compositingManager) const;
  [[nodiscard]] bool makeFromProperty(xcb_atom_t property, const DesktopPainting& painting);
  void makePlain(const DesktopPainting& painting);

  xcb::Connection& connection_;
  xcb::PixelRect source_;
  // The two properties in which wallpaper setters leave the pixmap, in order of trust.
  xcb_atom_t rootPixmap_;
  xcb_atom_t setRootPixmap_;
  xcb_atom_t comptonVersion_;
  std::optional<xcb_render_picture_t> picture_;
  xcb::PixelRect part_;
};

}  // namespace platform::linux::compositor
