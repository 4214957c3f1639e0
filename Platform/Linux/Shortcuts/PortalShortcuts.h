// Keys from the desktop's portal, which may ask its user once: "org.freedesktop.portal.GlobalShortcuts".
//
// The keys belong to a session of the portal, which ends with our connection to the bus, however the program ends.
// Contract: see ShortcutService. The connection must be used for nothing else: a portal accepts the program's name only
// before anything else is asked of it.
#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QString>
#include <memory>
#include <vector>

#include "Platform/Linux/Shortcuts/BusSignal.h"
#include "Platform/Linux/Shortcuts/PortalRequest.h"
#include "Platform/Linux/Shortcuts/ShortcutService.h"

namespace platform::linux::shortcuts {

inline constexpr const char* portalShortcutsInterface = "org.freedesktop.portal.GlobalShortcuts";

class PortalShortcuts final : public ShortcutService {
 public:
  PortalShortcuts(QDBusConnection bus, std::vector<Shortcut> shortcuts, ShortcutListener listener);
  ~PortalShortcuts() override;

 private:
  void introduce();
  void createSession();
  void bind();
  // What the portal lists it has given; `others` for the rest.
  void accept(const QVariant& listed, HotKeyStanding::Kind others);
  void answerAll(const HotKeyStanding& standing);
  void pressed(const QDBusMessage& activation);
  void request(const QDBusMessage& method, const QVariantMap& options, PortalRequest::Answer answered);

  QDBusConnection bus_;
  std::vector<Shortcut> shortcuts_;
  ShortcutListener listener_;
  QString session_;  // empty until there is one
  QObject context_;
  std::vector<std::unique_ptr<PortalRequest>> requests_;
  BusSignal activated_;
  BusSignal changed_;
  std::unique_ptr<BusSignal> closed_;
};

}  // namespace platform::linux::shortcuts
