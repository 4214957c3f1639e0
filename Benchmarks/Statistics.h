// A few numbers about many.
//
// Threads: pure functions. Failure: without values everything is 0.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace bench {

// The smallest value that at least this fraction (0 to 1) of the values does not exceed.
[[nodiscard]] inline double percentile(std::vector<double> values, double part) {
  if (values.empty()) return 0;
  std::ranges::sort(values);
  const auto rank = static_cast<std::size_t>(std::ceil(part * static_cast<double>(values.size())));
  return values[std::clamp<std::size_t>(rank, 1, values.size()) - 1];
}

// The middle value, or the mean of the two in the middle.
[[nodiscard]] inline double median(std::vector<double> values) {
  if (values.empty()) return 0;
  std::ranges::sort(values);
  const std::size_t half = values.size() / 2;
  return values.size() % 2 == 1 ? values[half] : (values[half - 1] + values[half]) / 2;
}

[[nodiscard]] inline double least(const std::vector<double>& values) {
  return values.empty() ? 0 : std::ranges::min(values);
}
[[nodiscard]] inline double most(const std::vector<double>& values) {
  return values.empty() ? 0 : std::ranges::max(values);
}

}  // namespace bench
