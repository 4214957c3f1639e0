#include "Tests/Support/XServer.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <stdexcept>

namespace support {

namespace {

// The server writes its number and a line feed once it accepts connections.
std::string readNumber(int descriptor, ChildProcess& server) {
  std::string text;
  while (!text.ends_with('\n')) {
    char next = 0;
    if (!waitReadable(descriptor) || read(descriptor, &next, 1) != 1) {
      throw std::runtime_error("The X server did not come up: " + server.output());
    }
    text += next;
  }
  text.pop_back();
  return text;
}

}  // namespace

XServer::XServer(const XServerOptions& options) {
  std::array<int, 2> ends{};
  if (pipe2(ends.data(), O_CLOEXEC) != 0) throw std::runtime_error("No pipe could be made for the X server.");
  const std::string screen =
      std::to_string(options.width) + "x" + std::to_string(options.height) + "x" + std::to_string(options.depth);
  std::vector<std::string> arguments{
      "Xvfb", "-displayfd", std::to_string(ends[1]), "-screen", "0", screen, "-nolisten", "tcp", "-noreset", "-ac"};
  arguments.insert(arguments.end(), options.arguments.begin(), options.arguments.end());
  process_.emplace(std::move(arguments), Environment{}, std::vector<int>{ends[1]});
  close(ends[1]);
  display_ = ":" + readNumber(ends[0], *process_);
  close(ends[0]);
}

}  // namespace support
