// The start of a connection: the client states its byte order and its credential, and the server answers.
//
// Threads: pure functions. Failure: sentences; absent while more bytes are needed.
#pragma once

#include <cstddef>
#include <cstdint>
#include <expected>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Linux/Protocol/Wire.h"

namespace platform::linux::protocol {

// Proof that a client may connect.
struct Credential {
  std::string name;  // of the authorisation method
  std::string data;
};

struct SetupRequest {
  ByteOrder order = ByteOrder::little;
  std::uint16_t majorVersion = 11;
  std::uint16_t minorVersion = 0;
  Credential credential;
  std::size_t length = 0;  // in bytes
};

[[nodiscard]] std::expected<std::optional<SetupRequest>, Error> parseSetupRequest(std::span<const std::byte> bytes);
// The same request with another credential.
[[nodiscard]] std::vector<std::byte> setupRequest(const SetupRequest& request, const Credential& credential);
// What a server answers to a client that it turns away. The reason is ASCII.
[[nodiscard]] std::vector<std::byte> setupRefusal(ByteOrder order, std::string_view reason);

// The length of the server's answer.
[[nodiscard]] std::expected<std::optional<std::size_t>, Error> setupReplyLength(ByteOrder order,
                                                                                std::span<const std::byte> bytes);

// Takes the same time wherever the two differ.
[[nodiscard]] bool isSameSecret(std::string_view one, std::string_view other);

}  // namespace platform::linux::protocol
