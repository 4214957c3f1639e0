#include "Quillfade/CommandLine/Share.h"

#include <algorithm>
#include <iterator>
#include <string_view>
#include <utility>

#include "Quillfade/Basics/Identity.h"
#include "Quillfade/Cover/ExclusionRules.h"

namespace quillfade {
namespace {

using platform::CaptureWindow;
using platform::RemoteReply;
using platform::Screen;

RemoteReply failure(const platform::Error& error) { return {exitstatus::failure, error.localizedDescription + '\n'}; }

const Screen& screenOf(const CaptureWindow& window, const std::vector<Screen>& screens) {
  const auto holds = [&](const Screen& screen) { return screen.frame.contains(window.frame.center()); };
  const auto found = std::ranges::find_if(screens, holds);
  return found == screens.end() ? screens.front() : *found;
}

bool isLeftOut(ShareView view, const CaptureWindow& window, const std::vector<Screen>& screens,
               const std::vector<WindowRule>& rules) {
  // Without a screen nothing is large.
  const Judgement judgement =
      judge(window, screens.empty() ? Screen{} : screenOf(window, screens), std::string{applicationIdentifier}, rules);
  return view == ShareView::clean ? isExcluded(judgement) : judgement == Judgement::excludedOwn;
}

std::string_view name(ShareView view) { return view == ShareView::clean ? "clean" : "unmirrored"; }

}  // namespace

std::vector<CaptureWindow> leftOut(ShareView view, const std::vector<CaptureWindow>& windows,
                                   const std::vector<Screen>& screens, const std::vector<WindowRule>& userRules) {
  std::vector<CaptureWindow> result;
  std::ranges::copy_if(windows, std::back_inserter(result),
                       [&](const CaptureWindow& window) { return isLeftOut(view, window, screens, userRules); });
  return result;
}

RemoteReply share(const command::Share& command) {
  // The rules as they are now: the file is not read again.
  const auto rules = userRules(*platform::makeRulesFile()).windows;
  const auto leftOutOf = [view = command.view, rules](const auto& windows, const auto& screens) {
    return leftOut(view, windows, screens, rules);
  };
  const auto status = platform::runThroughLens(command.program, {leftOutOf, command.view == ShareView::clean});
  return status ? RemoteReply{*status, {}} : failure(status.error());
}

RemoteReply installShare(const command::InstallShare& command) {
  const auto entry =
      platform::installLensEntry(command.application, {"share", "--view", std::string{name(command.view)}, "--"});
  if (!entry) return failure(entry.error());
  return {exitstatus::success, "Installed " + *entry + ".\n"};
}

RemoteReply uninstallShare(const command::UninstallShare& command) {
  const auto entry = platform::removeLensEntry(command.application);
  if (!entry) return failure(entry.error());
  return {exitstatus::success, "Removed " + *entry + ".\n"};
}

}  // namespace quillfade
