// Keys from KWin, which gives them at once and asks nobody: "org.kde.kglobalaccel".
//
// KWin remembers keys for programs that do not run. So they are unregistered at the end; after a kill, KWin keeps them,
// and pressing them does nothing, until the program asks for them anew.
// Contract: see ShortcutService. Giving the keys back waits for the answer, a second at most.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <vector>

#include "Platform/Linux/Shortcuts/BusSignal.h"
#include "Platform/Linux/Shortcuts/ShortcutService.h"

namespace platform::linux::shortcuts {

inline constexpr const char* kwinKeysName = "org.kde.kglobalaccel";
// Elsewhere than under KWin, a service of the first name cannot see the keyboard of a Wayland session.
inline constexpr const char* kwinName = "org.kde.KWin";

class KWinShortcuts final : public ShortcutService {
 public:
  KWinShortcuts(QDBusConnection bus, std::vector<Shortcut> shortcuts, ShortcutListener listener);
  ~KWinShortcuts() override;

 private:
  void ask(const Shortcut& shortcut);
  void answer(const Shortcut& shortcut, const std::vector<int>& keys, HotKeyStanding::Kind without);
  [[nodiscard]] const Shortcut* find(const QString& name) const;

  QDBusConnection bus_;
  std::vector<Shortcut> shortcuts_;
  ShortcutListener listener_;
  QObject context_;
  BusSignal pressed_;
  BusSignal changed_;
};

}  // namespace platform::linux::shortcuts
