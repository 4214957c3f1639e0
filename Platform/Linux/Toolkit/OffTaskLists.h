// Keeps the application's windows off task bars, pagers and window switchers.
//
// Threads: main thread only. Lifetime: windows shown while this object lives stay off them as long as they are shown.
#pragma once

#include <QEvent>
#include <QObject>

namespace platform::linux::toolkit {

// For a window above all others. It cannot be minimised, since no task list would lead back to it.
inline constexpr Qt::WindowFlags dialogFlags =
    Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint | Qt::WindowStaysOnTopHint;

class OffTaskLists : public QObject {
 public:
  OffTaskLists();

  bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace platform::linux::toolkit
