// Starts programs that share the screen, so that they leave out the cover, or the cover and the annotations.
//
// Threads: main thread; `leftOut` is pure and safe on any thread.
// Failure: sentences; the exit statuses are those of the command line.
#pragma once

#include <string>
#include <vector>

#include "Platform/Lens.h"
#include "Platform/RemoteControl.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

// The windows that the view leaves out, with the user's rules applied. Each is judged against the screen that holds its
// centre, or else the first one.
[[nodiscard]] std::vector<platform::CaptureWindow> leftOut(ShareView view,
                                                           const std::vector<platform::CaptureWindow>& windows,
                                                           const std::vector<platform::Screen>& screens,
                                                           const std::vector<WindowRule>& userRules = {});

// Each returns this process's output and exit status. `share` runs the program to its end and passes on its status.
[[nodiscard]] platform::RemoteReply share(const command::Share& command);
[[nodiscard]] platform::RemoteReply installShare(const command::InstallShare& command);
[[nodiscard]] platform::RemoteReply uninstallShare(const command::UninstallShare& command);

}  // namespace quillfade
