#include "Quillfade/Cover/DiagnosticLog.h"

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <vector>

#include "Platform/Utf8.h"
#include "Quillfade/Basics/EscapedText.h"
#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Cover/ExclusionRules.h"

namespace quillfade {
namespace {

std::string padded(std::int64_t number, std::size_t digits) {
  std::string text = std::to_string(number);
  if (text.size() < digits) text.insert(0, digits - text.size(), '0');
  return text;
}

// UTC to the second, as in 2026-11-15 23:56:39 +0000.
std::string timestamp(std::chrono::system_clock::time_point now) {
  const auto seconds = std::chrono::floor<std::chrono::seconds>(now);
  const auto day = std::chrono::floor<std::chrono::days>(seconds);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss time{seconds - day};
  return padded(static_cast<int>(date.year()), 4) + '-' + padded(static_cast<unsigned>(date.month()), 2) + '-' +
         padded(static_cast<unsigned>(date.day()), 2) + ' ' + padded(time.hours().count(), 2) + ':' +
         padded(time.minutes().count(), 2) + ':' + padded(time.seconds().count(), 2) + " +0000";
}

std::string ownerAndLayer(const platform::CaptureWindow& window) {
  return ownerIdentifier(window).value_or("?") + "/layer" + std::to_string(window.windowLayer);
}

std::string candidateEntry(const platform::CaptureWindow& window) {
  return ownerAndLayer(window) + '/' + std::to_string(wholeNumber(window.frame.width())) + 'x' +
         std::to_string(wholeNumber(window.frame.height()));
}

std::string listText(std::span<const std::string> entries) {
  std::string text = "[";
  for (const auto& entry : entries) {
    if (text.size() > 1) text += ", ";
    text += '"' + escapedText(entry) + '"';
  }
  return text + ']';
}

bool isCandidate(const platform::CaptureWindow& window, const std::optional<std::string>& ownIdentifier) {
  const auto owner = ownerIdentifier(window);
  if (!window.isOnScreen || owner == ownIdentifier) return false;
  // Exact membership, unlike the exclusion rules. Those can afford to match part of a name, since they also ask for an
  // overlay's layer and size; here that would list every ordinary window of an application with such a name.
  return window.windowLayer > 0 || conferencing().contains(owner.value_or(""));
}

}  // namespace

void DiagnosticLog::log(std::string_view message) const {
  std::string line = '[' + timestamp(platform_.clock().now()) + "] ";
  line += message;
  line += '\n';
  const std::string path = platform_.process().homeDirectory() + '/' + std::string{relativePath};
  if (!platform::isValidUtf8(line)) return;
  auto& files = platform_.files();
  if (files.fileExists(path)) {
    if (auto handle = files.openForWriting(path)) {
      if ((*handle)->seekToEndOfFile()) (void)(*handle)->write(line);
      (void)(*handle)->close();
      return;
    }
  }
  // No file, or one that cannot be opened: this line becomes the whole content.
  (void)files.write(path, line);
}

void DiagnosticLog::logCandidates(const platform::ShareableContent& content,
                                  std::span<const platform::CaptureWindow> excluded) const {
  const auto ownIdentifier = platform_.process().bundleIdentifier();
  std::vector<std::string> candidates;
  for (const auto& window : content.windows) {
    if (isCandidate(window, ownIdentifier)) candidates.push_back(candidateEntry(window));
  }
  log("high-layer candidates: " + listText(candidates));
  std::vector<std::string> leftOut;
  for (const auto& window : excluded) leftOut.push_back(ownerAndLayer(window));
  log("excluded: " + listText(leftOut));
}

}  // namespace quillfade
