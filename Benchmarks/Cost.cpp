#include "Benchmarks/Cost.h"

#include <chrono>
#include <thread>

#include "Benchmarks/ProcessState.h"
#include "Benchmarks/Statistics.h"
#include "Benchmarks/Workloads.h"

namespace bench {

namespace {

// Programs do much in their first moments that they never do again.
constexpr std::chrono::milliseconds settling{1000};

struct Sample {
  double server = 0;
  double program = 0;
  double wakeUps = 0;
};

Sample sample(pid_t server, pid_t program, double seconds) {
  const auto state = [&] {
    return Sample{processorSeconds(server), program != 0 ? processorSeconds(program) : 0,
                  program != 0 ? static_cast<double>(wakeUps(program)) : 0};
  };
  const Sample before = state();
  const auto begin = std::chrono::steady_clock::now();
  std::this_thread::sleep_for(std::chrono::duration<double>(seconds));
  const Sample after = state();
  const double passed = std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
  return {(after.server - before.server) * 10 / passed, (after.program - before.program) * 10 / passed,
          (after.wakeUps - before.wakeUps) / passed};
}

}  // namespace

CostMeasurement measureCost(const CostScene& scene, const CostOptions& options, const Progress& progress) {
  CostMeasurement measurement{scene, {}, {}};
  const Place place{{0, 0, 2 * scene.screenWidth, scene.screenHeight},
                    scene.area,
                    {scene.screenWidth, 0, scene.area.width, scene.area.height}};
  std::vector<std::string> subjects{nobody};
  subjects.insert(subjects.end(), scene.subjects.begin(), scene.subjects.end());
  for (const std::string& name : subjects) {
    progress(scene.workload + ", " + scene.areaName + ": " + name);
    const support::XServer server({.width = place.screen.width, .height = place.screen.height, .arguments = {}});
    const auto workload = makeWorkload(scene.workload, server.display());
    const auto subject = startSubject(name, server.display(), place);
    std::this_thread::sleep_for(settling);
    CostResult result{name, {}, {}, {}};
    for (int run = 0; run < options.runs; ++run) {
      const Sample taken = sample(server.processId(), subject->process(), options.seconds);
      if (name == nobody) {
        measurement.without.push_back(taken.server);
        continue;
      }
      result.extra.push_back(taken.server + taken.program - median(measurement.without));
      result.ofProgram.push_back(taken.program);
      result.wakeUps.push_back(taken.wakeUps);
    }
    if (name != nobody) measurement.results.push_back(std::move(result));
  }
  return measurement;
}

}  // namespace bench
