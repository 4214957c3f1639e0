// By which numbers the requests that read the screen are known, and what stands for the screen.
//
// Threads: plain values; `ScreenNames` is shared by all connections of a lens, on the thread that relays them.
#pragma once

#include <cstdint>

namespace platform::x11::lens {

// The major numbers that the server gave its extensions; 0 for one that it lacks.
struct ExtensionNumbers {
  std::uint8_t bigRequests = 0;
  std::uint8_t composite = 0;
  std::uint8_t render = 0;
  std::uint8_t sharedMemory = 0;
  std::uint8_t directRendering = 0;
};

struct ScreenNames {
  ExtensionNumbers extensions;
  std::uint32_t root = 0;
  std::uint32_t rootVisual = 0;
  // The window in which a compositing manager shows its work; 0 until a client is told.
  std::uint32_t overlay = 0;
  // Pictures of the real root window, without and with the windows on it: for those who draw to it.
  std::uint32_t rootPicture = 0;
  std::uint32_t rootPictureOverWindows = 0;

  [[nodiscard]] bool isScreen(std::uint32_t drawable) const {
    return drawable != 0 && (drawable == root || drawable == overlay);
  }
};

}  // namespace platform::x11::lens
