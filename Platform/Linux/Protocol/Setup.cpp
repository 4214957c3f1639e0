#include "Platform/Linux/Protocol/Setup.h"

#include <xcb/xcb.h>

#include <algorithm>
#include <cstddef>

namespace platform::linux::protocol {

namespace {

constexpr std::size_t requestHeader = sizeof(xcb_setup_request_t);
constexpr std::size_t replyHeader = sizeof(xcb_setup_failed_t);

constexpr std::size_t nameLength = offsetof(xcb_setup_request_t, authorization_protocol_name_len);
constexpr std::size_t dataLength = offsetof(xcb_setup_request_t, authorization_protocol_data_len);
constexpr std::size_t majorVersion = offsetof(xcb_setup_request_t, protocol_major_version);
constexpr std::size_t minorVersion = offsetof(xcb_setup_request_t, protocol_minor_version);
constexpr std::size_t replyWords = offsetof(xcb_setup_failed_t, length);

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
  if (order != 'l' && order != 'B') return std::unexpected(Error{"What it sends is not X protocol."});
  if (bytes.size() < requestHeader) return std::nullopt;
  SetupRequest request{.order = order == 'l' ? ByteOrder::little : ByteOrder::big};
  const Wire wire(request.order);
  request.majorVersion = wire.get16(&bytes[majorVersion]);
  request.minorVersion = wire.get16(&bytes[minorVersion]);
  const std::size_t name = wire.get16(&bytes[nameLength]);
  const std::size_t data = wire.get16(&bytes[dataLength]);
  request.length = requestHeader + padded(name) + padded(data);
  if (bytes.size() < request.length) return std::nullopt;
  request.credential = {textAt(bytes, requestHeader, name), textAt(bytes, requestHeader + padded(name), data)};
  return request;
}

std::vector<std::byte> setupRequest(const SetupRequest& request, const Credential& credential) {
  const Wire wire(request.order);
  std::vector<std::byte> bytes(requestHeader);
  bytes[0] = static_cast<std::byte>(request.order == ByteOrder::little ? 'l' : 'B');
  wire.put16(&bytes[majorVersion], request.majorVersion);
  wire.put16(&bytes[minorVersion], request.minorVersion);
  wire.put16(&bytes[nameLength], static_cast<std::uint16_t>(credential.name.size()));
  wire.put16(&bytes[dataLength], static_cast<std::uint16_t>(credential.data.size()));
  append(bytes, credential.name);
  append(bytes, credential.data);
  return bytes;
}

std::vector<std::byte> setupRefusal(ByteOrder order, std::string_view reason) {
  const Wire wire(order);
  std::vector<std::byte> bytes(replyHeader);
  bytes[offsetof(xcb_setup_failed_t, reason_len)] = static_cast<std::byte>(reason.size());
  wire.put16(&bytes[offsetof(xcb_setup_failed_t, protocol_major_version)], X_PROTOCOL);
  wire.put16(&bytes[offsetof(xcb_setup_failed_t, length)], static_cast<std::uint16_t>(padded(reason.size()) / 4));
  append(bytes, reason);
  return bytes;
}

std::expected<std::optional<std::size_t>, Error> setupReplyLength(ByteOrder order, std::span<const std::byte> bytes) {
  if (bytes.empty()) return std::nullopt;
  constexpr int highestStatus = 2;
  if (std::to_integer<int>(bytes[0]) > highestStatus) {
    return std::unexpected(Error{"The display server's reply is not X protocol."});
  }
  if (bytes.size() < replyHeader) return std::nullopt;
  return replyHeader + std::size_t{Wire(order).get16(&bytes[replyWords])} * 4;
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
