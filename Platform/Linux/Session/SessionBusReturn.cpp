#include "Platform/Linux/Session/SessionBusReturn.h"

#include <chrono>
#include <cstdint>
#include <utility>

namespace platform::linux::session {
namespace {

constexpr std::chrono::seconds pause{1};

}  // namespace

SessionBusReturn::SessionBusReturn(std::function<void(const QDBusConnection&)> returned)
    : returned_(std::move(returned)),
      name_(QStringLiteral("session-bus-%1").arg(reinterpret_cast<std::uintptr_t>(this))) {
  query_.emplace();
  query_->setInterval(pause);
  QObject::connect(&*query_, &QTimer::timeout, &*query_, [this] { query(); });
  watch(QDBusConnection::sessionBus());
}

SessionBusReturn::~SessionBusReturn() {
  // Before the connection: while the library closes one, on a thread of its own, it still uses what it calls back.
  query_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

void SessionBusReturn::watch(QDBusConnection bus) {
  // No bus sends this signal: the library sends it to its own process.
  bus.connect(QString{}, QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
              QStringLiteral("Disconnected"), &*query_, SLOT(start()));
}

void SessionBusReturn::query() {
  // Drops what is left of the last connection, which the library would otherwise hand out again.
  QDBusConnection::disconnectFromBus(name_);
  const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name_);
  if (!bus.isConnected()) return;
  query_->stop();
  watch(bus);
  returned_(bus);
}

}  // namespace platform::linux::session
