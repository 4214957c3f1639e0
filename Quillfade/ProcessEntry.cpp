#include "Quillfade/ProcessEntry.h"

#include <iostream>
#include <string>
#include <utility>
#include <vector>

#include "Quillfade/Basics/Demonstration.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/RemoteCommands.h"
#include "Quillfade/Settings/UserRules.h"

namespace quillfade {

platform::Application* app = nullptr;
std::shared_ptr<AppDelegate>& delegate = *new std::shared_ptr<AppDelegate>;

namespace {

int leaveToTheRunningInstance(bool isToDemonstrate) {
  if (!isToDemonstrate) {
    std::cout << "Quillfade is already running." << std::endl;
    return exitstatus::success;
  }
  std::cerr << "Quillfade is already running, and QUILLFADE_DEMO=1 works only at startup: quit it first." << std::endl;
  return exitstatus::failure;
}

}  // namespace

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
  if (claim == Claim::taken) return leaveToTheRunningInstance(wantsDemonstration(platform.process()));
  for (const auto& fault : userRules(platform.rulesFile()).faults) {
    std::cerr << "quillfade: " << platform.rulesFile().path() << ": " << fault << std::endl;
  }
  return runApplication(platform);
}

}  // namespace quillfade
