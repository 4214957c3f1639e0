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
  platform::Application* sharedApplication() override { return &application_; }
  platform::RunLoop& runLoop() override { return runLoop_; }
  platform::Process& process() override { return process_; }
  platform::Clock& clock() override { return clock_; }
  platform::Files& files() override { return files_; }
  platform::Settings& settings() override { return settings_; }
  platform::Screens& screens() override { return screens_; }
  platform::SessionLock& sessionLock() override { return sessionLock_; }
  platform::Windows& windows() override { return windows_; }
  platform::Views& views() override { return views_; }
  platform::CaptureService& capture() override { return capture_; }
  platform::ScreenCaptureAccess& screenCaptureAccess() override { return screenCaptureAccess_; }
  platform::StatusBar& statusBar() override { return statusBar_; }
  platform::Dialogs& dialogs() override { return dialogs_; }
  platform::HotKeys& hotKeys() override { return hotKeys_; }
  platform::LoginItem& loginItem() override { return loginItem_; }
  platform::Workspace& workspace() override { return workspace_; }
  platform::RemoteControl& remoteControl() override { return remoteControl_; }
  platform::RulesFile& rulesFile() override { return rulesFile_; }
  platform::Notifications& notifications() override { return notifications_; }
  platform::Texts& texts() override { return texts_; }

 private:
  Application application_;
  RunLoop runLoop_;
  Process process_;
  Clock clock_;
  Files files_;
  Settings settings_;
  Screens screens_;
  SessionLock sessionLock_;
  Windows windows_;
  Views views_;
  CaptureService capture_;
  ScreenCaptureAccess screenCaptureAccess_;
  StatusBar statusBar_;
  Dialogs dialogs_;
  HotKeys hotKeys_;
  LoginItem loginItem_;
  Workspace workspace_;
  RemoteControl remoteControl_;
  RulesFile rulesFile_;
  Notifications notifications_;
  Texts texts_;
};

}  // namespace platform::mac
