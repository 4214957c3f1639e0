// Runs the tests or, for a test that needs a second process, plays a role.

#include <sys/wait.h>

#include <atomic>
#include <cstdio>
#include <cstring>
#include <iostream>
#include <memory>
#include <thread>

#include "Platform/Mac/Remote/RemoteControl.h"
#include "Platform/Mac/Toolkit/Application.h"
#include "Tests/Mac/Native/Native.h"

namespace {

std::string ownPath;  // NOLINT: set before any test runs

int send(const std::vector<std::string>& words) {
  const auto reply = platform::sendToRunningInstance(words, std::chrono::seconds{5}, [] { std::cout << "question\n"; });
  if (!reply) {
    std::cout << reply.error().localizedDescription;
    return 99;
  }
  std::cout << reply->output << std::flush;
  return reply->status;
}

int claim() {
  platform::mac::remote::RemoteControl control;
  const auto claimed = control.claim([](const auto&, const auto&) {});
  std::cout << (claimed == platform::RemoteControl::Claim::taken ? "taken" : "not taken");
  return 0;
}

class TerminatingDelegate final : public platform::ApplicationDelegate {
 public:
  explicit TerminatingDelegate(platform::Application& application) : application_(application) {}
  void applicationDidFinishLaunching() override {
    std::cout << "launched" << std::flush;
    application_.terminate();
  }

 private:
  platform::Application& application_;
};

int runAndTerminate() {
  platform::mac::toolkit::Application application;
  const auto delegate = std::make_shared<TerminatingDelegate>(application);
  application.setDelegate(delegate);
  application.setActivationPolicy(platform::ActivationPolicy::accessory);
  application.run();
  std::cout << ", returned" << std::flush;
  return 0;
}

}  // namespace

namespace native {

Ending runAs(const std::vector<std::string>& role) {
  std::string command = "exec '" + ownPath + '\'';
  for (const std::string& word : role) command += " '" + word + '\'';
  Ending ending;
  std::atomic<bool> isOver = false;
  std::thread reader([&] {
    FILE* pipe = popen(command.c_str(), "r");
    char part[256];
    while (pipe != nullptr && std::fgets(part, sizeof part, pipe) != nullptr) ending.output += part;
    const int status = pipe != nullptr ? pclose(pipe) : -1;
    ending.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    isOver = true;
  });
  EXPECT_TRUE(comesTrue([&] { return isOver.load(); })) << command;
  reader.join();
  return ending;
}

}  // namespace native

int main(int argc, char** argv) {
  @autoreleasepool {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (!words.empty() && words[0] == "send") return send({words.begin() + 1, words.end()});
    if (!words.empty() && words[0] == "claim") return claim();
    if (!words.empty() && words[0] == "run-and-terminate") return runAndTerminate();
    ownPath = argv[0];
    testing::InitGoogleTest(&argc, argv);
    const platform::mac::toolkit::Application application;  // windows and status items need it
    return RUN_ALL_TESTS();
  }
}
