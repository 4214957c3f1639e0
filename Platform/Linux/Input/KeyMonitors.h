// Sees every key press that reaches this application, before its windows do.
//
// Threads: main thread only.
#pragma once

#include <QKeyEvent>
#include <QObject>
#include <cstdint>
#include <functional>
#include <map>

#include "Platform/Windows.h"

namespace platform::linux::input {

class KeyMonitors : private QObject {
 public:
  KeyMonitors();

  // If the handler returns true, the key goes no further. A handler may remove monitors, its own included.
  EventMonitor add(std::function<bool(const KeyEvent&)> handler);
  // Harmless if it was removed before.
  void remove(EventMonitor monitor);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;

  std::map<std::uint64_t, std::function<bool(const KeyEvent&)>> handlers_;
  std::uint64_t last_ = 0;
};

// The key as a virtual key code of the ANSI layout: Escape by its meaning, all others by position. A key that this
// layout lacks gives 0xFFFF.
[[nodiscard]] KeyEvent toKeyEvent(const QKeyEvent& event);

}  // namespace platform::linux::input
