#include "Platform/Mac/MacPlatform.h"

#include "Platform/Examination.h"
#include "Platform/Lens.h"

namespace platform {

std::unique_ptr<Platform> makePlatform(std::span<char* const> /*arguments*/) {
  return std::make_unique<mac::MacPlatform>();
}

std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& /*arguments*/,
                                                        std::chrono::milliseconds /*limit*/,
                                                        const std::function<void()>& /*onQuestion*/) {
  return std::unexpected(Error{"On macOS a running instance takes no commands from the command line."});
}

std::expected<int, Error> runThroughLens(const std::vector<std::string>& /*program*/, const LensRule& /*rule*/) {
  return std::unexpected(
      Error{"On macOS the cover is never part of what other programs capture: start them as usual."});
}

std::expected<std::string, Error> installLensEntry(const std::string& /*application*/,
                                                   const std::vector<std::string>& /*words*/) {
  return std::unexpected(Error{"On macOS there is nothing to install: start programs as usual."});
}

std::expected<std::string, Error> removeLensEntry(const std::string& /*application*/) {
  return std::unexpected(Error{"On macOS there is nothing to install: start programs as usual."});
}

std::unique_ptr<RulesFile> makeRulesFile() { return std::make_unique<mac::RulesFile>(); }

// Nothing is examined from outside the application here yet.
Examination examineDesktop(const ExaminationRequest& request) {
  return {.hotKeys = std::vector<HotKeyAnswer>(request.hotKeys.size(), HotKeyAnswer::unknown)};
}

}  // namespace platform
