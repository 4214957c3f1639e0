// "quillfade doctor": looks at the desktop and at the running instance, if there is one.
//
// Threads: main thread of a process that has no `Platform`. Blocks for a few seconds at most.
#pragma once

#include "Platform/RemoteControl.h"

namespace quillfade {

// The whole report and the exit status.
[[nodiscard]] platform::RemoteReply examine(bool asJson);

}  // namespace quillfade
