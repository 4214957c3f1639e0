// A small process that closes this one's holes when it could not do so itself any more, killed as it was.
//
// It sleeps until this process is gone, by whatever way, looks for holes with its token, and ends: at once where there
// are none. So it outlives this process by a second at most, and a session not at all.
// Threads: to be made while the process has only one. Ownership: RAII; it does its work when the object goes, too.
// Failure: without a guard, the next start closes what is left open.
#pragma once

#include <cstdint>

#include "Platform/Linux/Posix/FileDescriptor.h"

namespace platform::linux::holes {

class HoleGuard {
 public:
  explicit HoleGuard(std::uint32_t token);

 private:
  // Nobody writes: its other end sees when the last copy is closed.
  posix::FileDescriptor lifeline_;
};

}  // namespace platform::linux::holes
