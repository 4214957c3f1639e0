#include "Platform/Linux/Cover/ManagerEcho.h"

#include <utility>

namespace platform::linux::cover {

namespace {

constexpr double patience = 0.1;  // seconds

}  // namespace

ManagerEcho::~ManagerEcho() {
  for (const auto& [window, question] : questions_) {
    question.patience->cancel();
    xcb_destroy_window(connection_.get(), window);
  }
}

void ManagerEcho::ask(Job answered) {
  const xcb_window_t window = connection_.newId();
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  const std::uint32_t elsewhere = 1;
  xcb_create_window(connection_.get(), 0, window, connection_.root(), 0, 0, 1, 1, 0, XCB_WINDOW_CLASS_INPUT_ONLY,
                    XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  xcb_configure_window(connection_.get(), window, XCB_CONFIG_WINDOW_X, &elsewhere);
  questions_[window] = {std::move(answered), runLoop_.after(patience, [this, window] { end(window); })};
}

void ManagerEcho::handle(const xcb_generic_event_t& event) {
  if (xcb::eventType(event) == XCB_CONFIGURE_NOTIFY) end(xcb::eventAs<xcb_configure_notify_event_t>(event).window);
}

void ManagerEcho::end(xcb_window_t window) {
  const auto found = questions_.extract(window);
  if (!found) return;
  found.mapped().patience->cancel();
  xcb_destroy_window(connection_.get(), window);
  found.mapped().answered();
}

}  // namespace platform::linux::cover
