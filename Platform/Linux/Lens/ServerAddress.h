// The display in front of which a lens stands: where its sockets are, and the credential for them.
//
// Threads: any. Failure: sentences.
#pragma once

#include <expected>
#include <optional>
#include <string>

#include "Platform/Error.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Protocol/Setup.h"

namespace platform::linux::lens {

class ServerAddress {
 public:
  // `display` as in DISPLAY; absent when it is not the name of a display.
  static std::optional<ServerAddress> parse(const std::string& display);

  // A connected socket that does not block.
  [[nodiscard]] std::expected<posix::FileDescriptor, Error> connect() const;
  // What the user's authority file holds for it; empty without an entry, for servers that let everybody in.
  [[nodiscard]] protocol::Credential credential() const;
  [[nodiscard]] int screen() const { return screen_; }

 private:
  ServerAddress() = default;
  [[nodiscard]] bool isLocal() const { return host_.empty() || host_ == "unix" || host_.starts_with('/'); }
  [[nodiscard]] posix::FileDescriptor connectLocally() const;
  [[nodiscard]] posix::FileDescriptor connectOverNetwork() const;

  std::string host_;
  int number_ = 0;
  int screen_ = 0;
};

}  // namespace platform::linux::lens
