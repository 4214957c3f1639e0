#include "Quillfade/Selection/RegionSelector.h"

#include <algorithm>
#include <utility>

#include "Quillfade/Basics/Fatal.h"

namespace quillfade {

void RegionSelector::begin(Completion completion) {
  if (!windows_.empty()) return;
  completion_ = std::move(completion);
  auto* application = platform_.sharedApplication();
  if (application == nullptr) fatalError("there is no application to activate for an area selection");
  application->activateIgnoringOtherApps();
  for (const auto& screen : platform_.screens().all()) openWindow(screen);
  focusWindowUnderPointer();
  installKeyMonitor();
}

void RegionSelector::openWindow(const platform::Screen& screen) {
  auto selection = SelectionWindow::make(platform_, screen.frame);
  selection.view->setOnFinish([weakSelector = weak_from_this()](std::optional<platform::Rect> rect) {
    if (const auto selector = weakSelector.lock()) selector->finish(rect);
  });
  selection.window->setContentView(selection.view->view());
  selection.window->makeKeyAndOrderFront();
  selection.window->makeFirstResponder(*selection.view->view());
  windows_.push_back(std::move(selection));
}

void RegionSelector::focusWindowUnderPointer() {
  const auto pointer = platform_.screens().mouseLocation();
  const auto under = std::ranges::find_if(
      windows_, [&](const auto& selection) { return selection.window->frame().contains(pointer); });
  if (under != windows_.end()) under->window->makeKey();
}

void RegionSelector::installKeyMonitor() {
  keyMonitor_ =
      platform_.windows().addLocalKeyDownMonitor([weakSelector = weak_from_this()](const platform::KeyEvent& event) {
        if (event.keyCode != platform::escapeKeyCode) return false;
        if (const auto selector = weakSelector.lock()) selector->finish(std::nullopt);
        return true;
      });
}

void RegionSelector::finish(const std::optional<platform::Rect>& rect) {
  if (!completion_) return;
  auto completion = std::exchange(completion_, nullptr);
  if (keyMonitor_) platform_.windows().removeMonitor(*std::exchange(keyMonitor_, std::nullopt));
  // Released only on a later turn: this call may come from inside one of the views.
  auto closing = std::make_shared<std::vector<SelectionWindow>>(std::exchange(windows_, {}));
  for (const auto& selection : *closing) selection.window->orderOut();
  platform_.runLoop().post([completion = std::move(completion), rect, closing = std::move(closing)]() mutable {
    closing = nullptr;
    completion(rect);
  });
}

}  // namespace quillfade
