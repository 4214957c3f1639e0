// Carries out commands from outside: the delegate's own, under other names.
//
// Threads: main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Application/AppDelegate.h"

namespace quillfade {

// Calls the completion once, when the command has been carried out or given up; for a command that shows an alert, that
// is after the answer. A delegate that is gone, or not yet launched, carries out nothing and says so.
void runRemoteCommand(platform::Platform& platform, const std::weak_ptr<AppDelegate>& weakDelegate,
                      const std::vector<std::string>& arguments, platform::RemoteControl::Completion completion);

}  // namespace quillfade
