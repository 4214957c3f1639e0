// A program that has connected and must still prove that it may.
//
// Threads: one at a time. Ownership: owns the socket until it is taken.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "Platform/Linux/Lens/PrivateAuthority.h"
#include "Platform/Linux/Posix/FileDescriptor.h"
#include "Platform/Linux/Protocol/Setup.h"

namespace platform::linux::lens {

class Admission {
 public:
  enum class Verdict : std::uint8_t {
    undecided,  // more is to come
    admitted,
    refused,  // the program was told so, if it speaks the protocol
    gone,
  };

  Admission(posix::FileDescriptor socket, const PrivateAuthority& authority)
      : socket_(std::move(socket)), authority_(authority) {}

  [[nodiscard]] int descriptor() const { return socket_.get(); }
  // Call it when the socket is readable. Never reads beyond the setup.
  [[nodiscard]] Verdict advance();

  // Once the program is admitted.
  [[nodiscard]] posix::FileDescriptor takeSocket() { return std::move(socket_); }
  [[nodiscard]] const protocol::SetupRequest& request() const { return request_; }
  // Why it was refused, for the user; empty when there is nothing unusual.
  [[nodiscard]] const std::string& complaint() const { return complaint_; }

 private:
  posix::FileDescriptor socket_;
  const PrivateAuthority& authority_;
  std::vector<std::byte> received_;
  protocol::SetupRequest request_;
  std::string complaint_;
};

}  // namespace platform::linux::lens
