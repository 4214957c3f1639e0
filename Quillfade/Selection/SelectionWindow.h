// One screen's part of an area selection: a transparent window in front of the whole screen, and its view.
//
// Threads: main thread only.
#pragma once

#include <memory>

#include "Platform/Platform.h"
#include "Quillfade/Selection/SelectionView.h"

namespace quillfade {

struct SelectionWindow {
  std::unique_ptr<platform::Window> window;
  std::shared_ptr<SelectionView> view;

  // Not on screen yet. Borderless, yet able to take the keyboard.
  static SelectionWindow make(platform::Platform& platform, const platform::Rect& screenFrame);
};

}  // namespace quillfade
