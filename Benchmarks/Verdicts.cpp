#include <algorithm>
#include <limits>

#include "Benchmarks/Report.h"
#include "Benchmarks/Statistics.h"

namespace bench {

namespace {

class Judge {
 public:
  explicit Judge(const Report& report) : report_(report) {}

  std::vector<Verdict> verdicts() {
    const std::vector<std::string> copies{"ffplay", "gstreamer-damage", "gstreamer-full", "xzoom"};
    const std::vector<std::string> fullCopies{"ffplay", "gstreamer-full", "xzoom"};
    ratio("idle, whole screen: cost, of the cheapest peer", "idle", "whole", copies, 1.0 / 200);
    ratio("typing, whole screen: cost, of the cheapest peer", "typing", "whole", copies, 1.0 / 30);
    ratio("scrolling, whole screen: cost, of the cheapest peer", "scrolling", "whole", copies, 1.0 / 5);
    ratio("video, whole screen: cost, of the cheapest full copy", "video", "whole", fullCopies, 0.5);
    ratio("video, whole screen: cost, of picom's", "video", "whole", {"picom"}, 1.0);
    ratio("video, 520x340: cost, of GStreamer's full copy", "video", "520x340", {"gstreamer-full"}, 1.4);
    if (const auto ten = cost("windows-10", "whole", ours), thousand = cost("windows-1000", "whole", ours);
        ten && thousand)
      verdicts_.push_back({"1,000 windows, one changing: cost, of that with 10", *thousand / *ten, 1.2});
    latency("isolated change to copy, p50, ms", "quillfade, idle", 0.5, 2);
    latency("isolated change to copy, p95, ms", "quillfade, idle", 0.95, 5);
    latency("hot key to first live frame, p50, ms", "hot key to first live frame", 0.5, 80);
    latency("overlay mapped to gone, p95, ms", "overlay mapped to gone", 0.95, 50);
    if (report_.memory) memory(*report_.memory);
    return std::move(verdicts_);
  }

 private:
  [[nodiscard]] std::optional<double> cost(const std::string& workload, const std::string& area,
                                           const std::string& subject) const {
    for (const CostMeasurement& measurement : report_.costs) {
      if (measurement.scene.workload != workload || measurement.scene.areaName != area) continue;
      const auto found = std::ranges::find(measurement.results, subject, &CostResult::subject);
      if (found != measurement.results.end()) return median(found->extra);
    }
    return std::nullopt;
  }

  void ratio(const std::string& what, const std::string& workload, const std::string& area,
             const std::vector<std::string>& peers, double limit) {
    const auto own = cost(workload, area, ours);
    double cheapest = std::numeric_limits<double>::infinity();
    for (const std::string& peer : peers) cheapest = std::min(cheapest, cost(workload, area, peer).value_or(cheapest));
    // Anything below the noise of the measurement counts as nothing.
    if (own && cheapest > 0 && cheapest < std::numeric_limits<double>::infinity())
      verdicts_.push_back({what, std::max(*own, 0.0) / cheapest, limit});
  }

  void latency(const std::string& what, const std::string& name, double part, double limit) {
    const auto found = std::ranges::find(report_.latencies, name, &LatencyMeasurement::name);
    if (found != report_.latencies.end()) verdicts_.push_back({what, percentile(found->milliseconds, part), limit});
  }

  void memory(const MemoryMeasurement& memory) {
    const auto grown = [](std::size_t half, std::size_t end) {
      return static_cast<double>(end) / static_cast<double>(half);
    };
    verdicts_.push_back({"resident memory, of an empty tray program's",
                         static_cast<double>(memory.program) / static_cast<double>(memory.emptyTrayProgram), 1.25});
    verdicts_.push_back({"resident memory after all restarts, of that after half of them",
                         grown(memory.programAtHalf, memory.programAtEnd), 1.01});
    verdicts_.push_back({"the X server's after all restarts, of that after half of them",
                         grown(memory.serverAtHalf, memory.serverAtEnd), 1.01});
  }

  const Report& report_;
  std::vector<Verdict> verdicts_;
};

}  // namespace

std::vector<Verdict> verdicts(const Report& report) { return Judge(report).verdicts(); }

}  // namespace bench
