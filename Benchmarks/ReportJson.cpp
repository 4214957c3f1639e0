#include "Benchmarks/Report.h"

namespace bench {

namespace {

std::string quoted(const std::string& text) {
  std::string result = "\"";
  for (const char character : text) {
    if (character == '"' || character == '\\') result += '\\';
    if (static_cast<unsigned char>(character) >= ' ') result += character;
  }
  return result + '"';
}

template <typename Items, typename Write>
void writeList(std::ostream& out, const Items& items, Write write) {
  out << "[";
  const char* separator = "";
  for (const auto& item : items) {
    out << separator;
    write(item);
    separator = ", ";
  }
  out << "]";
}

void writeNumbers(std::ostream& out, const std::vector<double>& numbers) {
  writeList(out, numbers, [&](double number) { out << number; });
}

void writeCost(std::ostream& out, const CostMeasurement& measurement) {
  const CostScene& scene = measurement.scene;
  out << "\n    {\"workload\": " << quoted(scene.workload) << ", \"area\": " << quoted(scene.areaName)
      << ", \"screen\": [" << scene.screenWidth << ", " << scene.screenHeight << "], \"without\": ";
  writeNumbers(out, measurement.without);
  out << ", \"results\": ";
  writeList(out, measurement.results, [&](const CostResult& result) {
    out << "\n      {\"subject\": " << quoted(result.subject) << ", \"extra\": ";
    writeNumbers(out, result.extra);
    out << ", \"ofProgram\": ";
    writeNumbers(out, result.ofProgram);
    out << ", \"wakeUpsASecond\": ";
    writeNumbers(out, result.wakeUps);
    out << "}";
  });
  out << "}";
}

void writeMemory(std::ostream& out, const MemoryMeasurement& memory) {
  out << "{\"program\": " << memory.program << ", \"emptyTrayProgram\": " << memory.emptyTrayProgram
      << ", \"server\": " << memory.server << ", \"restarts\": " << memory.restarts
      << ", \"programAtHalf\": " << memory.programAtHalf << ", \"programAtEnd\": " << memory.programAtEnd
      << ", \"serverAtHalf\": " << memory.serverAtHalf << ", \"serverAtEnd\": " << memory.serverAtEnd << "}";
}

}  // namespace

void writeJson(const Report& report, std::ostream& out) {
  out << "{\n  \"machine\": " << quoted(report.machine) << ",\n  \"secondsOfARun\": " << report.options.seconds
      << ",\n  \"peers\": ";
  writeList(out, report.peers, [&](const PeerDescription& peer) {
    out << "\n    {\"name\": " << quoted(peer.name) << ", \"version\": " << quoted(peer.version)
        << ", \"commandLine\": " << quoted(peer.commandLine) << "}";
  });
  out << ",\n  \"costs\": ";
  writeList(out, report.costs, [&](const CostMeasurement& measurement) { writeCost(out, measurement); });
  out << ",\n  \"floors\": ";
  writeList(out, report.floors, [&](const Floor& floor) {
    out << "\n    {\"name\": " << quoted(floor.name) << ", \"cost\": ";
    writeNumbers(out, floor.cost);
    out << "}";
  });
  out << ",\n  \"latencies\": ";
  writeList(out, report.latencies, [&](const LatencyMeasurement& latency) {
    out << "\n    {\"name\": " << quoted(latency.name) << ", \"milliseconds\": ";
    writeNumbers(out, latency.milliseconds);
    out << "}";
  });
  if (report.memory) {
    out << ",\n  \"memory\": ";
    writeMemory(out, *report.memory);
  }
  out << "\n}\n";
}

}  // namespace bench
