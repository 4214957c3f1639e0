// The numbers by which requests that read the screen are recognised, and what stands for the screen.
//
// Threads: plain values. All connections of a lens share one `ScreenNames`, on the thread that relays them.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

namespace platform::linux::protocol {

// The major opcodes that the server gave its extensions; 0 for one that it lacks.
struct ExtensionNumbers {
  std::uint8_t bigRequests = 0;
  std::uint8_t composite = 0;
  std::uint8_t render = 0;
  std::uint8_t sharedMemory = 0;
  std::uint8_t directRendering = 0;
  std::uint8_t damage = 0;
  std::uint8_t damageEvent = 0;  // the type of its only event
};

// Where programs follow changes of the picture. Nothing is ever drawn to a board; changes are only reported on it,
// whatever pixmap the picture is in.
struct DamageBoards {
  std::vector<std::uint32_t> pixmaps;  // the last one is for those who begin now
  std::uint32_t whole = 0;             // a region: the whole screen
  std::uint16_t width = 0;             // of the screen
  std::uint16_t height = 0;

  [[nodiscard]] bool holds(std::uint32_t drawable) const {
    return std::ranges::find(pixmaps, drawable) != pixmaps.end();
  }
};

struct ScreenNames {
  ExtensionNumbers extensions;
  std::uint32_t root = 0;
  std::uint32_t rootVisual = 0;
  // The window in which a compositing manager shows its work; 0 until some client is told of it.
  std::uint32_t overlay = 0;
  // Pictures of the real root window, without and with the windows on it, for programs that draw to it.
  std::uint32_t rootPicture = 0;
  std::uint32_t rootPictureOverWindows = 0;
  DamageBoards boards;

  [[nodiscard]] bool isScreen(std::uint32_t drawable) const {
    return drawable != 0 && (drawable == root || drawable == overlay);
  }
};

}  // namespace platform::linux::protocol
