// One signal of a service on a bus, with its arguments.
//
// Threads: main thread only; the callback comes from the event loop and must not destroy the object.
// Lifetime: nothing comes once the object is gone.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <functional>

namespace platform::linux::shortcuts {

class BusSignal final : public QObject {
  Q_OBJECT

 public:
  struct Source {
    QString service;
    QString path;  // any, if empty
    QString interface;
    QString name;
  };

  BusSignal(QDBusConnection bus, const Source& source, std::function<void(const QDBusMessage&)> received);

 private slots:
  void receive(const QDBusMessage& message) { received_(message); }

 private:
  std::function<void(const QDBusMessage&)> received_;
};

}  // namespace platform::linux::shortcuts
