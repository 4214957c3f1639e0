// A test's own X server: Xvfb on a free display number, reachable only through its local socket.
//
// Ownership: the server ends with the object.
// Failure: throws when the server does not start.
#pragma once

#include <string>
#include <vector>

#include "Tests/Support/ChildProcess.h"

namespace support {

struct XServerOptions {
  int width = 1280;
  int height = 800;
  int depth = 24;
  std::vector<std::string> arguments;  // added to the usual ones, as in {"-extension", "Composite"}
};

class XServer {
 public:
  explicit XServer(const XServerOptions& options = {});

  // As in DISPLAY, ":99".
  [[nodiscard]] const std::string& display() const { return display_; }
  [[nodiscard]] pid_t processId() const { return process_->id(); }
  // As if it crashed.
  void kill() { process_->kill(); }

 private:
  std::optional<ChildProcess> process_;
  std::string display_;
};

}  // namespace support
