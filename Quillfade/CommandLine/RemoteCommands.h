// Carries out the commands that come from outside: the delegate's own, by other names.
//
// Threads: main thread only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/Application/AppDelegate.h"

namespace quillfade {

// Calls the completion once: when the command has been carried out or given up, which for one that shows an alert is
// after the answer. A delegate that is gone, or not launched yet, carries out nothing and says so.
void runRemoteCommand(platform::Platform& platform, const std::weak_ptr<AppDelegate>& weakDelegate,
                      const std::vector<std::string>& arguments, platform::RemoteControl::Completion completion);

}  // namespace quillfade
