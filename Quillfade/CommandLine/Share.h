// Starting programs that share the screen, so that they share it without the cover, or without the annotations.
//
// Threads: main thread; what is left out is pure, and asked for on another one.
// Failure: sentences; the exit statuses are those of the command line.
#pragma once

#include <string>
#include <vector>

#include "Platform/Lens.h"
#include "Platform/RemoteControl.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

// The windows that the view leaves out, the user's rules included. Each is judged against the screen that holds its
// centre, else the first one.
[[nodiscard]] std::vector<platform::CaptureWindow> leftOut(ShareView view,
                                                           const std::vector<platform::CaptureWindow>& windows,
                                                           const std::vector<platform::Screen>& screens,
                                                           const std::vector<WindowRule>& userRules = {});

// All three say what this process prints and ends with. Runs the program to its end; its exit status is the result's.
[[nodiscard]] platform::RemoteReply share(const command::Share& command);
[[nodiscard]] platform::RemoteReply installShare(const command::InstallShare& command);
[[nodiscard]] platform::RemoteReply uninstallShare(const command::UninstallShare& command);

}  // namespace quillfade
