// What the kernel says about a running process: the processor time it took, how often it woke, the memory it holds.
//
// Threads: any. Units: seconds; bytes.
// Failure: 0 for a process that is gone.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace support {

// Over all living threads, to the nanosecond; threads that have ended do not count.
[[nodiscard]] double processorSeconds(pid_t process);
// How often its threads have given up a processor of their own accord: once for each time they woke.
[[nodiscard]] std::size_t wakeUps(pid_t process);
[[nodiscard]] std::size_t residentBytes(pid_t process);

}  // namespace support
