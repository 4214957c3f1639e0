// The application object of the desktop, which every desktop has while the application runs.
//
// Threads: main thread only.
#pragma once

#include "Platform/Platform.h"
#include "Quillfade/Basics/Fatal.h"

namespace quillfade {

[[nodiscard]] inline platform::Application& sharedApplication(platform::Platform& platform) {
  auto* application = platform.sharedApplication();
  if (application == nullptr) fatalError("there is no shared application object");
  return *application;
}

}  // namespace quillfade
