// Reports when the desktop switches between light and dark.
//
// Threads: main thread only. Lifetime: nothing is called once the watch is gone.
#pragma once

#include <QCoreApplication>
#include <QEvent>
#include <QObject>
#include <functional>
#include <utility>

namespace platform::linux::toolkit {

class PaletteWatch : public QObject {
 public:
  explicit PaletteWatch(std::function<void()> changed) : changed_(std::move(changed)) {
    QCoreApplication::instance()->installEventFilter(this);
  }

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ApplicationPaletteChange && watched == QCoreApplication::instance()) changed_();
    return false;
  }

 private:
  std::function<void()> changed_;
};

}  // namespace platform::linux::toolkit
