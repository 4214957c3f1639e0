// The desktop: all ports behind one reference.
//
// Threads: main thread only, except where a port says otherwise.
// Lifetime: every port lives as long as the platform, and the platform outlives everything built on it.
#pragma once

#include <memory>
#include <span>

#include "Platform/Application.h"
#include "Platform/Capture.h"
#include "Platform/Clock.h"
#include "Platform/Dialogs.h"
#include "Platform/Files.h"
#include "Platform/HotKeys.h"
#include "Platform/LoginItem.h"
#include "Platform/Notifications.h"
#include "Platform/Permission.h"
#include "Platform/Process.h"
#include "Platform/RemoteControl.h"
#include "Platform/RulesFile.h"
#include "Platform/RunLoop.h"
#include "Platform/Screens.h"
#include "Platform/SessionLock.h"
#include "Platform/Settings.h"
#include "Platform/StatusBar.h"
#include "Platform/Texts.h"
#include "Platform/Views.h"
#include "Platform/Windows.h"
#include "Platform/Workspace.h"

namespace platform {

class Platform {
 public:
  virtual ~Platform() = default;

  // Null when the process could not connect to a desktop at all.
  virtual Application* sharedApplication() = 0;
  virtual RunLoop& runLoop() = 0;
  virtual Process& process() = 0;
  virtual Clock& clock() = 0;
  virtual Files& files() = 0;
  virtual Settings& settings() = 0;
  virtual Screens& screens() = 0;
  virtual SessionLock& sessionLock() = 0;
  virtual Windows& windows() = 0;
  virtual Views& views() = 0;
  virtual CaptureService& capture() = 0;
  virtual ScreenCaptureAccess& screenCaptureAccess() = 0;
  virtual StatusBar& statusBar() = 0;
  virtual Dialogs& dialogs() = 0;
  virtual HotKeys& hotKeys() = 0;
  virtual LoginItem& loginItem() = 0;
  virtual Workspace& workspace() = 0;
  virtual RemoteControl& remoteControl() = 0;
  virtual RulesFile& rulesFile() = 0;
  virtual Notifications& notifications() = 0;
  virtual Texts& texts() = 0;
};

// Defined once, by the adapter that is linked in. Never null: an adapter that cannot reach its desktop tells the user
// and ends the process.
std::unique_ptr<Platform> makePlatform(std::span<char* const> arguments);

}  // namespace platform
