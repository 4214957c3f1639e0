// A whole desktop in memory: everything the application asks of one, scripted by tests and driven by hand.
//
// Threads: made, used and destroyed on one thread, its main thread; ports that allow others say so.
// Time: stands still until `runLoop().advance` moves it. Nothing runs by itself.
// Lifetime: outlives everything built on it. Destroying it while a window, a status item, a stream or a hot-key handler
// still exists ends the process.
#pragma once

#include <memory>
#include <vector>

#include "Platform/Platform.h"
#include "Platform/Simulated/Application.h"
#include "Platform/Simulated/Capture.h"
#include "Platform/Simulated/Clock.h"
#include "Platform/Simulated/Dialogs.h"
#include "Platform/Simulated/Files.h"
#include "Platform/Simulated/HotKeys.h"
#include "Platform/Simulated/Process.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/RemoteControl.h"
#include "Platform/Simulated/RunLoop.h"
#include "Platform/Simulated/Screens.h"
#include "Platform/Simulated/Services.h"
#include "Platform/Simulated/StatusBar.h"
#include "Platform/Simulated/Views.h"
#include "Platform/Simulated/Windows.h"

namespace platform::simulated {

class Desktop final : public Platform {
 public:
  // One screen of 1440 x 900 points at scale 2, capturing allowed, an empty home, no windows, no settings.
  Desktop();
  ~Desktop() override;
  Desktop(const Desktop&) = delete;
  Desktop& operator=(const Desktop&) = delete;

  Application* sharedApplication() override { return isConnected_ ? &application_ : nullptr; }
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

  Record& record() { return record_; }
  // There is no shared application from now on.
  void disconnect() { isConnected_ = false; }
  // Sets the screens, and as many displays in the capture service.
  void arrangeScreens(const std::vector<Screen>& screens);

 private:
  void expectNothingLeft() const;

  Record record_;
  RunLoop runLoop_{record_};
  Application application_{record_, runLoop_};
  Process process_;
  Clock clock_{runLoop_};
  Files files_{record_};
  Settings settings_{record_};
  Screens screens_{record_};
  SessionLock sessionLock_{record_};
  Windows windows_{record_};
  Views views_{record_};
  CaptureService capture_{record_, runLoop_};
  ScreenCaptureAccess screenCaptureAccess_{record_};
  StatusBar statusBar_{record_, runLoop_};
  Dialogs dialogs_{record_, runLoop_};
  HotKeys hotKeys_{record_};
  LoginItem loginItem_{record_};
  Workspace workspace_{record_};
  RemoteControl remoteControl_{record_};
  RulesFile rulesFile_;
  Notifications notifications_;
  Texts texts_;
  bool isConnected_ = true;
};

}  // namespace platform::simulated
