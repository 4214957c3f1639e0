#include "Tests/Lens/StreamPromises.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace lens {
namespace {

// Mostly the beginnings of requests that matter, with short lengths, so that a stream stays valid for a while.
std::vector<std::byte> almostProtocol(std::mt19937& random) {
  static constexpr std::array<unsigned, 12> likely{0, 1, 4, 5, 7, 8, 0x0a, 36, 62, 73, 133, 138};
  std::vector<std::byte> bytes(2 + random() % 400);
  for (std::byte& byte : bytes) {
    byte = static_cast<std::byte>(random() % 3 != 0 ? likely[random() % likely.size()] : random() % 256);
  }
  return bytes;
}

TEST(StreamPromises, HoldForAnyBytes) {
  std::mt19937 random(20);
  for (int i = 0; i < 30'000; ++i) {
    const auto bytes = almostProtocol(random);
    ASSERT_TRUE(keepsPromises(bytes)) << i;
  }
}

}  // namespace
}  // namespace lens
