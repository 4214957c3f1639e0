// How long a user waits: for a change to show in the copy, for the first live frame, for an overlay to disappear.
//
// One pixel of the screen is read again and again until it has the expected colour. Each reading takes the server less
// than a tenth of a millisecond, and that is how exact the figures are.
// Units: milliseconds.
#pragma once

#include <string>
#include <vector>

#include "Benchmarks/Cost.h"

namespace bench {

struct LatencyMeasurement {
  std::string name;
  std::vector<double> milliseconds;
};

// From a client painting a square to the copy showing it. During "idle" the changes are isolated.
[[nodiscard]] LatencyMeasurement measureChange(const std::string& subject, const std::string& workload, int samples);
// From pressing the hot key to the first live pixel where ink was.
[[nodiscard]] LatencyMeasurement measureHotKey(int samples);
// From mapping an overlay over everything to its absence from the screen.
[[nodiscard]] LatencyMeasurement measureOverlay(int samples);

}  // namespace bench
