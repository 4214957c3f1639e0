#include "Platform/Linux/Toolkit/MutexQueue.h"

#include <QCoreApplication>
#include <QThread>

namespace platform::linux::toolkit {

void MutexQueue::perform(const Job& job) {
  const QCoreApplication* application = QCoreApplication::instance();
  if (application && QThread::currentThread() == application->thread())
    qFatal("A serial queue was used on the main thread.");
  const std::scoped_lock lock(mutex_);
  job();
}

}  // namespace platform::linux::toolkit
