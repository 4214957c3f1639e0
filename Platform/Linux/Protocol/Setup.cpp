#include "Platform/Linux/Protocol/Setup.h"

#include <algorithm>

namespace platform::linux::protocol {

namespace {

constexpr std::size_t requestHeader = 12;
constexpr std::size_t replyHeader = 8;

constexpr std::size_t padded(std::size_t length) { return (length + 3) / 4 * 4; }

std::string textAt(std::span<const std::byte> bytes, std::size_t offset, std::size_t length) {
  return {reinterpret_cast<const char*>(bytes.data()) + offset, length};
}

void append(std::vector<std::byte>& bytes, std::string_view text) {
  std::ranges::transform(text, std::back_inserter(bytes), [](char c) { return static_cast<std::byte>(c); });
  bytes.resize(padded(bytes.size()));
}

}  // namespace

std::expected<std::optional<SetupRequest>, Error> parseSetupRequest(std::span<const std::byte> bytes) {
  if (bytes.empty()) return std::nullopt;
  const auto order = std::to_integer<char>(bytes[0]);
  if (order != 'l' && order != 'B') return std::unexpected(Error{"What it sends is not the X protocol."});
  if (bytes.size() < requestHeader) return std::nullopt;
  SetupRequest request{.order = order == 'l' ? ByteOrder::little : ByteOrder::big};
  const Wire wire(request.order);
  request.majorVersion = wire.get16(&bytes[2]);
  request.minorVersion = wire.get16(&bytes[4]);
  const std::size_t name = wire.get16(&bytes[6]);
  const std::size_t data = wire.get16(&bytes[8]);
  request.length = requestHeader + padded(name) + padded(data);
  if (bytes.size() < request.length) return std::nullopt;
  request.credential = {textAt(bytes, requestHeader, name), textAt(bytes, requestHeader + padded(name), data)};
  return request;
}

std::vector<std::byte> setupRequest(const SetupRequest& request, const Credential& credential) {
  const Wire wire(request.order);
  std::vector<std::byte> bytes(requestHeader);
  bytes[0] = static_cast<std::byte>(request.order == ByteOrder::little ? 'l' : 'B');
  wire.put16(&bytes[2], request.majorVersion);
  wire.put16(&bytes[4], request.minorVersion);
  wire.put16(&bytes[6], static_cast<std::uint16_t>(credential.name.size()));
  wire.put16(&bytes[8], static_cast<std::uint16_t>(credential.data.size()));
  append(bytes, credential.name);
  append(bytes, credential.data);
  return bytes;
}

std::vector<std::byte> setupRefusal(ByteOrder order, std::string_view reason) {
  const Wire wire(order);
  std::vector<std::byte> bytes(replyHeader);
  bytes[1] = static_cast<std::byte>(reason.size());
  wire.put16(&bytes[2], 11);
  wire.put16(&bytes[6], static_cast<std::uint16_t>(padded(reason.size()) / 4));
  append(bytes, reason);
  return bytes;
}

std::expected<std::optional<std::size_t>, Error> setupReplyLength(ByteOrder order, std::span<const std::byte> bytes) {
  if (bytes.empty()) return std::nullopt;
  constexpr int highestStatus = 2;
  if (std::to_integer<int>(bytes[0]) > highestStatus) {
    return std::unexpected(Error{"What the display server answers is not the X protocol."});
  }
  if (bytes.size() < replyHeader) return std::nullopt;
  return replyHeader + std::size_t{Wire(order).get16(&bytes[6])} * 4;
}

bool isSameSecret(std::string_view one, std::string_view other) {
  if (one.size() != other.size()) return false;
  unsigned difference = 0;
  for (std::size_t i = 0; i < one.size(); ++i) {
    difference |= static_cast<unsigned>(static_cast<unsigned char>(one[i]) ^ static_cast<unsigned char>(other[i]));
  }
  return difference == 0;
}

}  // namespace platform::linux::protocol
