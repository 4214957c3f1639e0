// Where the process begins.
#pragma once

#include <memory>

#include "Platform/Platform.h"
#include "Quillfade/Application/AppDelegate.h"

namespace quillfade {

// The two globals of the process, set once by `runApplication`. The application does not own its delegate: this global
// is what keeps the delegate, and with it everything else, alive. A desktop may end the process from inside its event
// loop, by exit(); so the global is never destroyed, and nothing is taken down half-way then.
extern platform::Application* app;
extern std::shared_ptr<AppDelegate>& delegate;

// Runs the application on this desktop until it is terminated; returns the process's exit status. Releases the globals
// on the way out, since what they hold must not outlive the desktop.
int runApplication(platform::Platform& platform);

// The same, unless the application already runs on this desktop: then it says so and does nothing, which is a failure
// if a demonstration was asked for. From now on commands from outside reach the delegate.
int runOnlyInstance(platform::Platform& platform);

}  // namespace quillfade
