// Dialogs on a screen of 256 colours, where Qt shows its windows but cannot paint them.
//
// Threads: main thread only.
#pragma once

#include <QWidget>

namespace platform::linux::toolkit {

// On such a screen, paints the window in shades of grey in Qt's place for as long as it lives; elsewhere does nothing.
// Call it before the window is shown.
void paintOnShallowScreen(QWidget& window);

}  // namespace platform::linux::toolkit
