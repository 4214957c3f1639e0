// What a live copy costs: the processor time of the program and the X server together, beyond what the same workload
// cost the same server just before, with no program watching.
//
// Each subject has its own X server, twice as wide as the area that is copied.
// Units: processor seconds in ten seconds.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "Benchmarks/Subjects.h"

namespace bench {

struct CostScene {
  std::string workload;
  std::string areaName;
  int screenWidth;
  int screenHeight;
  PixelRect area;
  std::vector<std::string> subjects;
};

struct CostResult {
  std::string subject;
  std::vector<double> extra;      // one per run
  std::vector<double> ofProgram;  // the program's own part
  std::vector<double> wakeUps;    // of the program, per second
};

struct CostMeasurement {
  CostScene scene;
  std::vector<double> without;  // what the workload costs the X server, before each subject
  std::vector<CostResult> results;
};

struct CostOptions {
  int runs = 5;
  double seconds = 3;
};

using Progress = std::function<void(const std::string&)>;

[[nodiscard]] CostMeasurement measureCost(const CostScene& scene, const CostOptions& options, const Progress& progress);

}  // namespace bench
