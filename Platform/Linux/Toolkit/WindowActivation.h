// Brings one of our managed windows to the front, with the keyboard focus.
//
// Threads: main thread only.
#pragma once

#include <QWidget>

namespace platform::linux::toolkit {

// Window managers refuse a program that takes the focus on its own account. Here the user asked, through a tray or a
// global key that the window manager knows nothing of, so the request is made in the user's name, as a pager would.
void bringToFront(QWidget& window);

}  // namespace platform::linux::toolkit
