#include <cstdarg>
#include <cstdio>

#include "Benchmarks/Report.h"
#include "Benchmarks/Statistics.h"

namespace bench {

namespace {

[[gnu::format(printf, 1, 2)]] std::string text(const char* format, ...) {
  std::array<char, 400> buffer{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(buffer.data(), buffer.size(), format, arguments);
  va_end(arguments);
  return buffer.data();
}

double mebibytes(std::size_t bytes) { return static_cast<double>(bytes) / (1024 * 1024); }

void writeCost(const CostMeasurement& measurement, std::ostream& out) {
  const CostScene& scene = measurement.scene;
  out << text("\n%s, %s, on %d x %d (the workload alone: %.3f)\n", scene.workload.c_str(), scene.areaName.c_str(),
              scene.screenWidth, scene.screenHeight, median(measurement.without));
  for (const CostResult& result : measurement.results)
    out << text("  %-18s %8.4f   %8.4f to %8.4f   program %7.4f   wakes %6.1f/s\n", result.subject.c_str(),
                median(result.extra), least(result.extra), most(result.extra), median(result.ofProgram),
                median(result.wakeUps));
}

void writeMemory(const MemoryMeasurement& memory, std::ostream& out) {
  out << text("\nResident memory, MiB: program %.1f, empty tray program %.1f, added to the X server %.1f\n",
              mebibytes(memory.program), mebibytes(memory.emptyTrayProgram), mebibytes(memory.server));
  out << text("After %d and %d restarts: program %.2f and %.2f, X server %.2f and %.2f\n", memory.restarts / 2,
              memory.restarts, mebibytes(memory.programAtHalf), mebibytes(memory.programAtEnd),
              mebibytes(memory.serverAtHalf), mebibytes(memory.serverAtEnd));
}

}  // namespace

void writeText(const Report& report, std::ostream& out) {
  out << report.machine << "\n";
  for (const PeerDescription& peer : report.peers)
    out << text("%-18s %s\n%-18s %s\n", peer.name.c_str(), peer.version.c_str(), "", peer.commandLine.c_str());
  out << text(
      "\nProcessor seconds in 10 s beyond the workload, program and X server together: median, least, most of %d "
      "runs of %.1f s\n",
      report.options.runs, report.options.seconds);
  for (const CostMeasurement& measurement : report.costs) writeCost(measurement, out);
  if (!report.floors.empty()) out << "\nFloors: processor seconds in 10 s, 30 times a second\n";
  for (const Floor& floor : report.floors)
    out << text("  %-28s %8.4f   %8.4f to %8.4f\n", floor.name.c_str(), median(floor.cost), least(floor.cost),
                most(floor.cost));
  if (!report.latencies.empty()) out << "\nLatency, ms: p50, p95, p99\n";
  for (const LatencyMeasurement& latency : report.latencies)
    out << text("  %-30s %7.2f %7.2f %7.2f   of %zu\n", latency.name.c_str(), percentile(latency.milliseconds, 0.5),
                percentile(latency.milliseconds, 0.95), percentile(latency.milliseconds, 0.99),
                latency.milliseconds.size());
  if (report.memory) writeMemory(*report.memory, out);
  out << "\n";
  for (const Verdict& verdict : verdicts(report))
    out << text("%-6s %-66s %9.4f (at most %.4f)\n", verdict.holds() ? "met" : "MISSED", verdict.what.c_str(),
                verdict.found, verdict.limit);
}

}  // namespace bench
