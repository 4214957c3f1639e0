#include "Quillfade/CommandLine/RemoteCommands.h"

#include <utility>

#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/RunningReport.h"
#include "Quillfade/CommandLine/StatusReport.h"
#include "Quillfade/CommandLine/WindowTable.h"
#include "Quillfade/Cover/CaptureSteps.h"

namespace quillfade {
namespace {

using Completion = platform::RemoteControl::Completion;

const platform::RemoteReply done{exitstatus::success, {}};

platform::RemoteReply replyTo(const Outcome& outcome) {
  return outcome ? done : platform::RemoteReply{exitstatus::failure, outcome.error() + '\n'};
}

platform::RemoteReply report(std::string text) { return {exitstatus::success, std::move(text)}; }

// Carries out one command on the delegate and returns the reply.
class Execution {
 public:
  Execution(platform::Platform& platform, AppDelegate& delegate) : platform_(platform), delegate_(delegate) {}

  platform::RemoteReply operator()(command::Toggle) { return replyTo(delegate_.toggleCover()); }
  platform::RemoteReply operator()(command::WholeScreen) { return replyTo(delegate_.wholeScreen()); }
  platform::RemoteReply operator()(command::SelectArea) { return replyTo(delegate_.selectArea()); }
  platform::RemoteReply operator()(command::Peek peek) {
    delegate_.overlay().peek(peek.seconds);
    return done;
  }
  platform::RemoteReply operator()(command::Style choice) { return replyTo(delegate_.requestStyle(choice.style)); }
  platform::RemoteReply operator()(command::Outline outline) {
    if (outline.shows != delegate_.overlay().showsOutline()) delegate_.toggleOutline();
    return done;
  }
  platform::RemoteReply operator()(command::Status status) {
    return report(status.asJson ? statusJson(delegate_.overlay()) : statusText(delegate_.overlay()));
  }
  platform::RemoteReply operator()(command::Keys) { return report(hotKeyText(delegate_.hotKeyStates())); }
  // What only the application itself knows; all else the doctor looks at itself.
  platform::RemoteReply operator()(command::Doctor) {
    return report(runningReportText({delegate_.hotKeyStates(), platform_.screenCaptureAccess().preflight()}));
  }
  // Help, version and sharing are the asking process's; starting a running application is done already. The list of
  // windows comes later and quitting earlier, so neither ever comes here.
  template <class Other>
  platform::RemoteReply operator()(const Other& /*command*/) {
    return done;
  }

 private:
  platform::Platform& platform_;
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
  // Runs on a turn of its own, like a menu command: it may show an alert, and commands must still get in meanwhile.
  platform.runLoop().postCommand([&platform, weakDelegate, command = *parsed, completion = std::move(completion)] {
    const auto delegate = weakDelegate.lock();
    if (!delegate || !delegate->statusItem()) {
      return completion({exitstatus::failure, "Quillfade is still starting.\n"});
    }
    if (std::holds_alternative<command::Windows>(command)) {
      listWindows(platform, delegate, completion);
      return;
    }
    if (std::holds_alternative<command::Quit>(command)) {
      completion(done);
      // The process may be over before this returns.
      delegate->quit();
      return;
    }
    completion(std::visit(Execution{platform, *delegate}, command));
  });
}

}  // namespace quillfade
