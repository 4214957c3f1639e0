#include "Platform/Linux/Tray/TrayHosts.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <utility>

#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::tray {

namespace {

constexpr QLatin1String watcherService("org.kde.StatusNotifierWatcher");
constexpr QLatin1String watcherPath("/StatusNotifierWatcher");
constexpr const char* traySelection = "_NET_SYSTEM_TRAY_S0";

bool announcesTray(const xcb_generic_event_t& event) {
  if (xcb::eventType(event) != XCB_CLIENT_MESSAGE) return false;
  const auto& message = xcb::eventAs<xcb_client_message_event_t>(event);
  xcb_connection_t* connection = toolkit::qtConnection();
  return connection && message.type == toolkit::atomNamed(connection, "MANAGER") &&
         message.data.data32[1] == toolkit::atomNamed(connection, traySelection);
}

}  // namespace

TrayHosts::TrayHosts() : bus_(QDBusConnection::sessionBus()) {
  for (QTimer* timer : {&hostCame_, &hostWent_}) {
    timer->setSingleShot(true);
    timer->setInterval(0);
  }
  QObject::connect(&hostCame_, &QTimer::timeout, &context_, [this] { notifyCame(); });
  QObject::connect(&hostWent_, &QTimer::timeout, &context_, [this] { notifyVanished(); });
  QCoreApplication::instance()->installNativeEventFilter(this);
  QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &context_,
                   [this](const QString&, const QString& oldOwner, const QString& newOwner) {
                     if (!oldOwner.isEmpty()) notifyVanished();
                     if (!newOwner.isEmpty()) notifyCame();
                   });
  listenToBus();
  query();
}

TrayHosts::~TrayHosts() = default;

void TrayHosts::whenAvailable(std::function<void()> callback) {
  waiting_.push_back(std::move(callback));
  if (isAvailable_) QMetaObject::invokeMethod(&context_, [this] { found(); }, Qt::QueuedConnection);
}

bool TrayHosts::nativeEventFilter(const QByteArray& eventType, void* message, qintptr* /*result*/) {
  if (!isAvailable_ && eventType == "xcb_generic_event_t" &&
      announcesTray(*static_cast<const xcb_generic_event_t*>(message)))
    query();
  return false;
}

void TrayHosts::listenToBus() {
  if (!bus_.isConnected()) return;
  watcher_.setConnection(bus_);
  watcher_.setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  watcher_.addWatchedService(watcherService);
  bus_.connect(watcherService, watcherPath, watcherService, QStringLiteral("StatusNotifierHostRegistered"), &hostCame_,
               SLOT(start()));
  bus_.connect(watcherService, watcherPath, watcherService, QStringLiteral("StatusNotifierHostUnregistered"),
               &hostWent_, SLOT(start()));
}

void TrayHosts::busReturned(const QDBusConnection& bus) {
  notifyVanished();
  bus_ = bus;
  isAvailable_ = false;
  waiting_.insert(waiting_.end(), told_.begin(), told_.end());
  told_.clear();
  listenToBus();
  query();
}

void TrayHosts::query() {
  if (isAvailable_) return;
  if (!bus_.isConnected()) {
    queryX11Tray();
    return;
  }
  QDBusMessage question = QDBusMessage::createMethodCall(
      watcherService, watcherPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << QString(watcherService) << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  auto* call = new QDBusPendingCallWatcher(bus_.asyncCall(question), &context_);
  QObject::connect(call, &QDBusPendingCallWatcher::finished, &context_, [this, call] {
    call->deleteLater();
    const QDBusPendingReply<QDBusVariant> reply = *call;
    if (reply.isValid() && reply.value().variant().toBool())
      found();
    else
      queryX11Tray();
  });
}

void TrayHosts::queryX11Tray() {
  xcb_connection_t* connection = toolkit::qtConnection();
  if (connection && toolkit::selectionOwner(connection, traySelection) != XCB_NONE) found();
}

void TrayHosts::found() {
  isAvailable_ = true;
  for (const auto& callback : std::exchange(waiting_, {})) {
    told_.push_back(callback);
    callback();
  }
}

void TrayHosts::notifyCame() {
  for (const auto& callback : std::vector(came_)) callback();
  query();
}

void TrayHosts::notifyVanished() {
  for (const auto& callback : std::vector(vanished_)) callback();
}

}  // namespace platform::linux::tray
