// Follows something on a bus that is true or false: asks once, and again whenever a signal hints at a change.
//
// Threads: main thread only; the callback comes from the event loop. Failure: what a service does not know, or a
// service that is gone, is false. Services are never started for this.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QString>
#include <QTimer>
#include <functional>

namespace platform::linux::session {

class BusFlag {
 public:
  struct Source {
    QDBusConnection bus;
    QString service;
    QString path;
    QString signalInterface;
    QString signal;
    // The answer is a boolean, or a variant that holds one.
    QDBusMessage question;
  };

  // Calls back with every change; false until then.
  BusFlag(Source source, std::function<void(bool)> changed);
  BusFlag(const BusFlag&) = delete;
  BusFlag& operator=(const BusFlag&) = delete;

 private:
  void ask();
  void set(bool value);

  Source source_;
  std::function<void(bool)> changed_;
  QObject context_;
  QDBusServiceWatcher watcher_;
  // Bus signals can only be connected to named slots, and a timer has one.
  QTimer hint_;
  int lastQuestion_ = 0;
  bool value_ = false;
};

}  // namespace platform::linux::session
