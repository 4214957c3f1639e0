#include "Benchmarks/Cost.h"

#include <chrono>
#include <thread>

#include "Benchmarks/Statistics.h"
#include "Benchmarks/Workloads.h"
#include "Tests/Support/ProcessState.h"

namespace bench {

namespace {

// Programs do much at first that they never do again.
constexpr std::chrono::milliseconds settling{1000};

struct Sample {
  double server = 0;
  double program = 0;
  double wakeUps = 0;
};

Sample sample(pid_t server, pid_t program, double seconds) {
  const auto state = [&] {
    return Sample{support::processorSeconds(server), program != noProcess ? support::processorSeconds(program) : 0,
                  program != noProcess ? static_cast<double>(support::wakeUps(program)) : 0};
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
  for (const std::string& name : scene.subjects) {
    progress(scene.workload + ", " + scene.areaName + ": " + name);
    const support::XServer server({.width = place.screen.width, .height = place.screen.height, .arguments = {}});
    const auto workload = makeWorkload(scene.workload, server.display());
    const auto samples = [&](pid_t program) {
      std::this_thread::sleep_for(settling);
      std::vector<Sample> taken;
      for (int run = 0; run < options.runs; ++run)
        taken.push_back(sample(server.processId(), program, options.seconds));
      return taken;
    };
    // The same work costs one server more than another, so each subject is compared with its own server.
    std::vector<double> without;
    for (const Sample& taken : samples(noProcess)) without.push_back(taken.server);
    const auto subject = startSubject(name, server.display(), place);
    CostResult result{name, {}, {}, {}};
    for (const Sample& taken : samples(subject->process())) {
      result.extra.push_back(taken.server + taken.program - median(without));
      result.ofProgram.push_back(taken.program);
      result.wakeUps.push_back(taken.wakeUps);
    }
    measurement.results.push_back(std::move(result));
    measurement.without.insert(measurement.without.end(), without.begin(), without.end());
  }
  return measurement;
}

}  // namespace bench
