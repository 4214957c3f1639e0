#include "Platform/Linux/Shortcuts/Offer.h"

#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>

#include "Platform/Linux/Shortcuts/KWinShortcuts.h"
#include "Platform/Linux/Shortcuts/PortalShortcuts.h"

namespace platform::linux::shortcuts {

bool desktopGivesKeys() {
  constexpr int longestWait = 3000;  // milliseconds
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  const auto isThere = [&](const char* name) {
    return bus.interface()->isServiceRegistered(QString::fromLatin1(name)).value();
  };
  if (isThere(kwinKeysName) && isThere(kwinName)) return true;
  QDBusMessage question =
      QDBusMessage::createMethodCall(QString::fromLatin1(portalName), QString::fromLatin1(portalPath),
                                     QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << QString::fromLatin1(portalShortcutsInterface) << QStringLiteral("version");
  return bus.call(question, QDBus::Block, longestWait).type() == QDBusMessage::ReplyMessage;
}

}  // namespace platform::linux::shortcuts
