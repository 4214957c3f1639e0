// The other programs of a desktop: a window manager, a compositing manager, a session bus, a tray.
//
// Ownership: each program ends with its object.
// Failure: each is ready when its constructor returns, or the constructor throws.
// None of them reads or writes the developer's own configuration.
#pragma once

#include <string>

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/TemporaryDirectory.h"

namespace support {

// A test's own home, and the variables that point a program there.
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
  // As if it crashed.
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
  // As if it crashed.
  void kill() { process_->kill(); }

 private:
  PrivateHome home_;
  std::optional<SessionBus> bus_;  // only if the window manager needs one
  std::optional<ChildProcess> process_;
};

class CompositingManager {
 public:
  // Runs picom with its XRender backend.
  explicit CompositingManager(const std::string& display);
  // Returns once the screen has no compositing manager.
  void stop();
  // As if it crashed.
  void kill() { process_->kill(); }

 private:
  std::string display_;
  PrivateHome home_;
  std::optional<ChildProcess> process_;
};

// tint2 with nothing but an old-style tray, which embeds the icons' windows: 40 pixels high, in the top-left corner. It
// needs no session bus.
class XEmbedTray {
 public:
  explicit XEmbedTray(const std::string& display);

 private:
  PrivateHome home_;
  std::optional<ChildProcess> process_;
};

}  // namespace support
