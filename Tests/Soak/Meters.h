// How much memory and how many descriptors and resources a process and the X server hold.
//
// Threads: one at a time. Failure: a process that is gone holds nothing.
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>

namespace soak {

[[nodiscard]] std::int64_t residentKibibytes(pid_t process);
[[nodiscard]] std::int64_t openDescriptors(pid_t process);
// All server resources of all the process's connections.
[[nodiscard]] std::int64_t serverResources(xcb_connection_t* connection, pid_t process);

}  // namespace soak
