// Hot keys in a Wayland session, where no program can grab keys: a service of the desktop gives them.
//
// Under KWin that is KWin itself, else the desktop's portal. If the service goes and comes back, it is asked anew.
// A combination that an ordinary keyboard has gives a reference at once; its standing is `awaited` until the desktop
// has answered, and presses arrive while it is `held`. Threads: main thread only. Lifetime: the X connection, whose
// keyboard tells what is printed on the keys, must outlive the object. Keys that are still registered are given back
// when it goes. Failure: without a service, or without a session bus, all keys are `unavailable`.
#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "Platform/HotKeys.h"
#include "Platform/Linux/Input/HotKeyHandlers.h"
#include "Platform/Linux/Session/SessionBusReturn.h"
#include "Platform/Linux/Shortcuts/ShortcutService.h"
#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::shortcuts {

class SessionHotKeys final : public platform::HotKeys {
 public:
  explicit SessionHotKeys(const xcb::Connection& connection);
  ~SessionHotKeys() override;
  SessionHotKeys(const SessionHotKeys&) = delete;
  SessionHotKeys& operator=(const SessionHotKeys&) = delete;

  std::optional<HotKeyHandlerReference> installHandler(HotKeyHandler handler, void* userData) override;
  void removeHandler(HotKeyHandlerReference handler) override;
  void describe(HotKeyID id, const HotKeyPurpose& purpose) override;
  std::optional<HotKeyReference> registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers, HotKeyID id) override;
  void unregisterHotKey(HotKeyReference reference) override;
  [[nodiscard]] bool isHeld(HotKeyReference reference) const override;
  [[nodiscard]] HotKeyStanding standing(HotKeyReference reference) const override;

 private:
  enum class Provider { none, kwin, portal };
  struct Binding {
    std::uint32_t keyCode;
    std::uint32_t modifiers;
    HotKeyID id;
    HotKeyStanding standing;
  };

  void follow(const QDBusConnection& bus);
  void ownerChanged(const QString& name, const QString& before, const QString& now);
  // Forgets what was asked for, and asks again once the main loop has time.
  void askAnew(int delay);
  void choose();
  void ask(Provider provider);
  void stop(HotKeyStanding::Kind kind);
  void pressed(const std::string& name);
  void answered(const std::string& name, const HotKeyStanding& standing);
  [[nodiscard]] HotKeyPurpose purposeOf(HotKeyID id) const;
  [[nodiscard]] bool lacksService() const;

  const xcb::Connection& connection_;
  QDBusConnection bus_;
  session::SessionBusReturn busReturn_;
  input::HotKeyHandlers handlers_;
  std::map<std::uint32_t, HotKeyPurpose> purposes_;  // by the number of the id
  std::uint64_t lastReference_ = 0;
  std::map<HotKeyReference, Binding> bindings_;
  std::unique_ptr<QDBusServiceWatcher> watcher_;
  std::unique_ptr<QObject> question_;  // which services there are; its answer is ignored once this has gone
  Provider provider_ = Provider::none;
  std::unique_ptr<ShortcutService> service_;
  int portalsLost_ = 0;  // since one last gave a key
  QTimer ask_;
};

}  // namespace platform::linux::shortcuts
