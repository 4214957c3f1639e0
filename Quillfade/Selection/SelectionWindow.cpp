#include "Quillfade/Selection/SelectionWindow.h"

namespace quillfade {

SelectionWindow SelectionWindow::make(platform::Platform& platform, const platform::Rect& screenFrame) {
  namespace behavior = platform::collectionbehavior;
  const platform::WindowAttributes attributes{
      .contentRect = screenFrame,
      .style = platform::WindowStyle::borderless,
      .backing = platform::BackingStore::buffered,
      .isDeferred = false,
      .level = platform::screenSaverLevel,
      .collectionBehavior = behavior::canJoinAllSpaces | behavior::stationary | behavior::fullScreenAuxiliary,
      .hasShadow = false,
      .isOpaque = false,
      .backgroundColor = platform::colors::clear,
      .animationBehavior = platform::AnimationBehavior::none,
      .canBecomeKey = true,
      .canBecomeMain = true,
  };
  return {
      platform.windows().makeWindow(attributes),
      SelectionView::make(platform.views(), {{0, 0}, {screenFrame.width(), screenFrame.height()}}, platform.texts())};
}

}  // namespace quillfade
