// Numbers as one X client writes them: each client chooses its byte order when it connects.
//
// Threads: plain values. Offsets are in bytes; the caller has made sure that the bytes exist.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

namespace platform::linux::protocol {

using Bytes = std::span<std::byte>;

enum class ByteOrder : std::uint8_t { little, big };

class Wire {
 public:
  explicit Wire(ByteOrder order) : isForeign_((order == ByteOrder::little) != isLittleHere) {}

  [[nodiscard]] std::uint16_t get16(const std::byte* at) const { return get<std::uint16_t>(at); }
  [[nodiscard]] std::uint32_t get32(const std::byte* at) const { return get<std::uint32_t>(at); }
  void put16(std::byte* at, std::uint16_t value) const { put(at, value); }
  void put32(std::byte* at, std::uint32_t value) const { put(at, value); }

 private:
  static constexpr bool isLittleHere = std::endian::native == std::endian::little;

  template <typename Number>
  [[nodiscard]] Number get(const std::byte* at) const {
    Number value = 0;
    std::memcpy(&value, at, sizeof value);
    return isForeign_ ? std::byteswap(value) : value;
  }
  template <typename Number>
  void put(std::byte* at, Number value) const {
    if (isForeign_) value = std::byteswap(value);
    std::memcpy(at, &value, sizeof value);
  }

  bool isForeign_;
};

}  // namespace platform::linux::protocol
