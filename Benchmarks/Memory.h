// What is kept in memory: by the program, by the least program of its kind, by the X server on its behalf.
//
// Units: bytes.
#pragma once

#include <cstddef>
#include <vector>

namespace bench {

struct MemoryMeasurement {
  std::size_t program = 0;  // covering the whole of 1920 x 1080
  std::size_t emptyTrayProgram = 0;
  std::size_t server = 0;  // what the X server took more while it covers
  int restarts = 0;        // of a capture, one after the other in one process
  // In the middle and at the end of the restarts.
  std::size_t programAtHalf = 0;
  std::size_t programAtEnd = 0;
  std::size_t serverAtHalf = 0;
  std::size_t serverAtEnd = 0;
};

[[nodiscard]] MemoryMeasurement measureMemory(int restarts);

}  // namespace bench
