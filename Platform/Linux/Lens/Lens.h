// A lens: a private display in front of the real one, and the program that runs behind it.
//
// Threads: the main thread. Ownership: owns display, authority and connections. Failure: sentences.
#pragma once

#include <expected>
#include <memory>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include "Platform/Error.h"
#include "Platform/Linux/Lens/Admission.h"
#include "Platform/Linux/Lens/Composing.h"
#include "Platform/Linux/Lens/Poller.h"
#include "Platform/Linux/Lens/PrivateAuthority.h"
#include "Platform/Linux/Lens/PrivateDisplay.h"
#include "Platform/Linux/Lens/Relay.h"
#include "Platform/Linux/Lens/ServerAddress.h"
#include "Platform/Linux/Posix/ChildProgram.h"

namespace platform::linux::lens {

class Lens final : public PictureSource {
 public:
  Lens(ServerAddress server, PrivateDisplay display, PrivateAuthority authority, std::unique_ptr<SharedScreen> screen);
  Lens(const Lens&) = delete;
  Lens& operator=(const Lens&) = delete;

  // Tells a program where its display is.
  [[nodiscard]] posix::ChildProgram::Variables variables() const;
  [[nodiscard]] std::uint64_t requestPicture() override;
  // Runs until the program ends; returns its exit status.
  [[nodiscard]] int run(const posix::ChildProgram& program, const posix::SignalWatch& signals);

 private:
  struct Session {
    std::unique_ptr<Relay> relay;
    std::uint32_t clientEvents = 0;
    std::uint32_t serverEvents = 0;
    bool isClientWatched = true;
    bool followsDamage = false;
  };

  void watchSockets();
  void admit(posix::FileDescriptor socket);
  void decide(int descriptor);
  void connect(Admission& admission);
  void ready(Relay* relay, bool isFromServer, std::uint32_t events);
  void goOnComposing();
  void watchComposing();
  void followDamage();
  // Ends a session that is over; otherwise updates the events that it waits for.
  void follow(Relay* relay, bool isAlive);
  void end(Relay* relay);

  ServerAddress server_;
  protocol::Credential credential_;
  PrivateDisplay display_;
  PrivateAuthority authority_;
  Composing composing_;
  std::optional<std::uint32_t> composingEvents_;  // while it is watched
  Poller poller_;
  std::unordered_map<int, std::unique_ptr<Admission>> admissions_;
  std::unordered_map<Relay*, Session> sessions_;
};

}  // namespace platform::linux::lens
