#include "Platform/Linux/Session/BusFlag.h"

#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <utility>

namespace platform::linux::session {
namespace {

bool isTrue(const QDBusMessage& reply) {
  // An error carries a text, which would count as true.
  if (reply.type() != QDBusMessage::ReplyMessage) return false;
  const QVariant first = reply.arguments().value(0);
  return first.canConvert<QDBusVariant>() ? first.value<QDBusVariant>().variant().toBool() : first.toBool();
}

}  // namespace

BusFlag::BusFlag(Source source, std::function<void(bool)> changed)
    : source_(std::move(source)),
      changed_(std::move(changed)),
      watcher_(source_.service, source_.bus, QDBusServiceWatcher::WatchForOwnerChange) {
  source_.question.setAutoStartService(false);
  hint_.setSingleShot(true);
  hint_.setInterval(0);
  QObject::connect(&hint_, &QTimer::timeout, &context_, [this] { ask(); });
  QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &context_, [this] { ask(); });
  source_.bus.connect(source_.service, source_.path, source_.signalInterface, source_.signal, &hint_, SLOT(start()));
  ask();
}

void BusFlag::ask() {
  auto* call = new QDBusPendingCallWatcher(source_.bus.asyncCall(source_.question), &context_);
  QObject::connect(call, &QDBusPendingCallWatcher::finished, &context_, [this, call, number = ++lastQuestion_] {
    call->deleteLater();
    // An answer overtaken by another question says nothing about now.
    if (number == lastQuestion_) set(isTrue(call->reply()));
  });
}

void BusFlag::set(bool value) {
  if (std::exchange(value_, value) != value) changed_(value);
}

}  // namespace platform::linux::session
