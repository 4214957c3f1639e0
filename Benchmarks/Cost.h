// What a live copy costs: processor time of the program and of the X server together, beyond what the same workload
// cost the same server just before, without anybody looking.
//
// Each subject has an X server of its own, twice as wide as what is copied.
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
  std::vector<double> extra;      // one for each run
  std::vector<double> ofProgram;  // the part of the program itself
  std::vector<double> wakeUps;    // of the program, a second
};

struct CostMeasurement {
  CostScene scene;
  std::vector<double> without;  // what the workload costs the X server, before each of the subjects
  std::vector<CostResult> results;
};

struct CostOptions {
  int runs = 5;
  double seconds = 3;
};

using Progress = std::function<void(const std::string&)>;

[[nodiscard]] CostMeasurement measureCost(const CostScene& scene, const CostOptions& options, const Progress& progress);

}  // namespace bench
