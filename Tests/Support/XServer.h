// An X server of a test's own: Xvfb on a free display number, reachable only through its local socket.
//
// Ownership: the server ends with the object.
// Failure: a server that does not come up throws.
#pragma once

#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

namespace support {

struct XServerOptions {
  int width = 1280;
  int height = 800;
  int depth = 24;
  std::vector<std::string> arguments;  // further ones, as in {"-extension", "Composite"}
};

class XServer {
 public:
  explicit XServer(const XServerOptions& options = {});

  // As in DISPLAY, ":99".
  [[nodiscard]] const std::string& display() const { return display_; }
  [[nodiscard]] pid_t processId() const { return process_->id(); }
  // As a crash would.
  void kill() { process_->kill(); }

 private:
  std::optional<ChildProcess> process_;
  std::string display_;
};

}  // namespace support
