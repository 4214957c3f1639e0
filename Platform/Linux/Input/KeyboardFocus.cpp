#include "Platform/Linux/Input/KeyboardFocus.h"

#include <QTimer>
#include <chrono>

#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::input {

namespace {

// Until a compositor knows a window that is new.
constexpr std::chrono::milliseconds timeToBeKnown{200};

// No window manager stands in between, so the server has mapped the window by the time it reads this. Qt would wait
// for the map's event, and then the window mapped last would win, not the one requested last.
void focus(const QWidget& window) {
  xcb_connection_t* connection = toolkit::qtConnection();
  xcb_set_input_focus(connection, XCB_INPUT_FOCUS_PARENT, static_cast<xcb_window_t>(window.winId()), XCB_CURRENT_TIME);
  xcb_flush(connection);
}

// Another program may have done so already: the pointer is enough then.
void grab(const QWidget& window) {
  xcb_connection_t* connection = toolkit::qtConnection();
  const auto cookie = xcb_grab_keyboard(connection, 0, static_cast<xcb_window_t>(window.winId()), XCB_CURRENT_TIME,
                                        XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
  xcb_discard_reply(connection, cookie.sequence);
  xcb_flush(connection);
}

}  // namespace

class FocusLoan {
 public:
  FocusLoan() : before_(current()) {}
  ~FocusLoan() {
    if (!isRealWindow(before_) || isRealWindow(current())) return;
    xcb_connection_t* connection = toolkit::qtConnection();
    // The window may have gone meanwhile: the error is expected, and collected so that nobody logs it.
    const auto cookie =
        xcb_set_input_focus_checked(connection, XCB_INPUT_FOCUS_POINTER_ROOT, before_, XCB_CURRENT_TIME);
    const std::unique_ptr<xcb_generic_error_t, xcb::FreeDeleter> ignored(xcb_request_check(connection, cookie));
  }
  FocusLoan(const FocusLoan&) = delete;
  FocusLoan& operator=(const FocusLoan&) = delete;

 private:
  [[nodiscard]] static xcb_window_t current() {
    xcb_connection_t* connection = toolkit::qtConnection();
    if (!connection) return XCB_NONE;
    const auto reply = xcb::awaitReply(connection, xcb_get_input_focus_reply, xcb_get_input_focus(connection));
    return reply ? reply->focus : xcb_window_t{XCB_NONE};
  }
  // Excludes "no window", "whatever is under the pointer", and the root, which gets the focus when its window goes.
  [[nodiscard]] static bool isRealWindow(xcb_window_t window) {
    return window != XCB_NONE && window != XCB_INPUT_FOCUS_POINTER_ROOT &&
           window != toolkit::rootWindow(toolkit::qtConnection());
  }

  xcb_window_t before_;
};

std::shared_ptr<FocusLoan> KeyboardFocus::borrow() {
  auto loan = loan_.lock();
  if (!loan) loan_ = loan = std::make_shared<FocusLoan>();
  return loan;
}

void KeyboardFocus::give(QWidget& window) const {
  if (!toolkit::qtConnection()) {
    window.activateWindow();
    return;
  }
  if (manner_ == Manner::byFocus) return focus(window);
  grab(window);
  QTimer::singleShot(timeToBeKnown, &window, [&window] {
    if (window.isVisible()) focus(window);
  });
}

}  // namespace platform::linux::input
