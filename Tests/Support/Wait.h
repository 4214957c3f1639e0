// The one way for a test to wait: on a condition, with a deadline.
//
// Threads: any; the predicate runs on the calling thread.
#pragma once

#include <chrono>
#include <functional>

namespace support {

inline constexpr std::chrono::milliseconds defaultDeadline{10'000};

// Asks again and again, at most a few milliseconds apart, until the predicate is true or the deadline has passed.
// Returns what the predicate said last.
[[nodiscard]] bool waitUntil(const std::function<bool()>& predicate,
                             std::chrono::milliseconds deadline = defaultDeadline);

// Blocks until the descriptor can be read (or its other end is closed). False when the deadline passed first.
[[nodiscard]] bool waitReadable(int descriptor, std::chrono::milliseconds deadline = defaultDeadline);

}  // namespace support
