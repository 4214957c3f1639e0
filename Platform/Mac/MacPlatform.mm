#include "Platform/Mac/MacPlatform.h"

#include "Platform/Lens.h"

namespace platform {

std::unique_ptr<Platform> makePlatform(std::span<char* const> /*arguments*/) {
  return std::make_unique<mac::MacPlatform>();
}

std::expected<int, Error> runThroughLens(const std::vector<std::string>& /*program*/, const LensRule& /*rule*/) {
  return std::unexpected(Error{
      "On macOS the cover's window asks to be left out of captures: start programs as usual. From macOS 15 on, some "
      "are reported to capture it all the same."});
}

std::expected<std::string, Error> installLensEntry(const std::string& /*application*/,
                                                   const std::vector<std::string>& /*words*/) {
  return std::unexpected(Error{"On macOS there is nothing to install: start programs as usual."});
}

std::expected<std::string, Error> removeLensEntry(const std::string& /*application*/) {
  return std::unexpected(Error{"On macOS there is nothing to install: start programs as usual."});
}

std::unique_ptr<RulesFile> makeRulesFile() { return std::make_unique<mac::settings::RulesFile>(); }

}  // namespace platform
