#include "Tests/Soak/Report.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <functional>

namespace soak {
namespace {

constexpr int plotWidth = 760;
constexpr int plotHeight = 150;
constexpr int margin = 60;

using Value = std::function<double(const Sample&)>;

// One curve over time, from zero to its own maximum.
void drawCurve(std::ofstream& svg, const std::vector<Sample>& samples, const std::string& title, const Value& value,
               int top) {
  double most = 1;
  for (const Sample& sample : samples) most = std::max(most, value(sample) * 1.1);
  const double end = samples.back().seconds;
  svg << "<text x='" << margin << "' y='" << top - 8 << "'>" << title << ", at most " << std::lround(most / 1.1)
      << "</text><rect x='" << margin << "' y='" << top << "' width='" << plotWidth << "' height='" << plotHeight
      << "' fill='none' stroke='#999'/><polyline fill='none' stroke='#20507a' points='";
  for (const Sample& sample : samples)
    svg << margin + sample.seconds / end * plotWidth << ',' << top + plotHeight - value(sample) / most * plotHeight
        << ' ';
  svg << "'/>\n";
}

}  // namespace

Verdict judge(const std::vector<Sample>& samples, std::size_t frames, std::size_t late) {
  Verdict verdict;
  const auto isEnd = [](const Sample& sample) { return sample.endsRound; };
  const auto first = std::ranges::find_if(samples, isEnd);
  const auto last = std::ranges::find_if(samples.rbegin(), samples.rend(), isEnd);
  if (first == samples.end() || &*first == &*last) return {{"Fewer than two rounds: nothing to compare."}, false};
  const auto compare = [&](const std::string& what, std::int64_t before, std::int64_t after, double allowed) {
    const bool isLevel = static_cast<double>(after) <= static_cast<double>(before) * (1 + allowed);
    verdict.isGood = verdict.isGood && isLevel;
    verdict.lines.push_back(what + ": " + std::to_string(before) + " after the first minute, " + std::to_string(after) +
                            " at the end" + (isLevel ? "" : " (NOT LEVEL)"));
  };
  // Allocators keep a few pages more or less, and a frame in flight holds some resources.
  compare("memory of the program, KiB", first->programMemory, last->programMemory, 0.03);
  compare("memory of the X server, KiB", first->serverMemory, last->serverMemory, 0.03);
  compare("open descriptors", first->descriptors, last->descriptors, 0);
  compare("resources in the X server", first->resources, last->resources, 0.1);
  verdict.lines.push_back("pictures looked at: " + std::to_string(frames) +
                          ", of them older than 100 ms: " + std::to_string(late));
  verdict.isGood = verdict.isGood && late == 0 && frames > 0;
  return verdict;
}

void write(const std::vector<Sample>& samples, const std::filesystem::path& directory) {
  std::ofstream csv(directory / "samples.csv");
  csv << "seconds,program KiB,server KiB,descriptors,resources,oldest frame ms,end of a round\n";
  for (const Sample& sample : samples)
    csv << sample.seconds << ',' << sample.programMemory << ',' << sample.serverMemory << ',' << sample.descriptors
        << ',' << sample.resources << ',' << sample.oldestFrame << ',' << sample.endsRound << '\n';
  std::ofstream svg(directory / "plot.svg");
  svg << "<svg xmlns='http://www.w3.org/2000/svg' width='" << plotWidth + 2 * margin << "' height='"
      << 5 * (plotHeight + 40) << "' font-family='sans-serif' font-size='12'>\n<rect width='100%' height='100%' "
      << "fill='white'/>\n";
  const std::vector<std::pair<std::string, Value>> curves{
      {"memory of the program, KiB", [](const Sample& s) { return static_cast<double>(s.programMemory); }},
      {"memory of the X server, KiB", [](const Sample& s) { return static_cast<double>(s.serverMemory); }},
      {"open descriptors", [](const Sample& s) { return static_cast<double>(s.descriptors); }},
      {"resources in the X server", [](const Sample& s) { return static_cast<double>(s.resources); }},
      {"age of the oldest picture seen, ms", [](const Sample& s) { return s.oldestFrame; }},
  };
  int top = 30;
  for (const auto& [title, value] : curves) {
    drawCurve(svg, samples, title, value, top);
    top += plotHeight + 40;
  }
  svg << "</svg>\n";
}

}  // namespace soak
