#include "Platform/Simulated/Desktop.h"

#include <algorithm>

#include "Platform/Examination.h"
#include "Platform/Lens.h"

namespace platform {

namespace simulated {

Desktop::Desktop() {
  files_.makeDirectory(process_.home + "/Library/Logs");
  arrangeScreens({Screen{{{0, 0}, {1440, 900}}, 1, 2}});
}

Desktop::~Desktop() {
  runLoop_.drop();
  capture_.drop();
  // Whatever the completions held may have handed over more work.
  runLoop_.drop();
  expectNothingLeft();
}

void Desktop::arrangeScreens(const std::vector<Screen>& screens) {
  screens_.arrange(screens);
  capture_.content.displays.clear();
  for (const Screen& screen : screens) {
    if (screen.displayID) capture_.content.displays.push_back({*screen.displayID});
  }
}

void Desktop::expectNothingLeft() const {
  if (std::ranges::any_of(windows_.made(), &WindowState::isAlive)) misuse("a window outlives the desktop");
  if (std::ranges::any_of(capture_.streams(), &Stream::isHeld)) misuse("a stream outlives the desktop");
  if (!statusBar_.items().empty()) misuse("a status item outlives the desktop");
  if (hotKeys_.hasHandler()) misuse("a hot-key handler outlives the desktop");
}

}  // namespace simulated

std::unique_ptr<Platform> makePlatform(std::span<char* const> /*arguments*/) {
  return std::make_unique<simulated::Desktop>();
}

std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& /*arguments*/,
                                                        std::chrono::milliseconds /*limit*/,
                                                        const std::function<void()>& /*onQuestion*/) {
  return std::unexpected(Error{"Quillfade is not running."});
}

std::expected<int, Error> runThroughLens(const std::vector<std::string>& /*program*/, const LensRule& /*rule*/) {
  return std::unexpected(Error{"A simulated desktop runs no programs."});
}

std::expected<std::string, Error> installLensEntry(const std::string& /*application*/,
                                                   const std::vector<std::string>& /*words*/) {
  return std::unexpected(Error{"A simulated desktop has no menu of applications."});
}

std::expected<std::string, Error> removeLensEntry(const std::string& /*application*/) {
  return std::unexpected(Error{"A simulated desktop has no menu of applications."});
}

// A desktop in memory exists only once it is made, so there is nothing to examine yet.
Examination examineDesktop(const ExaminationRequest& request) {
  return {.hotKeys = std::vector<HotKeyAnswer>(request.hotKeys.size(), HotKeyAnswer::unknown)};
}

std::unique_ptr<RulesFile> makeRulesFile() { return std::make_unique<simulated::RulesFile>(); }

}  // namespace platform
