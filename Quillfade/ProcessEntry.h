// Where the process begins.
#pragma once

#include <memory>

#include "Platform/Platform.h"
#include "Quillfade/Application/AppDelegate.h"

namespace quillfade {

// The two globals of the process, set once by `runApplication`. The application does not own its delegate: this global
// is what keeps the delegate, and with it everything else, alive.
extern platform::Application* app;
extern std::shared_ptr<AppDelegate> delegate;

// Runs the application on this desktop until it is terminated; the result is the process's exit status. The globals are
// released on the way out, since what they hold must not outlive the desktop.
int runApplication(platform::Platform& platform);

// The same, unless the application is running on this desktop already: then it says so and does nothing, which is a
// failure where a demonstration was asked for. Commands from outside reach the delegate from now on.
int runOnlyInstance(platform::Platform& platform);

}  // namespace quillfade
