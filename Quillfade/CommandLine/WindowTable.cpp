#include "Quillfade/CommandLine/WindowTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "Quillfade/Basics/EscapedText.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Cover/ExclusionRules.h"
#include "Quillfade/Cover/ScreenChoice.h"

namespace quillfade {
namespace {

using Row = std::array<std::string, 7>;

// Counts characters, not bytes: continuation bytes take no room of their own.
std::size_t displayWidth(const std::string& text) {
  return static_cast<std::size_t>(
      std::ranges::count_if(text, [](char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }));
}

// A foreign window may claim any size; only sizes that a person can read are written out.
std::string wholeText(double value, const char* unit = "") {
  constexpr double largestReadable = 1e9;
  return std::abs(value) < largestReadable ? std::to_string(wholeNumber(value)) + unit : "-";
}

std::string reasonText(Judgement judgement, const platform::CaptureWindow& window,
                       const std::vector<WindowRule>& rules) {
  std::string text{reason(judgement)};
  if (judgement == Judgement::excludedByUser || judgement == Judgement::keptByUser) {
    text += ": \"" + escapedText(ruleFor(window, rules)->pattern) + '"';
  }
  const bool isForUserToSay = judgement == Judgement::keptTakesPointer || judgement == Judgement::keptPerhapsLocker;
  if (const auto owner = ownerIdentifier(window); isForUserToSay && owner) {
    text += "; if it is an annotation: \"alwaysExclude\": [\"" + escapedText(*owner) + "\"]";
  }
  return text;
}

std::string ownerText(const platform::CaptureWindow& window) {
  const std::string name = window.names.empty() ? "?" : window.names.front();
  return escapedText(ownerIdentifier(window).value_or(name));
}

Row rowOf(const platform::CaptureWindow& window, const platform::Screen& screen,
          const std::optional<std::string>& ownIdentifier, const std::vector<WindowRule>& rules) {
  const Judgement judgement = judge(window, screen, ownIdentifier, rules);
  const double coverage =
      100 * window.frame.width() * window.frame.height() / (screen.frame.width() * screen.frame.height());
  return {std::to_string(window.windowID),
          ownerText(window),
          std::to_string(window.windowLayer),
          wholeText(window.frame.width()) + "x" + wholeText(window.frame.height()),
          wholeText(coverage, "%"),
          isExcluded(judgement) ? "left out" : "kept",
          reasonText(judgement, window, rules)};
}

std::string layOut(const std::vector<Row>& rows) {
  std::array<std::size_t, std::tuple_size_v<Row>> widths{};
  for (const auto& row : rows) {
    for (std::size_t column = 0; column < row.size(); ++column) {
      widths.at(column) = std::max(widths.at(column), displayWidth(row.at(column)));
    }
  }
  std::string text;
  for (const auto& row : rows) {
    for (std::size_t column = 0; column + 1 < row.size(); ++column) {
      text += row.at(column) + std::string(widths.at(column) - displayWidth(row.at(column)) + 2, ' ');
    }
    text += row.back() + '\n';
  }
  return text;
}

}  // namespace

std::string windowTable(const platform::ShareableContent& content, const std::optional<platform::Rect>& region,
                        platform::Platform& platform) {
  const auto& screens = platform.screens();
  const auto screen = region ? screenByCenter(*region, screens) : screens.main();
  if (!screen) return "There is no screen.\n";
  const auto ownIdentifier = platform.process().bundleIdentifier();
  std::vector<Row> rows{{"ID", "OWNER", "LAYER", "SIZE", "COVERS", "LIVE COPY", "WHY"}};
  const auto rules = userRules(platform.rulesFile()).windows;
  for (const auto& window : content.windows) rows.push_back(rowOf(window, *screen, ownIdentifier, rules));
  std::string text = layOut(rows);
  if (content.isPartial) {
    text +=
        "Windows of Wayland programs are not on this list: their ink cannot be taken away here, and only the solid "
        "cover hides it.\n";
  }
  return text;
}

}  // namespace quillfade
