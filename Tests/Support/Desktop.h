// The other programs of a desktop: a window manager, a compositing manager, a session bus, a tray.
//
// Ownership: each ends with its object. Each is ready when its constructor returns, or the constructor throws.
// None of them reads or writes the developer's own configuration.
#pragma once

#include <string>

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TemporaryDirectory.h"

namespace support {

// A home of a test's own, and the variables that send a program there.
class PrivateHome {
 public:
  [[nodiscard]] std::filesystem::path path() const { return directory_.path(); }
  [[nodiscard]] std::filesystem::path configuration() const { return path() / ".config"; }
  [[nodiscard]] Environment environment(const std::string& display) const;

 private:
  TemporaryDirectory directory_;
};

class SessionBus {
 public:
  SessionBus();
  [[nodiscard]] const std::string& address() const { return address_; }
  // As a crash would.
  void kill() { process_->kill(); }

 private:
  TemporaryDirectory directory_;
  std::optional<ChildProcess> process_;
  std::string address_;
};

class WindowManager {
 public:
  enum class Kind { openbox, xfwm4, compositingXfwm4 };
  explicit WindowManager(const std::string& display, Kind kind = Kind::openbox);
  // As a crash would.
  void kill() { process_->kill(); }

 private:
  PrivateHome home_;
  std::optional<SessionBus> bus_;  // where the window manager needs one
  std::optional<ChildProcess> process_;
};

class CompositingManager {
 public:
  // picom with its XRender backend.
  explicit CompositingManager(const std::string& display);
  // Returns when the screen has no compositing manager any more.
  void stop();
  // As a crash would.
  void kill() { process_->kill(); }

 private:
  std::string display_;
  PrivateHome home_;
  std::optional<ChildProcess> process_;
};

// tint2 with nothing but a tray of the older kind, which takes the icons' windows in: 40 pixels high, in the top-left
// corner. It needs no session bus.
class XEmbedTray {
 public:
  explicit XEmbedTray(const std::string& display);

 private:
  PrivateHome home_;
  std::optional<ChildProcess> process_;
};

}  // namespace support
