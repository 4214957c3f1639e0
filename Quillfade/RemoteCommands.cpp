#include "Quillfade/RemoteCommands.h"

#include <utility>

#include "Quillfade/CaptureSteps.h"
#include "Quillfade/CommandLine.h"
#include "Quillfade/StatusReport.h"
#include "Quillfade/WindowTable.h"

namespace quillfade {
namespace {

using Completion = platform::RemoteControl::Completion;

// What one command does to the delegate, and what it has to say.
class Execution {
 public:
  explicit Execution(AppDelegate& delegate) : delegate_(delegate) {}

  std::string operator()(command::Toggle) { return run(&AppDelegate::toggleCover); }
  std::string operator()(command::WholeScreen) { return run(&AppDelegate::wholeScreen); }
  std::string operator()(command::SelectArea) { return run(&AppDelegate::selectArea); }
  std::string operator()(command::Quit) { return run(&AppDelegate::quit); }
  std::string operator()(command::Peek peek) {
    delegate_.overlay().peek(peek.seconds);
    return {};
  }
  std::string operator()(command::Style choice) {
    delegate_.setStyle(choice.style);
    return {};
  }
  std::string operator()(command::Outline outline) {
    return outline.shows == delegate_.overlay().showsOutline() ? std::string{} : run(&AppDelegate::toggleOutline);
  }
  std::string operator()(command::Status status) {
    return status.asJson ? statusJson(delegate_.overlay()) : statusText(delegate_.overlay());
  }
  std::string operator()(command::Keys) { return hotKeyText(delegate_.hotKeyStates()); }
  // Help, version, doctor and sharing are the asking process's; starting a running application is done already. The
  // list of windows comes later, and so never comes here.
  template <class Other>
  std::string operator()(const Other& /*command*/) {
    return {};
  }

 private:
  std::string run(void (AppDelegate::*command)()) {
    (delegate_.*command)();
    return {};
  }

  AppDelegate& delegate_;
};

Task listWindows(platform::Platform& platform, std::shared_ptr<AppDelegate> delegate, Completion completion) {
  const ContentResult content = co_await shareableContent(platform);
  if (!content) {
    completion({exitstatus::failure, content.error().localizedDescription + '\n'});
    co_return;
  }
  completion({exitstatus::success, windowTable(*content, delegate->overlay().region(), platform)});
}

}  // namespace

void runRemoteCommand(platform::Platform& platform, const std::weak_ptr<AppDelegate>& weakDelegate,
                      const std::vector<std::string>& arguments, Completion completion) {
  const auto parsed = parseCommand(arguments);
  if (!parsed) return completion({exitstatus::usage, parsed.error() + '\n'});
  // On a turn of its own, as a menu command: it may show an alert, and the way in must stay open meanwhile.
  platform.runLoop().post([&platform, weakDelegate, command = *parsed, completion = std::move(completion)] {
    const auto delegate = weakDelegate.lock();
    if (!delegate || !delegate->statusItem()) {
      return completion({exitstatus::failure, "Quillfade is still starting.\n"});
    }
    if (std::holds_alternative<command::Windows>(command)) {
      listWindows(platform, delegate, completion);
      return;
    }
    completion({exitstatus::success, std::visit(Execution{*delegate}, command)});
  });
}

}  // namespace quillfade
