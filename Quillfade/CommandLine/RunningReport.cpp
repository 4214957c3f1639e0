#include "Quillfade/CommandLine/RunningReport.h"

namespace quillfade {
namespace {

constexpr std::string_view mayCaptureLine = "may capture\n";
constexpr std::string_view mayNotCaptureLine = "may not capture\n";

}  // namespace

std::string runningReportText(const RunningReport& report) {
  return std::string{report.mayCapture ? mayCaptureLine : mayNotCaptureLine} + hotKeyText(report.hotKeys);
}

RunningReport parseRunningReport(std::string_view text) {
  return {.hotKeys = parseHotKeyText(text.substr(text.find('\n') + 1)), .mayCapture = text.starts_with(mayCaptureLine)};
}

}  // namespace quillfade
