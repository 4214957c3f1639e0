// Tells other processes of this product which windows on the screen are its own.
//
// A program has several connections to the X server, and a toolkit makes some of its windows (menus, dialogs). So the
// mark names its clients, not its windows: a window that is never mapped carries a property with the resource bases of
// all of them. The window goes with its connection, so no mark outlives its program, however that ends.
// Threads: that of the connection. Ownership: owns the window; the connection must outlive it.
#pragma once

#include <xcb/xcb.h>

#include <cstdint>
#include <span>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::scene {

inline constexpr const char* productClientsProperty = "_QUILLFADE_CLIENTS";

class ProductMark {
 public:
  ProductMark(xcb::Connection& connection, std::span<const std::uint32_t> clients);
  ~ProductMark();
  ProductMark(const ProductMark&) = delete;
  ProductMark& operator=(const ProductMark&) = delete;

 private:
  xcb::Connection& connection_;
  xcb_window_t window_;
};

}  // namespace platform::linux::scene
