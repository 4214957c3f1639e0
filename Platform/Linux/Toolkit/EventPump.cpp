#include "Platform/Linux/Toolkit/EventPump.h"

#include <QAbstractEventDispatcher>
#include <QtGlobal>
#include <cstdlib>
#include <iostream>
#include <utility>

namespace platform::linux::toolkit {
namespace {

// Qt's handler of messages cannot carry anything.
std::function<void()>& lossHandler() {
  static std::function<void()> handler;
  return handler;
}

[[noreturn]] void endAsLost() {
  if (lossHandler()) lossHandler()();
  std::cerr << "quillfade: " << xcb::connectionLostSentence << std::endl;
  // Without destructors: they would talk to the lost server.
  std::_Exit(EXIT_FAILURE);
}

// Qt watches its own connection; on losing it, Qt warns and calls exit. The outcome is the same, whoever notices first.
void endWhenQtLosesItsConnection() {
  static const QtMessageHandler otherwise = qInstallMessageHandler(nullptr);
  qInstallMessageHandler([](QtMsgType type, const QMessageLogContext& context, const QString& message) {
    if (message.startsWith(QLatin1String("The X11 connection broke"))) endAsLost();
    otherwise(type, context, message);
  });
}

}  // namespace

EventPump::EventPump(xcb::Connection& connection, EventHandler onEvent, BatchHandler afterBatch, LossHandler atLoss)
    : connection_(connection),
      onEvent_(std::move(onEvent)),
      afterBatch_(std::move(afterBatch)),
      notifier_(connection.fileDescriptor(), QSocketNotifier::Read) {
  QObject::connect(&notifier_, &QSocketNotifier::activated, [this] { readAll(); });
  // Waiting for a reply may have read events that no longer make the descriptor readable.
  beforeSleep_ = QObject::connect(QAbstractEventDispatcher::instance(), &QAbstractEventDispatcher::aboutToBlock,
                                  [this] { drainQueue(); });
  lossHandler() = std::move(atLoss);
  endWhenQtLosesItsConnection();
}

EventPump::~EventPump() {
  lossHandler() = nullptr;
  QObject::disconnect(beforeSleep_);
}

void EventPump::readAll() {
  while (const auto event = connection_.nextEvent()) onEvent_(*event);
  drainQueue();
}

void EventPump::drainQueue() {
  while (true) {
    afterBatch_();
    // Flushing may read as well.
    connection_.flush();
    auto event = connection_.nextQueuedEvent();
    if (!event) break;
    for (; event; event = connection_.nextQueuedEvent()) onEvent_(*event);
  }
  endIfBroken();
}

void EventPump::endIfBroken() const {
  if (connection_.isBroken()) endAsLost();
}

}  // namespace platform::linux::toolkit
