// The one way for a test to wait: on a condition, with a deadline.
//
// Threads: any; the predicate runs on the calling thread.
#pragma once

#include <chrono>
#include <functional>

namespace support {

inline constexpr std::chrono::milliseconds defaultDeadline{10'000};

// Asks again and again, a few milliseconds apart at most, until the predicate is true or the deadline has passed.
// Returns the predicate's last answer.
[[nodiscard]] bool waitUntil(const std::function<bool()>& predicate,
                             std::chrono::milliseconds deadline = defaultDeadline);

// Blocks until the descriptor can be read (or its other end is closed). False if the deadline passed first.
[[nodiscard]] bool waitReadable(int descriptor, std::chrono::milliseconds deadline = defaultDeadline);

}  // namespace support
