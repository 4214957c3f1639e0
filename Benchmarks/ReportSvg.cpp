#include <algorithm>
#include <cmath>
#include <iomanip>

#include "Benchmarks/Report.h"
#include "Benchmarks/Statistics.h"

namespace bench {

namespace {

constexpr int labelWidth = 150;
constexpr int barsWidth = 480;
constexpr int lineHeight = 18;
constexpr double cheapest = 0.001;
constexpr double dearest = 10;

double lengthOf(double cost) {
  const double part = std::log(std::clamp(cost, cheapest, dearest) / cheapest) / std::log(dearest / cheapest);
  return part * barsWidth;
}

void writeBar(std::ostream& out, const CostResult& result, int y) {
  const double cost = median(result.extra);
  const char* color = result.subject == ours ? "#2f7d4f" : "#9aa7b4";
  out << "<text x='" << labelWidth - 8 << "' y='" << y + 13 << "' text-anchor='end'>" << result.subject << "</text>"
      << "<rect x='" << labelWidth << "' y='" << y + 2 << "' width='" << lengthOf(cost) << "' height='"
      << lineHeight - 4 << "' fill='" << color << "'/>"
      << "<text x='" << labelWidth + lengthOf(cost) + 6 << "' y='" << y + 13 << "'>"
      << (cost < cheapest ? "below " : "") << std::max(cost, cheapest) << "</text>\n";
}

}  // namespace

void writeSvg(const Report& report, std::ostream& out) {
  int y = 34;
  out << std::fixed << std::setprecision(3);
  int height = y;
  for (const CostMeasurement& measurement : report.costs)
    if (measurement.scene.areaName == "whole") height += static_cast<int>(measurement.results.size() + 2) * lineHeight;
  out << "<svg xmlns='http://www.w3.org/2000/svg' width='" << labelWidth + barsWidth + 90 << "' height='" << height
      << "' font-family='sans-serif' font-size='12'>\n<rect width='100%' height='100%' fill='white'/>\n"
      << "<text x='10' y='20' font-weight='bold'>Cost of a live copy of a whole screen of 1920 x 1080: processor "
         "seconds "
         "in 10 s (logarithmic)</text>\n";
  for (const CostMeasurement& measurement : report.costs) {
    if (measurement.scene.areaName != "whole") continue;
    y += lineHeight;
    out << "<text x='10' y='" << y << "' font-weight='bold'>" << measurement.scene.workload << "</text>\n";
    y += 4;
    for (const CostResult& result : measurement.results) {
      writeBar(out, result, y);
      y += lineHeight;
    }
    y += lineHeight - 4;
  }
  out << "</svg>\n";
}

}  // namespace bench
