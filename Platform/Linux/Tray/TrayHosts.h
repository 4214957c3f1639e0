// Whether some program shows tray icons: over the session bus (StatusNotifierItem) or in the older X11 way (XEmbed).
//
// Qt decides between the two once, when the first icon is made, and never again. At login an application may well start
// before the panel does, so the icon has to wait until one of them is there. Nothing polls: both announce themselves.
// Threads: main thread only; callbacks come from the event loop.
#pragma once

#include <QAbstractNativeEventFilter>
#include <QDBusServiceWatcher>
#include <QTimer>
#include <functional>
#include <vector>

#include "Platform/Linux/Session/SessionBusReturn.h"

namespace platform::linux::tray {

class TrayHosts : private QAbstractNativeEventFilter {
 public:
  TrayHosts();
  ~TrayHosts() override;

  // Called when there is a tray of either kind, which may be soon, late or never; and when one is there after the
  // session bus has died and come back, since the toolkit shows an icon on the bus on which it was made.
  void whenAvailable(std::function<void()> callback);
  // Called whenever a host on the bus, or the bus's list of hosts, has come or gone.
  void whenHostComes(std::function<void()> callback) { came_.push_back(std::move(callback)); }
  void whenHostVanishes(std::function<void()> callback) { vanished_.push_back(std::move(callback)); }

 private:
  bool nativeEventFilter(const QByteArray& eventType, void* message, qintptr* result) override;
  void listenToBus();
  void busReturned(const QDBusConnection& bus);
  void query();
  void queryX11Tray();
  void found();
  void notifyCame();
  void notifyVanished();

  QObject context_;
  QDBusServiceWatcher watcher_;
  // Bus signals can only be connected to named slots; a timer's `start` is one, and its timeout takes any callback.
  QTimer hostCame_;
  QTimer hostWent_;
  QDBusConnection bus_;
  std::vector<std::function<void()>> waiting_;
  std::vector<std::function<void()>> told_;
  std::vector<std::function<void()>> came_;
  std::vector<std::function<void()>> vanished_;
  bool isAvailable_ = false;
  session::SessionBusReturn busReturn_{[this](const QDBusConnection& bus) { busReturned(bus); }};
};

}  // namespace platform::linux::tray
