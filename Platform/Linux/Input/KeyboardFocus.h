// The keyboard focus for windows that no window manager manages.
//
// Nobody gives such windows the focus, and nobody returns it to the program that had it: this does both. In a Wayland
// session, the compositor decides which program gets the keys at all. Some give them to a window that has grabbed the
// keyboard and take any focus back; others follow the focus, once they know the window.
// Threads: main thread only.
#pragma once

#include <QWidget>
#include <memory>

namespace platform::linux::input {

// While a loan is held, the focus may move among our windows. When the last holder releases it, with its window already
// off the screen, the focus returns to where it was, unless it has moved elsewhere by itself.
class FocusLoan;

class KeyboardFocus {
 public:
  enum class Manner { byFocus, byGrabAndFocus };
  explicit KeyboardFocus(Manner manner = Manner::byFocus) : manner_(manner) {}

  [[nodiscard]] std::shared_ptr<FocusLoan> borrow();
  // The window must be shown. A grab ends when it is hidden.
  void give(QWidget& window) const;

 private:
  Manner manner_;
  std::weak_ptr<FocusLoan> loan_;
};

}  // namespace platform::linux::input
