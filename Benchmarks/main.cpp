// Measures and reports.
//
// bench [--quick] [--only PART[,PART]...] [--json FILE] [--svg FILE]
// PART: cost, latency, floors, memory, or part of the name of a workload and its area ("typing", "video whole",
// "520x340").
// Without a file, it prints only the table.
#include <sys/utsname.h>

#include <algorithm>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>
#include <thread>

#include "Benchmarks/Report.h"
#include "Benchmarks/Workloads.h"

namespace bench {
namespace {

struct Options {
  bool isQuick = false;
  std::vector<std::string> only;
  std::string json;
  std::string svg;
};

constexpr PixelRect wholeScreen{0, 0, 1920, 1080};
constexpr PixelRect smallArea{240, 220, 520, 340};  // inside the window that shows the video
constexpr PixelRect whole4k{0, 0, 3840, 2160};

std::vector<CostScene> scenes(bool isQuick) {
  const std::vector<std::string> all{ours,    "ffplay", "gstreamer-damage", "gstreamer-full",
                                     "xzoom", "picom",  "bare-mirror"};
  const std::vector<std::string> copies{ours, "ffplay", "gstreamer-full", "xzoom", redirectionOnly};
  const std::vector<std::string> few{ours, "gstreamer-full", "picom"};
  std::vector<CostScene> result;
  for (const char* workload : {"idle", "typing", "scrolling", "video"})
    result.push_back({workload, "whole", 1920, 1080, wholeScreen, isQuick ? few : all});
  if (isQuick) return result;
  const std::vector<std::string> byDamage{ours, "gstreamer-damage", "picom", "bare-mirror", redirectionOnly};
  for (const char* workload : {"windows-10", "windows-100", "windows-1000"})
    result.push_back({workload, "whole", 1920, 1080, wholeScreen, byDamage});
  for (const char* workload : {"idle", "typing", "video"})
    result.push_back({workload, "520x340", 1920, 1080, smallArea, copies});
  for (const char* workload : {"typing", "video"}) result.push_back({workload, "4K", 3840, 2160, whole4k, few});
  return result;
}

std::string machine() {
  utsname system{};
  uname(&system);
  return "Xvfb, software rendering, " + std::to_string(std::thread::hardware_concurrency()) + " processors (" +
         system.machine + ")";
}

std::vector<LatencyMeasurement> latencies(bool isQuick) {
  const int samples = isQuick ? 40 : 200;
  std::vector<LatencyMeasurement> result{measureChange(ours, "idle", samples), measureChange(ours, "video", samples),
                                         measureHotKey(samples / 8), measureOverlay(samples / 4)};
  if (isQuick) return result;
  for (const char* peer : {"ffplay", "gstreamer-damage", "gstreamer-full", "xzoom"})
    result.push_back(measureChange(peer, "idle", samples / 2));
  return result;
}

Report measure(const Options& options) {
  const auto isWanted = [&](const std::string& name) {
    return options.only.empty() || std::ranges::find(options.only, name) != options.only.end();
  };
  const auto isSceneWanted = [&](const CostScene& scene) {
    const std::string name = scene.workload + " " + scene.areaName;
    return isWanted("cost") ||
           std::ranges::any_of(options.only, [&](const auto& part) { return name.find(part) != std::string::npos; });
  };
  Report report;
  report.machine = machine();
  // Three seconds contain two of our checks of the windows, one of which also checks the background.
  report.options = options.isQuick ? CostOptions{3, 1} : CostOptions{5, 3};
  report.peers = describePeers();
  const auto tell = [](const std::string& what) { std::cerr << what << std::endl; };
  for (const CostScene& scene : scenes(options.isQuick))
    if (isSceneWanted(scene)) report.costs.push_back(measureCost(scene, report.options, tell));
  tell("floors, latency, memory");
  if (isWanted("floors")) report.floors = measureFloors(report.options);
  if (isWanted("latency")) report.latencies = latencies(options.isQuick);
  if (isWanted("memory")) report.memory = measureMemory(options.isQuick ? 200 : 10'000);
  return report;
}

std::vector<std::string> split(const std::string& list) {
  std::vector<std::string> parts;
  std::istringstream stream(list);
  for (std::string part; std::getline(stream, part, ',');) parts.push_back(part);
  return parts;
}

Options parse(const std::vector<std::string>& arguments) {
  Options options;
  for (auto argument = arguments.begin(); argument != arguments.end(); ++argument) {
    const auto value = [&] { return std::next(argument) == arguments.end() ? std::string() : *++argument; };
    if (*argument == "--quick")
      options.isQuick = true;
    else if (*argument == "--only")
      options.only = split(value());
    else if (*argument == "--json")
      options.json = value();
    else if (*argument == "--svg")
      options.svg = value();
    else
      throw std::invalid_argument("There is no option " + *argument + ".");
  }
  return options;
}

void run(const Options& options) {
  const Report report = measure(options);
  writeText(report, std::cout);
  if (!options.json.empty()) {
    std::ofstream file(options.json);
    writeJson(report, file);
  }
  if (!options.svg.empty()) {
    std::ofstream file(options.svg);
    writeSvg(report, file);
  }
}

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  const std::vector<std::string> arguments(argv + 1, argv + argc);
  if (arguments == std::vector<std::string>{"--print-lines"}) bench::printLines();
  try {
    bench::run(bench::parse(arguments));
  } catch (const std::exception& error) {
    std::cerr << "bench: " << error.what() << "\n";
    return 1;
  }
}
