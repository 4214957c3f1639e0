// What is held in memory: by the program, by the least program of its kind, by the X server on its behalf.
//
// Units: bytes.
#pragma once

#include <cstddef>
#include <vector>

namespace bench {

struct MemoryMeasurement {
  std::size_t program = 0;  // covering the whole of 1920 x 1080
  std::size_t emptyTrayProgram = 0;
  std::size_t server = 0;  // how much more the X server holds while it covers
  int restarts = 0;        // of a capture, one after another in one process
  // Halfway through the restarts and at their end.
  std::size_t programAtHalf = 0;
  std::size_t programAtEnd = 0;
  std::size_t serverAtHalf = 0;
  std::size_t serverAtEnd = 0;
};

[[nodiscard]] MemoryMeasurement measureMemory(int restarts);

}  // namespace bench
