#include "Platform/Mac/MacPlatform.h"

namespace platform {

std::unique_ptr<Platform> makePlatform(std::span<char* const> /*arguments*/) {
  return std::make_unique<mac::MacPlatform>();
}

std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& /*arguments*/) {
  return std::unexpected(Error{"On macOS a running instance takes no commands from the command line."});
}

}  // namespace platform
