#include "Platform/Linux/Input/KeyMonitors.h"

#include <QCoreApplication>
#include <utility>
#include <vector>

#include "Platform/Linux/Input/HotKeysCodes.h"

namespace platform::linux::input {

KeyMonitors::KeyMonitors() { QCoreApplication::instance()->installEventFilter(this); }

EventMonitor KeyMonitors::add(std::function<bool(const KeyEvent&)> handler) {
  handlers_.emplace(++last_, std::move(handler));
  return EventMonitor{last_};
}

void KeyMonitors::remove(EventMonitor monitor) { handlers_.erase(std::to_underlying(monitor)); }

bool KeyMonitors::eventFilter(QObject* watched, QEvent* event) {
  // Qt delivers a key to the window first and then to its focused widget; once is enough.
  if (event->type() != QEvent::KeyPress || !watched->isWindowType()) return false;
  const KeyEvent key = toKeyEvent(*static_cast<QKeyEvent*>(event));
  const auto handlers = handlers_;
  for (const auto& [number, handler] : handlers)
    if (handlers_.contains(number) && handler(key)) return true;
  return false;
}

KeyEvent toKeyEvent(const QKeyEvent& event) {
  constexpr std::uint16_t unknown = 0xFFFF;
  constexpr std::uint16_t virtualKeys = 0x80;
  if (event.key() == Qt::Key_Escape) return {escapeKeyCode};
  for (std::uint16_t code = 0; code < virtualKeys; ++code) {
    const auto position = keyCodeForVirtualKey(code);
    if (position && *position == event.nativeScanCode()) return {code};
  }
  return {unknown};
}

}  // namespace platform::linux::input
