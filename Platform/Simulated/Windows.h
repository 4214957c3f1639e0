// Windows that tests can inspect, even after they are gone, and the key presses and mouse moves that reach them.
//
// Threads: main thread only.
// Ownership: the caller of `makeWindow` owns the handle; its state is kept here for the tests.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/Views.h"
#include "Platform/Windows.h"

namespace platform::simulated {

struct WindowState {
  int number = 0;  // in the order of creation, from 1
  WindowAttributes attributes;
  Rect frame;
  std::shared_ptr<View> contentView;
  const platform::View* firstResponder = nullptr;
  bool isAlive = true;  // its handle exists
  bool isOnScreen = false;
};

enum class KeyOutcome { swallowedByMonitor, takenByView, notTaken };

class Windows final : public platform::Windows {
 public:
  static constexpr WindowLevel level = 2'147'483'628;

  explicit Windows(Record& record) : record_(record) {}

  std::unique_ptr<Window> makeWindow(const WindowAttributes& attributes) override;
  [[nodiscard]] WindowLevel shieldingLevel() const override;
  void setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap) override {
    mayOverlap_ = std::move(mayOverlap);
  }
  EventMonitor addLocalKeyDownMonitor(std::function<bool(const KeyEvent&)> handler) override;
  void removeMonitor(EventMonitor monitor) override;

  // Every window ever made, in order.
  [[nodiscard]] const std::vector<std::shared_ptr<WindowState>>& made() const { return made_; }
  // The windows on the screen, bottom to top.
  [[nodiscard]] const std::vector<std::shared_ptr<WindowState>>& onScreen() const { return stack_; }
  [[nodiscard]] std::shared_ptr<WindowState> keyWindow() const { return keyWindow_.lock(); }
  // The topmost window that a click at this point reaches; null when the click reaches another application.
  [[nodiscard]] std::shared_ptr<WindowState> clickTarget(Point point) const;
  // Whether windows at the shielding level may cover this one if it could be a lock screen.
  [[nodiscard]] bool mayOverlap(const CaptureWindow& window) const { return mayOverlap_ && mayOverlap_(window); }
  [[nodiscard]] std::size_t monitorCount() const { return monitors_.size(); }
  KeyOutcome pressKey(KeyEvent event);

  // Called by the windows' handles.
  void orderFront(const std::shared_ptr<WindowState>& window);
  void orderOut(const std::shared_ptr<WindowState>& window);
  void makeKey(const std::shared_ptr<WindowState>& window);

 private:
  struct Monitor {
    EventMonitor reference{};
    std::shared_ptr<const std::function<bool(const KeyEvent&)>> handler;
  };

  Record& record_;
  std::vector<std::shared_ptr<WindowState>> made_;
  std::vector<std::shared_ptr<WindowState>> stack_;
  std::weak_ptr<WindowState> keyWindow_;
  std::vector<Monitor> monitors_;
  std::uint64_t monitorsMade_ = 0;
  std::function<bool(const CaptureWindow&)> mayOverlap_;
};

}  // namespace platform::simulated
