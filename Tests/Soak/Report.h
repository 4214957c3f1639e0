// What a soak measured, as text and as a picture.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace soak {

struct Sample {
  double seconds = 0;
  std::int64_t programMemory = 0;  // KiB
  std::int64_t serverMemory = 0;   // KiB
  std::int64_t descriptors = 0;
  std::int64_t resources = 0;
  double oldestFrame = 0;  // milliseconds, since the previous sample
  bool endsRound = false;  // taken in the state in which every round ends
};

struct Verdict {
  std::vector<std::string> lines;
  bool isGood = true;
};

// Compares the end of the last round with the end of the first.
[[nodiscard]] Verdict judge(const std::vector<Sample>& samples, std::size_t frames, std::size_t late);
// Writes plot.svg and samples.csv.
void write(const std::vector<Sample>& samples, const std::filesystem::path& directory);

}  // namespace soak
