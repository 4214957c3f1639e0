// An application whose event loop lasts as long as its script.
//
// Threads: main thread only.
#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "Platform/Application.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/RunLoop.h"

namespace platform::simulated {

class Application final : public platform::Application {
 public:
  Application(Record& record, RunLoop& runLoop) : record_(record), runLoop_(runLoop) {}

  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void setActivationPolicy(ActivationPolicy policy) override;
  // Tells the delegate that launching has finished, plays the session, and returns when nothing is left to do.
  void run() override;
  void activateIgnoringOtherApps() override;
  void terminate() override;

  // What a user does while the application runs.
  void setSession(std::function<void()> session) { session_ = std::move(session); }
  [[nodiscard]] const std::vector<ActivationPolicy>& policies() const { return policies_; }
  [[nodiscard]] int activationCount() const { return activationCount_; }
  [[nodiscard]] bool isTerminated() const { return isTerminated_; }

 private:
  Record& record_;
  RunLoop& runLoop_;
  std::weak_ptr<ApplicationDelegate> delegate_;
  std::function<void()> session_;
  std::vector<ActivationPolicy> policies_;
  int activationCount_ = 0;
  bool didRun_ = false;
  bool isTerminated_ = false;
};

}  // namespace platform::simulated
