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

  // True from the handler swallows the key. A handler may remove monitors, its own included.
  EventMonitor add(std::function<bool(const KeyEvent&)> handler);
  // Harmless for one that was removed before.
  void remove(EventMonitor monitor);

 private:
  bool eventFilter(QObject* watched, QEvent* event) override;

  std::map<std::uint64_t, std::function<bool(const KeyEvent&)>> handlers_;
  std::uint64_t last_ = 0;
};

// The key as a virtual key code of the ANSI layout: by what it means for Escape, by its position for all others.
// A key that this layout does not have gives 0xFFFF.
[[nodiscard]] KeyEvent toKeyEvent(const QKeyEvent& event);

}  // namespace platform::linux::input
