// macOS 14 and later: AppKit, ScreenCaptureKit, Carbon hot keys, ServiceManagement.
//
// Threads: main thread only, except where a port says otherwise.
//
// Lifetime: the system may keep an Objective-C object longer than we keep its C++ side. So an Objective-C object of
// this adapter holds a C++ object only by std::weak_ptr, and locks it only for the length of one call; no block
// captures `this` or a member. Scripts/check-mac enforces this. In the other direction, C++ objects hold Objective-C
// objects strongly, by reference counting.
//
// Nothing here makes decisions: every text, threshold and order of steps is the application's.
#pragma once

#include "Platform/Mac/Capture/Capture.h"
#include "Platform/Mac/Capture/Permission.h"
#include "Platform/Mac/Foundation/Clock.h"
#include "Platform/Mac/Foundation/Files.h"
#include "Platform/Mac/Foundation/Process.h"
#include "Platform/Mac/Foundation/RunLoop.h"
#include "Platform/Mac/Input/HotKeys.h"
#include "Platform/Mac/Remote/RemoteControl.h"
#include "Platform/Mac/Session/LoginItem.h"
#include "Platform/Mac/Session/Notifications.h"
#include "Platform/Mac/Session/SessionLock.h"
#include "Platform/Mac/Session/Workspace.h"
#include "Platform/Mac/Settings/RulesFile.h"
#include "Platform/Mac/Settings/Settings.h"
#include "Platform/Mac/Toolkit/Application.h"
#include "Platform/Mac/Toolkit/Screens.h"
#include "Platform/Mac/Toolkit/Texts.h"
#include "Platform/Mac/Tray/StatusBar.h"
#include "Platform/Mac/Views/Views.h"
#include "Platform/Mac/Windows/Dialogs.h"
#include "Platform/Mac/Windows/Windows.h"
#include "Platform/Platform.h"

namespace platform::mac {

class MacPlatform final : public Platform {
 public:
  Application* sharedApplication() override { return &application_; }
  RunLoop& runLoop() override { return runLoop_; }
  Process& process() override { return process_; }
  Clock& clock() override { return clock_; }
  Files& files() override { return files_; }
  Settings& settings() override { return settings_; }
  Screens& screens() override { return screens_; }
  SessionLock& sessionLock() override { return sessionLock_; }
  Windows& windows() override { return windows_; }
  Views& views() override { return views_; }
  CaptureService& capture() override { return capture_; }
  ScreenCaptureAccess& screenCaptureAccess() override { return screenCaptureAccess_; }
  StatusBar& statusBar() override { return statusBar_; }
  Dialogs& dialogs() override { return dialogs_; }
  HotKeys& hotKeys() override { return hotKeys_; }
  LoginItem& loginItem() override { return loginItem_; }
  Workspace& workspace() override { return workspace_; }
  RemoteControl& remoteControl() override { return remoteControl_; }
  RulesFile& rulesFile() override { return rulesFile_; }
  Notifications& notifications() override { return notifications_; }
  Texts& texts() override { return texts_; }

 private:
  toolkit::Application application_;
  foundation::RunLoop runLoop_;
  foundation::Process process_;
  foundation::Clock clock_;
  foundation::Files files_;
  settings::Settings settings_;
  toolkit::Screens screens_;
  session::SessionLock sessionLock_;
  windows::Windows windows_;
  views::Views views_;
  capture::CaptureService capture_;
  capture::ScreenCaptureAccess screenCaptureAccess_;
  tray::StatusBar statusBar_;
  windows::Dialogs dialogs_;
  input::HotKeys hotKeys_;
  session::LoginItem loginItem_;
  session::Workspace workspace_;
  remote::RemoteControl remoteControl_;
  settings::RulesFile rulesFile_;
  session::Notifications notifications_;
  toolkit::Texts texts_;
};

}  // namespace platform::mac
