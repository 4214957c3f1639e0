// Calls a method on a bus without waiting.
//
// Threads: main thread only; the answer comes from the event loop, unless the context has gone by then.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QObject>
#include <functional>
#include <utility>

namespace platform::linux::shortcuts {

inline void callMethod(const QDBusConnection& bus, const QDBusMessage& message, QObject& context,
                       std::function<void(const QDBusMessage&)> answered) {
  auto* call = new QDBusPendingCallWatcher(bus.asyncCall(message), &context);
  QObject::connect(call, &QDBusPendingCallWatcher::finished, &context, [call, answered = std::move(answered)] {
    call->deleteLater();
    answered(call->reply());
  });
}

}  // namespace platform::linux::shortcuts
