// What the fuzzers share. Each is one function that takes any bytes; breaking a promise ends the process.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string_view>

namespace fuzz {

inline void expect(bool holds, std::string_view promise) {
  if (holds) return;
  std::cerr << "broken: " << promise << std::endl;
  std::abort();
}

inline std::string_view text(const std::uint8_t* bytes, std::size_t length) {
  return {reinterpret_cast<const char*>(bytes), length};
}

}  // namespace fuzz

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length);
