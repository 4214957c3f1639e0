#include "Quillfade/Cover/ScreenChoice.h"

namespace quillfade {

std::optional<platform::Screen> screenByCenter(const platform::Rect& rect, const platform::Screens& screens) {
  for (const auto& screen : screens.all()) {
    if (screen.frame.contains(rect.center())) return screen;
  }
  return screens.main();
}

}  // namespace quillfade
