// What lies beneath all windows: the background of the root window, or what a compositing manager paints in its place.
//
// Threads: that of its connection.
// Units and axes: root pixels.
// Ownership: RAII; the connection must outlive it.
// Failure: where no picture can be had, the plain one that the compositing manager paints without a wallpaper.
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

  // Whether the event means that the wallpaper is another one. A program that paints the root window's background
  // without saying so in the usual properties is not noticed before the picture is made anew.
  [[nodiscard]] bool isChangedBy(const xcb_generic_event_t& event) const;
  void forget();

  // Made on first use; under a compositing manager, given by its window, that takes answers from the server. `part` is
  // the rectangle of the picture that lies in the source.
  [[nodiscard]] xcb_render_picture_t picture(xcb_window_t compositingManager);
  [[nodiscard]] xcb::PixelRect part() const { return part_; }

 private:
  void makeFromRootWindow();
  [[nodiscard]] DesktopPainting paintingOf(xcb_window_t compositingManager) const;
  [[nodiscard]] bool makeFromProperty(xcb_atom_t property, const DesktopPainting& painting);
  void makePlain(const DesktopPainting& painting);

  xcb::Connection& connection_;
  xcb::PixelRect source_;
  // The two names under which setters of wallpapers leave the pixmap, in the order in which they are believed.
  xcb_atom_t rootPixmap_;
  xcb_atom_t setRootPixmap_;
  xcb_atom_t comptonVersion_;
  std::optional<xcb_render_picture_t> picture_;
  xcb::PixelRect part_;
};

}  // namespace platform::linux::compositor
