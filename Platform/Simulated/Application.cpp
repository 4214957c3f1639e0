#include "Platform/Simulated/Application.h"

#include <string>
#include <utility>

namespace platform::simulated {

void Application::setDelegate(std::weak_ptr<ApplicationDelegate> delegate) {
  record_.call("application: set delegate");
  delegate_ = std::move(delegate);
}

void Application::setActivationPolicy(ActivationPolicy policy) {
  record_.call("application: activation policy " + std::to_string(std::to_underlying(policy)));
  policies_.push_back(policy);
}

void Application::run() {
  record_.call("application: run");
  if (std::exchange(didRun_, true)) misuse("Application::run was called twice");
  if (const auto delegate = delegate_.lock()) delegate->applicationDidFinishLaunching();
  runLoop_.settle();
  if (session_) session_();
  runLoop_.settle();
}

void Application::activateIgnoringOtherApps() {
  record_.call("application: activate");
  ++activationCount_;
}

void Application::terminate() {
  record_.call("application: terminate");
  isTerminated_ = true;
}

}  // namespace platform::simulated
