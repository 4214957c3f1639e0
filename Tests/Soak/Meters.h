// What a process and the X server hold of memory, descriptors and resources.
//
// Threads: one at a time. Failure: a process that is gone holds nothing.
#pragma once

#include <sys/types.h>
#include <xcb/xcb.h>

#include <cstdint>

namespace soak {

[[nodiscard]] std::int64_t residentKibibytes(pid_t process);
[[nodiscard]] std::int64_t openDescriptors(pid_t process);
// All resources in the server of all connections of the process.
[[nodiscard]] std::int64_t serverResources(xcb_connection_t* connection, pid_t process);

}  // namespace soak
