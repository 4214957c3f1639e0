// A display number of our own, and the sockets at which programs find it.
//
// Threads: one at a time. Ownership: owns the lock and the sockets. Failure: sentences.
#pragma once

#include <array>
#include <expected>
#include <string>

#include "Platform/Error.h"
#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::lens {

class PrivateDisplay {
 public:
  // Takes the first number that no server has, from a range where no server looks for one.
  static std::expected<PrivateDisplay, Error> make();
  ~PrivateDisplay();
  PrivateDisplay(PrivateDisplay&& other) noexcept;
  PrivateDisplay& operator=(PrivateDisplay&&) = delete;

  [[nodiscard]] int number() const { return number_; }
  // The listening sockets.
  [[nodiscard]] const std::array<posix::FileDescriptor, 2>& sockets() const { return sockets_; }
  // Accepts a connection that waits at the socket; a closed descriptor when none does. Turns away other users'
  // processes. The connection does not block.
  [[nodiscard]] static posix::FileDescriptor accept(const posix::FileDescriptor& socket);

 private:
  PrivateDisplay() = default;
  // False when somebody else has the number.
  [[nodiscard]] bool claim(int number);
  [[nodiscard]] bool lock(int number);
  [[nodiscard]] bool listen();
  void release();

  int number_ = -1;
  bool isBound_ = false;
  std::array<posix::FileDescriptor, 2> sockets_;
};

}  // namespace platform::linux::lens
