// The keyboard focus for windows that no window manager manages.
//
// Nobody gives such windows the focus, and nobody returns it to the program that had it: this does both.
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
  [[nodiscard]] std::shared_ptr<FocusLoan> borrow();
  // The window must be shown.
  static void give(QWidget& window);

 private:
  std::weak_ptr<FocusLoan> loan_;
};

}  // namespace platform::linux::input
