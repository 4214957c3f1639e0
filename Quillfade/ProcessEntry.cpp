#include "Quillfade/ProcessEntry.h"

#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "Quillfade/Fatal.h"
#include "Quillfade/RemoteCommands.h"
#include "Quillfade/UserRules.h"

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

int runOnlyInstance(platform::Platform& platform) {
  using Claim = platform::RemoteControl::Claim;
  const auto claim = platform.remoteControl().claim(
      [&platform](const std::vector<std::string>& arguments, platform::RemoteControl::Completion completion) {
        runRemoteCommand(platform, delegate, arguments, std::move(completion));
      });
  if (claim == Claim::taken) {
    std::cout << "Quillfade is running already." << std::endl;
    return 0;
  }
  for (const auto& fault : userRules(platform.rulesFile()).faults) {
    std::cerr << "quillfade: " << platform.rulesFile().path() << ": " << fault << std::endl;
  }
  return runApplication(platform);
}

}  // namespace quillfade
