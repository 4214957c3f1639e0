#include "Quillfade/ProcessEntry.h"

#include "Quillfade/Fatal.h"

namespace quillfade {

platform::Application* app = nullptr;
std::shared_ptr<AppDelegate> delegate;

int runApplication(platform::Platform& platform) {
  app = platform.sharedApplication();
  if (app == nullptr) fatalError("there is no shared application object");
  delegate = std::make_shared<AppDelegate>(platform);
  app->setDelegate(delegate);
  app->setActivationPolicy(platform::ActivationPolicy::accessory);
  app->run();
  delegate = nullptr;
  app = nullptr;
  return 0;
}

}  // namespace quillfade
