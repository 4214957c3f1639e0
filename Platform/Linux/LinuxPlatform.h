// The Linux/X11 desktop: everything that makes up the adapter, assembled.
//
// Threads: main thread only.
// Lifetime: members are in the order in which they are made; each needs only those before it.
#pragma once

#include <span>

#include "Platform/Linux/Cover/ClickThroughWindow.h"
#include "Platform/Linux/Cover/OverlayStage.h"
#include "Platform/Linux/DesktopWindows.h"
#include "Platform/Linux/Input/HotKeys.h"
#include "Platform/Linux/Posix/CrashSignals.h"
#include "Platform/Linux/Posix/PosixFiles.h"
#include "Platform/Linux/Posix/SystemClock.h"
#include "Platform/Linux/Scene/ProductMark.h"
#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/ScreenCapture.h"
#include "Platform/Linux/Session/AutostartItem.h"
#include "Platform/Linux/Session/DesktopNotifications.h"
#include "Platform/Linux/Session/DesktopSessionLock.h"
#include "Platform/Linux/Session/DesktopWorkspace.h"
#include "Platform/Linux/Session/SessionBus.h"
#include "Platform/Linux/Settings/RulesJson.h"
#include "Platform/Linux/Settings/SettingsFile.h"
#include "Platform/Linux/Toolkit/DesktopApplication.h"
#include "Platform/Linux/Toolkit/DesktopProcess.h"
#include "Platform/Linux/Toolkit/DesktopScreens.h"
#include "Platform/Linux/Toolkit/EventPump.h"
#include "Platform/Linux/Toolkit/QtRunLoop.h"
#include "Platform/Linux/Toolkit/TextCatalogue.h"
#include "Platform/Linux/Tray/DesktopStatusBar.h"
#include "Platform/Linux/Tray/PopUpMenus.h"
#include "Platform/Linux/Views/Views.h"
#include "Platform/Linux/Widgets/DesktopDialogs.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Platform.h"

namespace platform::x11 {

class LinuxPlatform final : public Platform {
 public:
  explicit LinuxPlatform(std::span<char* const> arguments);
  ~LinuxPlatform() override;

  Application* sharedApplication() override { return &application_; }
  RunLoop& runLoop() override { return runLoop_; }
  Process& process() override { return process_; }
  Clock& clock() override { return clock_; }
  Files& files() override { return files_; }
  Settings& settings() override { return settings_; }
  Screens& screens() override { return screens_; }
  SessionLock& sessionLock() override { return sessionLock_; }
  Windows& windows() override { return windows_; }
  platform::Views& views() override { return views_; }
  CaptureService& capture() override { return capture_; }
  ScreenCaptureAccess& screenCaptureAccess() override { return capture_; }
  StatusBar& statusBar() override { return statusBar_; }
  Dialogs& dialogs() override { return dialogs_; }
  platform::HotKeys& hotKeys() override { return hotKeys_; }
  LoginItem& loginItem() override { return loginItem_; }
  Workspace& workspace() override { return workspace_; }
  RemoteControl& remoteControl() override { return remoteControl_; }
  RulesFile& rulesFile() override { return rulesFile_; }
  Notifications& notifications() override { return notifications_; }
  Texts& texts() override { return texts_; }

 private:
  void handle(const xcb_generic_event_t& event);
  void settle();

  CrashSignals crashSignals_;
  // The product's own, apart from Qt's, and before it: without a display this ends the process in a sentence.
  std::unique_ptr<Connection> connection_;
  DesktopApplication application_;
  std::vector<std::uint32_t> ownClients_;
  ProductMark mark_;
  QtRunLoop runLoop_;
  DesktopProcess process_;
  SystemClock clock_;
  PosixFiles files_;
  SettingsFile settings_;
  RulesJson rulesFile_;
  DesktopNotifications notifications_;
  TextCatalogue texts_;
  DesktopScreens screens_;
  DesktopViews views_;
  Scene scene_;
  WindowList windowList_;
  std::unique_ptr<Redirection> redirection_;  // where anything can be captured
  OverlayStage stage_;
  DesktopSessionLock sessionLock_;
  DesktopWindows windows_;
  ScreenCapture capture_;
  PopUpMenus hostMenus_;
  DesktopStatusBar statusBar_;
  DesktopDialogs dialogs_;
  HotKeys hotKeys_;
  AutostartItem loginItem_;
  DesktopWorkspace workspace_;
  SessionBus remoteControl_;
  EventPump events_;
};

}  // namespace platform::x11
