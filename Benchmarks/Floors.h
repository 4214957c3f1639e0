// The least that a copy can cost on this machine: the same bytes moved by the processor alone, and the same rectangle
// copied by the X server alone, 30 times a second.
//
// Units: processor seconds in ten seconds.
#pragma once

#include <string>
#include <vector>

#include "Benchmarks/Cost.h"

namespace bench {

struct Floor {
  std::string name;
  std::vector<double> cost;
};

[[nodiscard]] std::vector<Floor> measureFloors(const CostOptions& options);

}  // namespace bench
