#include "Platform/Simulated/Windows.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace platform::simulated {

namespace {

class WindowHandle final : public Window {
 public:
  WindowHandle(Record& record, Windows& windows, std::shared_ptr<WindowState> state)
      : record_(record), windows_(windows), state_(std::move(state)) {}

  ~WindowHandle() override {
    note("release");
    windows_.orderOut(state_);
    state_->isAlive = false;
    if (state_->contentView) state_->contentView->setWindowFrame(nullptr);
  }

  WindowHandle(const WindowHandle&) = delete;
  WindowHandle& operator=(const WindowHandle&) = delete;

  void setContentView(std::shared_ptr<platform::View> view) override {
    note("set content view");
    auto own = std::dynamic_pointer_cast<View>(view);
    if (!own) misuse("Window::setContentView was given no view of this desktop");
    if (state_->contentView) state_->contentView->setWindowFrame(nullptr);
    state_->contentView = std::move(own);
    state_->firstResponder = nullptr;
    state_->contentView->setWindowFrame(&state_->frame);
  }

  void setFrame(const Rect& frame, bool display) override {
    note(display ? "set frame and display" : "set frame");
    expectFinite(frame, "Window::setFrame");
    state_->frame = frame;
    if (state_->contentView) state_->contentView->setWindowFrame(&state_->frame);
  }

  [[nodiscard]] Rect frame() const override {
    record_.expectMainThread("Window::frame");
    return state_->frame;
  }

  void orderFrontRegardless() override {
    note("order front");
    windows_.orderFront(state_);
  }

  void makeKeyAndOrderFront() override {
    note("make key and order front");
    windows_.orderFront(state_);
    windows_.makeKey(state_);
  }

  void makeKey() override {
    note("make key");
    if (!state_->isOnScreen) misuse("Window::makeKey was called on a window that is not on the screen");
    windows_.makeKey(state_);
  }

  void makeFirstResponder(platform::View& view) override {
    note("make first responder");
    const auto* const own = dynamic_cast<View*>(&view);
    const auto responder = own == nullptr ? nullptr : own->responder();
    if (responder && !responder->acceptsFirstResponder())
      misuse("Window::makeFirstResponder was given a view that refuses");
    state_->firstResponder = &view;
  }

  void orderOut() override {
    note("order out");
    windows_.orderOut(state_);
  }

 private:
  void note(const std::string& what) { record_.call("window " + std::to_string(state_->number) + ": " + what); }

  Record& record_;
  Windows& windows_;
  std::shared_ptr<WindowState> state_;
};

}  // namespace

std::unique_ptr<Window> Windows::makeWindow(const WindowAttributes& attributes) {
  auto state = std::make_shared<WindowState>();
  state->number = static_cast<int>(made_.size()) + 1;
  record_.call("window " + std::to_string(state->number) + ": make");
  expectFinite(attributes.contentRect, "Windows::makeWindow");
  state->attributes = attributes;
  state->frame = attributes.contentRect;
  made_.push_back(state);
  return std::make_unique<WindowHandle>(record_, *this, std::move(state));
}

WindowLevel Windows::shieldingLevel() const {
  record_.expectMainThread("Windows::shieldingLevel");
  return level;
}

EventMonitor Windows::addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) {
  record_.call("key monitor: add");
  if (!handler) misuse("Windows::addLocalKeyDownMonitor was given no handler");
  const EventMonitor reference{++monitorsMade_};
  monitors_.push_back({reference, std::make_shared<const std::function<bool(const KeyEvent&)>>(std::move(handler))});
  return reference;
}

void Windows::removeMonitor(EventMonitor monitor) {
  record_.call("key monitor: remove");
  if (std::erase_if(monitors_, [&](const Monitor& each) { return each.reference == monitor; }) == 0) {
    misuse("Windows::removeMonitor was given a monitor that is not installed");
  }
}

std::shared_ptr<WindowState> Windows::clickTarget(Point point) const {
  for (const auto& window : std::views::reverse(stack_)) {
    if (!window->attributes.ignoresMouseEvents && window->frame.contains(point)) return window;
  }
  return nullptr;
}

KeyOutcome Windows::pressKey(KeyEvent event) {
  // A copy that shares the handlers: a handler may remove its own monitor.
  const auto monitors = monitors_;
  for (const Monitor& monitor : monitors) {
    if ((*monitor.handler)(event)) return KeyOutcome::swallowedByMonitor;
  }
  const auto window = keyWindow();
  if (!window || !window->contentView || window->firstResponder != window->contentView.get())
    return KeyOutcome::notTaken;
  const auto responder = window->contentView->responder();
  return responder && responder->keyDown(event) ? KeyOutcome::takenByView : KeyOutcome::notTaken;
}

void Windows::orderFront(const std::shared_ptr<WindowState>& window) {
  std::erase(stack_, window);
  const auto above =
      std::ranges::find_if(stack_, [&](const auto& each) { return each->attributes.level > window->attributes.level; });
  stack_.insert(above, window);
  window->isOnScreen = true;
}

void Windows::orderOut(const std::shared_ptr<WindowState>& window) {
  std::erase(stack_, window);
  window->isOnScreen = false;
  if (keyWindow() == window) keyWindow_.reset();
}

void Windows::makeKey(const std::shared_ptr<WindowState>& window) {
  if (!window->attributes.canBecomeKey) misuse("a window that cannot become key was made key");
  keyWindow_ = window;
}

}  // namespace platform::simulated
