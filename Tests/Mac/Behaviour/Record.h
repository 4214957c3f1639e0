// Looks through the record of calls.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace quillfade {

// All of these calls are there, in this order; others may come in between.
inline void expectInOrder(const std::vector<std::string>& record, const std::vector<std::string>& calls) {
  auto place = record.begin();
  for (const auto& call : calls) {
    const auto found = std::find(place, record.end(), call);
    ASSERT_NE(found, record.end()) << call << " is missing, or comes too early";
    place = found + 1;
  }
}

inline long countCalls(const std::vector<std::string>& record, const std::string& call) {
  return std::ranges::count(record, call);
}

}  // namespace quillfade
