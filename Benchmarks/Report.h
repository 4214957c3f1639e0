// Everything that one run of the benchmarks found, as text for people, as JSON for programs, and as a picture.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "Benchmarks/Cost.h"
#include "Benchmarks/Floors.h"
#include "Benchmarks/Latency.h"
#include "Benchmarks/Memory.h"

namespace bench {

struct Report {
  CostOptions options;
  std::string machine;
  std::vector<PeerDescription> peers;
  std::vector<CostMeasurement> costs;
  std::vector<Floor> floors;
  std::vector<LatencyMeasurement> latencies;
  std::optional<MemoryMeasurement> memory;
};

// One thing that must hold, and whether it does.
struct Verdict {
  std::string what;
  double found = 0;
  double limit = 0;
  [[nodiscard]] bool holds() const { return found <= limit; }
};
// Only of what was measured.
[[nodiscard]] std::vector<Verdict> verdicts(const Report& report);

void writeText(const Report& report, std::ostream& out);
void writeJson(const Report& report, std::ostream& out);
// The costs over the whole screen, on a logarithmic scale: cheap copies cost a hundredth of expensive ones.
void writeSvg(const Report& report, std::ostream& out);

}  // namespace bench
