#include "Platform/Linux/Session/DesktopNotifications.h"

#include <fcntl.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QStringList>
#include <QVariantMap>
#include <filesystem>

#include "Platform/Linux/Posix/ApplicationIdentifier.h"
#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::session {

void DesktopNotifications::showOnce(const std::string& name, const Notification& notification) {
  if (!claim(name)) return;
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  constexpr QLatin1String service("org.freedesktop.Notifications");
  QDBusMessage call = QDBusMessage::createMethodCall(service, QStringLiteral("/org/freedesktop/Notifications"), service,
                                                     QStringLiteral("Notify"));
  constexpr uint replacesNone = 0;
  constexpr int asLongAsUsual = -1;
  const QVariantMap hints{{QStringLiteral("desktop-entry"), QString::fromLatin1(posix::applicationIdentifier)}};
  // The service reads the text as markup.
  call << QStringLiteral("Quillfade") << replacesNone << QString::fromLatin1(posix::applicationIdentifier)
       << QString::fromStdString(notification.title) << QString::fromStdString(notification.text).toHtmlEscaped()
       << QStringList{} << hints << asLongAsUsual;
  bus.call(call, QDBus::NoBlock);
}

bool DesktopNotifications::claim(const std::string& name) const {
  std::error_code ignored;  // the file then cannot be created either
  std::filesystem::create_directories(stateDirectory_, ignored);
  return posix::openRegularFile(stateDirectory_ + '/' + name, O_WRONLY | O_CREAT | O_EXCL).has_value();
}

}  // namespace platform::linux::session
