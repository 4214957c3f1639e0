// For the adapter with mistakes planted in it: which of them is made in this run.
#pragma once

#include <cstdlib>

inline bool isPlanted(int mistake) {
  static const int chosen = [] {
    const char* const number = std::getenv("QUILLFADE_MISTAKE");
    return number != nullptr ? std::atoi(number) : 0;
  }();
  return chosen == mistake;
}
