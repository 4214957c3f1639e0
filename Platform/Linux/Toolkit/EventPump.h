// Feeds the events of an X connection to their handlers from Qt's event loop.
//
// Threads: main thread only. Ownership: keeps a reference to the connection, which must outlive it.
// Failure: without the connection the process can neither show nor cover anything, so it says so on standard error and
// ends at once with status 1, unless the owner knows better. A process has one of these.
#pragma once

#include <xcb/xcb.h>

#include <QMetaObject>
#include <QSocketNotifier>
#include <functional>

#include "Platform/Linux/Xcb/Connection.h"

namespace platform::linux::toolkit {

class EventPump {
 public:
  using EventHandler = std::function<void(const xcb_generic_event_t&)>;
  // Runs after each batch of events, and before the loop sleeps.
  using BatchHandler = std::function<void()>;

  // Runs when the connection is lost, Qt's or this one, before the process ends; need not return.
  using LossHandler = std::function<void()>;

  EventPump(xcb::Connection& connection, EventHandler onEvent, BatchHandler afterBatch, LossHandler atLoss = [] {});
  ~EventPump();
  EventPump(const EventPump&) = delete;
  EventPump& operator=(const EventPump&) = delete;

 private:
  void readAll();
  void drainQueue();
  void endIfBroken() const;

  xcb::Connection& connection_;
  EventHandler onEvent_;
  BatchHandler afterBatch_;
  QSocketNotifier notifier_;
  QMetaObject::Connection beforeSleep_;
};

}  // namespace platform::linux::toolkit
