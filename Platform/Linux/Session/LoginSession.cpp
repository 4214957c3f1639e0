#include "Platform/Linux/Session/LoginSession.h"

#include <QDBusObjectPath>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <utility>

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::session {
namespace {

const QString loginService = QStringLiteral("org.freedesktop.login1");
const QString managerPath = QStringLiteral("/org/freedesktop/login1");
const QString managerInterface = QStringLiteral("org.freedesktop.login1.Manager");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");
const QString propertiesInterface = QStringLiteral("org.freedesktop.DBus.Properties");
// The caller's session, else that of the user's display.
constexpr const char* anySession = "auto";

}  // namespace

LoginSession::LoginSession(LoginSessionListener listener)
    : listener_(std::move(listener)),
      bus_(QDBusConnection::systemBus()),
      watcher_(loginService, bus_, QDBusServiceWatcher::WatchForRegistration) {
  if (!bus_.isConnected()) return;
  QObject::connect(&lock_, &QAction::triggered, &context_, [this] { listener_.lockRequested(); });
  QObject::connect(&unlock_, &QAction::triggered, &context_, [this] { listener_.unlockRequested(); });
  QObject::connect(&watcher_, &QDBusServiceWatcher::serviceRegistered, &context_, [this] { find(); });
  find();
}

void LoginSession::find() {
  if (lockedHint_) return;
  QDBusMessage question =
      QDBusMessage::createMethodCall(loginService, managerPath, managerInterface, QStringLiteral("GetSession"));
  question << QString::fromStdString(posix::environmentVariable("XDG_SESSION_ID").value_or(anySession));
  question.setAutoStartService(false);
  auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(question), &context_);
  QObject::connect(call, &QDBusPendingCallWatcher::finished, &context_, [this, call] {
    call->deleteLater();
    const QDBusPendingReply<QDBusObjectPath> path = *call;
    if (path.isValid() && !lockedHint_) follow(path.value().path());
  });
}

void LoginSession::follow(const QString& path) {
  bus_.connect(loginService, path, sessionInterface, QStringLiteral("Lock"), &lock_, SLOT(trigger()));
  bus_.connect(loginService, path, sessionInterface, QStringLiteral("Unlock"), &unlock_, SLOT(trigger()));
  QDBusMessage question =
      QDBusMessage::createMethodCall(loginService, path, propertiesInterface, QStringLiteral("Get"));
  question << sessionInterface << QStringLiteral("LockedHint");
  lockedHint_.emplace(
      BusFlag::Source{bus_, loginService, path, propertiesInterface, QStringLiteral("PropertiesChanged"), question},
      listener_.lockedHintChanged);
}

}  // namespace platform::linux::session
