// A service of the desktop that gives programs keys.
//
// Threads: main thread only; what the listener is told comes from the event loop. A listener must not destroy the
// service.
// Lifetime: asks for the keys when it is made, and gives them back when it goes.
#pragma once

#include <functional>
#include <string>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Shortcuts/KeySymbols.h"

namespace platform::linux::shortcuts {

struct Shortcut {
  HotKeyPurpose purpose;        // its name tells it from the others
  std::uint32_t modifiers = 0;  // of `hotkeymodifiers`
  KeySymbol symbol;
};

struct ShortcutListener {
  std::function<void(const std::string& name)> pressed;
  // Each time it changes.
  std::function<void(const std::string& name, const HotKeyStanding& standing)> answered;
};

class ShortcutService {
 public:
  ShortcutService() = default;
  virtual ~ShortcutService() = default;
  ShortcutService(const ShortcutService&) = delete;
  ShortcutService& operator=(const ShortcutService&) = delete;
};

}  // namespace platform::linux::shortcuts
