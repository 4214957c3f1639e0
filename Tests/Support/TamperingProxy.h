// A proxy for an X server that makes requests about other programs' windows fail, as if each window had gone just a
// moment before: the server itself answers with its error for that. It can also hide from its clients an extension that
// the server cannot be told to switch off.
//
// Threads: serves its clients on threads of its own; every call here may be made on any thread.
// Ownership: its clients lose their connections when the object goes.
// Limits: extensions that pass file descriptors do not work through it.
#pragma once

#include <xcb/xcb.h>

#include <atomic>
#include <compare>
#include <cstdint>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace support {

// A kind of request: its major opcode and, for extensions, its minor one.
struct RequestKind {
  std::uint8_t major = 0;
  std::uint8_t minor = 0;
  friend auto operator<=>(const RequestKind&, const RequestKind&) = default;
};

class TamperingProxy {
 public:
  // Foreign ids are those that the server gives to this client.
  TamperingProxy(const std::string& display, xcb_connection_t* foreignClient);
  ~TamperingProxy();
  TamperingProxy(const TamperingProxy&) = delete;
  TamperingProxy& operator=(const TamperingProxy&) = delete;

  // As in DISPLAY.
  [[nodiscard]] std::string display() const { return ":" + std::to_string(number_); }

  // Clients that ask for this extension from now on are told that the server does not have it.
  void hideExtension(const std::string& name);

  // From now on, requests of this kind that name a foreign window name one that does not exist. Without a kind: none.
  void tamperWith(std::optional<RequestKind> kind);
  // The kinds of request that have named a foreign window since `forgetSeen`, and how many of each were tampered with.
  [[nodiscard]] std::map<RequestKind, std::size_t> seen() const;
  void forgetSeen();

 private:
  class Conversation;

  void accept();
  // Changes the request, where asked to, before it goes on to the server.
  void pass(std::uint8_t* request, std::size_t length);

  std::string serverPath_;
  std::uint32_t foreignBase_;
  std::uint32_t idMask_;
  int listener_;
  int number_;
  std::atomic<bool> ends_ = false;
  mutable std::mutex mutex_;
  std::optional<RequestKind> kind_;
  std::string hiddenExtension_;
  std::map<RequestKind, std::size_t> seen_;
  std::vector<std::jthread> conversations_;
  std::jthread acceptor_;
};

}  // namespace support
