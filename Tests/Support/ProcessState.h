// What the kernel says of a running process: the processor time it took, how often it woke, what it keeps in memory.
//
// Threads: any. Units: seconds; bytes.
// Failure: 0 for a process that is gone.
#pragma once

#include <sys/types.h>

#include <cstddef>

namespace support {

// Of all threads that live, to the nanosecond; a thread that has ended does not count.
[[nodiscard]] double processorSeconds(pid_t process);
// How often its threads have given up a processor by themselves, which is once for each time that they woke.
[[nodiscard]] std::size_t wakeUps(pid_t process);
[[nodiscard]] std::size_t residentBytes(pid_t process);

}  // namespace support
