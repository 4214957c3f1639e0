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
  looking_.emplace();
  looking_->setInterval(pause);
  QObject::connect(&*looking_, &QTimer::timeout, &*looking_, [this] { look(); });
  watch(QDBusConnection::sessionBus());
}

SessionBusReturn::~SessionBusReturn() {
  // Before the connection: the library still reaches for what it calls while it closes one, on a thread of its own.
  looking_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

void SessionBusReturn::watch(QDBusConnection bus) {
  // No bus sends this: the library does, to its own process.
  bus.connect(QString{}, QStringLiteral("/org/freedesktop/DBus/Local"), QStringLiteral("org.freedesktop.DBus.Local"),
              QStringLiteral("Disconnected"), &*looking_, SLOT(start()));
}

void SessionBusReturn::look() {
  // What is left of the last connection; the library would hand it out again.
  QDBusConnection::disconnectFromBus(name_);
  const QDBusConnection bus = QDBusConnection::connectToBus(QDBusConnection::SessionBus, name_);
  if (!bus.isConnected()) return;
  looking_->stop();
  watch(bus);
  returned_(bus);
}

}  // namespace platform::linux::session
