// What the tests on a real Mac share. They need a session with a screen, and no permission.
//
// Threads: main thread only.
#pragma once

#import <CoreFoundation/CoreFoundation.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace native {

// Runs the main run loop until the condition holds; false when it does not within ten seconds.
inline bool comesTrue(const std::function<bool()>& condition) {
  constexpr std::chrono::seconds limit{10};
  constexpr CFTimeInterval slice = 0.01;
  const auto start = std::chrono::steady_clock::now();
  while (!condition()) {
    if (std::chrono::steady_clock::now() - start > limit) return false;
    CFRunLoopRunInMode(kCFRunLoopDefaultMode, slice, true);
  }
  return true;
}

struct Ending {
  int status = -1;
  std::string output;
};

// Runs this program once more, in a role of `main.mm`, while the main run loop goes on here.
[[nodiscard]] Ending runAs(const std::vector<std::string>& role);

}  // namespace native
