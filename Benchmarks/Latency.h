// How long one waits: for a change to show in the copy, for the first live frame, for an overlay to be gone.
//
// The screen is read pixel by pixel, again and again, until it shows what is waited for; each reading takes the server
// less than a tenth of a millisecond, which is how exact the figures are. Units: milliseconds.
#pragma once

#include <string>
#include <vector>

#include "Benchmarks/Cost.h"

namespace bench {

struct LatencyMeasurement {
  std::string name;
  std::vector<double> milliseconds;
};

// From a client's painting a square to the copy's showing it. During "idle" the changes are isolated.
[[nodiscard]] LatencyMeasurement measureChange(const std::string& subject, const std::string& workload, int samples);
// From the hot key's press to the first live pixel where ink was.
[[nodiscard]] LatencyMeasurement measureHotKey(int samples);
// From the mapping of an overlay over everything to its absence from the screen.
[[nodiscard]] LatencyMeasurement measureOverlay(int samples);

}  // namespace bench
