#include "Platform/Linux/Toolkit/OffTaskLists.h"

#include <QCoreApplication>
#include <QWidget>
#include <array>

#include "Platform/Linux/Toolkit/QtX11.h"

namespace platform::linux::toolkit {

namespace {

// A window that is not mapped yet states its wishes in the property itself. Qt adds its own to those it finds there.
void requestNoEntry(xcb_connection_t* connection, xcb_window_t window) {
  const std::array states{atomNamed(connection, "_NET_WM_STATE_SKIP_TASKBAR"),
                          atomNamed(connection, "_NET_WM_STATE_SKIP_PAGER")};
  xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, atomNamed(connection, "_NET_WM_STATE"), XCB_ATOM_ATOM,
                      32, states.size(), states.data());
}

}  // namespace

OffTaskLists::OffTaskLists() { QCoreApplication::instance()->installEventFilter(this); }

bool OffTaskLists::eventFilter(QObject* watched, QEvent* event) {
  // A spontaneous show event comes from the window manager, for a window that is already mapped.
  if (event->type() != QEvent::Show || event->spontaneous()) return false;
  const auto* widget = qobject_cast<QWidget*>(watched);
  xcb_connection_t* connection = qtConnection();
  if (widget != nullptr && widget->isWindow() && connection != nullptr)
    requestNoEntry(connection, static_cast<xcb_window_t>(widget->winId()));
  return false;
}

}  // namespace platform::linux::toolkit
