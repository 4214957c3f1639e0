// Requests and messages of the X protocol, written by hand in either byte order.
#pragma once

#include <initializer_list>
#include <vector>

#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::lens {

class ProtocolBytes {
 public:
  explicit ProtocolBytes(protocol::ByteOrder order) : wire_(order) {}

  // Four bytes of header, then these words.
  void request(std::uint8_t major, std::uint8_t minor, std::initializer_list<std::uint32_t> words) {
    std::byte* at = append(4 + 4 * words.size());
    at[0] = std::byte{major};
    at[1] = std::byte{minor};
    wire_.put16(at + 2, static_cast<std::uint16_t>(1 + words.size()));
    putWords(at + 4, words);
  }
  // The same with a 32-bit length, which counts itself; the body goes on for `more` words of 0.
  void longRequest(std::uint8_t major, std::uint8_t minor, std::initializer_list<std::uint32_t> words,
                   std::size_t more = 0) {
    std::byte* at = append(8 + 4 * words.size() + 4 * more);
    at[0] = std::byte{major};
    at[1] = std::byte{minor};
    wire_.put32(at + 4, static_cast<std::uint32_t>(2 + words.size() + more));
    putWords(at + 8, words);
  }
  // An error (0), a reply (1) or an event; a reply or generic event goes on for `more` words.
  void message(std::uint8_t type, std::uint16_t number, std::uint32_t word2 = 0, std::uint32_t more = 0) {
    std::byte* at = append(32 + 4 * std::size_t{more});
    at[0] = std::byte{type};
    wire_.put16(at + 2, number);
    wire_.put32(at + 4, more);
    wire_.put32(at + 8, word2);
  }

  [[nodiscard]] const std::vector<std::byte>& bytes() const { return bytes_; }
  [[nodiscard]] protocol::Bytes span() { return bytes_; }
  [[nodiscard]] std::uint32_t word(std::size_t offset) const { return wire_.get32(&bytes_[offset]); }
  [[nodiscard]] std::uint16_t half(std::size_t offset) const { return wire_.get16(&bytes_[offset]); }

 private:
  std::byte* append(std::size_t length) {
    bytes_.resize(bytes_.size() + length);
    return bytes_.data() + bytes_.size() - length;
  }
  void putWords(std::byte* at, std::initializer_list<std::uint32_t> words) {
    for (const std::uint32_t word : words) {
      wire_.put32(at, word);
      at += 4;
    }
  }

  protocol::Wire wire_;
  std::vector<std::byte> bytes_;
};

}  // namespace platform::linux::lens
