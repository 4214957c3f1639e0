// The Linux/X11 desktop: assembles everything that makes up the adapter.
//
// Threads: main thread only. Lifetime: members are listed in the order of their construction; each needs only those
// before it.
#pragma once

#include <optional>
#include <span>

#include "Platform/Linux/Cover/ClickThroughWindow.h"
#include "Platform/Linux/Cover/OverlayStage.h"
#include "Platform/Linux/DesktopWindows.h"
#include "Platform/Linux/Holes/HoleEngine.h"
#include "Platform/Linux/Holes/HoleGuard.h"
#include "Platform/Linux/Input/HotKeys.h"
#include "Platform/Linux/Posix/CrashSignals.h"
#include "Platform/Linux/Posix/NewStart.h"
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
#include "Platform/Linux/Shortcuts/SessionHotKeys.h"
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

namespace platform::linux {

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
  platform::HotKeys& hotKeys() override;
  LoginItem& loginItem() override { return loginItem_; }
  Workspace& workspace() override { return workspace_; }
  RemoteControl& remoteControl() override { return remoteControl_; }
  RulesFile& rulesFile() override { return rulesFile_; }
  Notifications& notifications() override { return notifications_; }
  Texts& texts() override { return texts_; }

 private:
  void handle(const xcb_generic_event_t& event);
  void settle();
  void displayLost();

  posix::CrashSignals crashSignals_;
  posix::NewStart newStart_;
  // The product's own connection, apart from Qt's and opened before it: without a display this ends the process with
  // one sentence.
  std::unique_ptr<xcb::Connection> connection_;
  // A process of its own, so before everything that has threads.
  std::optional<holes::HoleGuard> guard_;
  toolkit::DesktopApplication application_;
  std::vector<std::uint32_t> ownClients_;
  scene::ProductMark mark_;
  toolkit::QtRunLoop runLoop_;
  toolkit::DesktopProcess process_;
  posix::SystemClock clock_;
  posix::PosixFiles files_;
  settings::SettingsFile settings_;
  settings::RulesJson rulesFile_;
  session::DesktopNotifications notifications_;
  toolkit::TextCatalogue texts_;
  toolkit::DesktopScreens screens_;
  views::DesktopViews views_;
  scene::Scene scene_;
  scene::WindowList windowList_;
  std::unique_ptr<scene::Redirection> redirection_;  // only where pictures are copied
  std::shared_ptr<holes::HoleEngine> holes_;         // only where none are
  cover::OverlayStage stage_;
  session::DesktopSessionLock sessionLock_;
  DesktopWindows windows_;
  ScreenCapture capture_;
  tray::PopUpMenus hostMenus_;
  tray::DesktopStatusBar statusBar_;
  widgets::DesktopDialogs dialogs_;
  // One of the two: in a Wayland session, nobody can grab keys.
  std::optional<input::HotKeys> grabbedKeys_;
  std::optional<shortcuts::SessionHotKeys> sessionKeys_;
  session::AutostartItem loginItem_;
  session::DesktopWorkspace workspace_;
  session::SessionBus remoteControl_;
  toolkit::EventPump events_;
};

}  // namespace platform::linux
