#include "Platform/Linux/Lens/Lens.h"

#include <sys/epoll.h>

#include <algorithm>
#include <cstdio>
#include <optional>
#include <utility>

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::lens {

namespace {

void report(const std::string& sentence) {
  std::fprintf(stderr, "quillfade: %s Its connection to the display was closed.\n", sentence.c_str());
}

}  // namespace

Lens::Lens(ServerAddress server, PrivateDisplay display, PrivateAuthority authority,
           std::unique_ptr<SharedScreen> screen)
    : server_(std::move(server)),
      credential_(server_.credential()),
      display_(std::move(display)),
      authority_(std::move(authority)),
      composing_(std::move(screen)) {
  watchSockets();
  composingEvents_ = composing_.events();
  poller_.add(composing_.descriptor(), *composingEvents_, [this](std::uint32_t) { goOnComposing(); });
}

posix::ChildProgram::Variables Lens::variables() const {
  const std::string screen = server_.screen() == 0 ? "" : "." + std::to_string(server_.screen());
  // A program that could reach the screen in another way would bypass the lens.
  return {{"DISPLAY", ":" + std::to_string(display_.number()) + screen},
          {"XAUTHORITY", authority_.path()},
          {"WAYLAND_DISPLAY", ""},
          {"WAYLAND_SOCKET", ""}};
}

int Lens::run(const posix::ChildProgram& program, const posix::SignalWatch& signals) {
  std::optional<int> status;
  poller_.add(signals.descriptor(), EPOLLIN, [&](std::uint32_t) {
    while (const auto signal = signals.next()) {
      if (signal->number != SIGCHLD) program.pass(*signal);
    }
    status = program.exitStatus();
  });
  while (!status) {
    const auto deadline = composing_.deadline();
    poller_.wait(deadline);
    if (deadline && Composing::Clock::now() >= *deadline) goOnComposing();
  }
  return *status;
}

void Lens::watchSockets() {
  for (const posix::FileDescriptor& socket : display_.sockets()) {
    poller_.add(socket.get(), EPOLLIN, [this, &socket](std::uint32_t) {
      if (auto connection = PrivateDisplay::accept(socket); connection.isOpen()) admit(std::move(connection));
    });
  }
}

void Lens::admit(posix::FileDescriptor socket) {
  const int descriptor = socket.get();
  admissions_[descriptor] = std::make_unique<Admission>(std::move(socket), authority_);
  poller_.add(descriptor, EPOLLIN, [this, descriptor](std::uint32_t) { decide(descriptor); });
}

void Lens::decide(int descriptor) {
  const auto found = admissions_.find(descriptor);
  const Admission::Verdict verdict = found->second->advance();
  if (verdict == Admission::Verdict::undecided) return;
  poller_.remove(descriptor);
  const std::unique_ptr<Admission> admission = std::move(found->second);
  admissions_.erase(found);
  if (verdict == Admission::Verdict::admitted) return connect(*admission);
  if (!admission->complaint().empty()) report(admission->complaint());
}

void Lens::connect(Admission& admission) {
  auto server = server_.connect();
  if (!server) return report(server.error().localizedDescription);
  auto relay = std::make_unique<Relay>(admission.takeSocket(), std::move(*server), admission.request(), credential_,
                                       composing_.names(), *this);
  Relay* const key = relay.get();
  poller_.add(key->client(), 0, [this, key](std::uint32_t events) { ready(key, false, events); });
  poller_.add(key->server(), 0, [this, key](std::uint32_t events) { ready(key, true, events); });
  sessions_[key].relay = std::move(relay);
  // The setup has to be sent.
  ready(key, true, EPOLLOUT);
}

void Lens::ready(Relay* relay, bool isFromServer, std::uint32_t events) {
  const bool isAlive = isFromServer ? relay->serverReady(events) : relay->clientReady(events);
  if (isAlive) poller_.notePassing(relay->passing());
  follow(relay, isAlive);
}

std::uint64_t Lens::requestPicture() {
  const std::uint64_t request = composing_.request();
  watchComposing();
  return request;
}

void Lens::goOnComposing() {
  const auto picture = composing_.advance();
  watchComposing();
  if (!picture) return;
  std::vector<Relay*> all;
  for (const auto& [relay, session] : sessions_) all.push_back(relay);
  for (Relay* relay : all) follow(relay, relay->pictureReady(picture->request, picture->pixmap));
}

void Lens::watchComposing() {
  if (!composingEvents_) return;
  if (composing_.isLost()) {
    poller_.remove(composing_.descriptor());
    composingEvents_.reset();
  } else if (const std::uint32_t events = composing_.events(); events != composingEvents_) {
    poller_.change(composing_.descriptor(), events);
    composingEvents_ = events;
  }
}

void Lens::follow(Relay* relay, bool isAlive) {
  if (!isAlive) return end(relay);
  Session& session = sessions_.at(relay);
  if (relay->isClientGone() && std::exchange(session.isClientWatched, false)) poller_.remove(relay->client());
  if (const auto events = relay->clientEvents(); session.isClientWatched && events != session.clientEvents) {
    poller_.change(relay->client(), session.clientEvents = events);
  }
  if (const auto events = relay->serverEvents(); events != session.serverEvents) {
    poller_.change(relay->server(), session.serverEvents = events);
  }
  if (const bool follows = relay->followsDamage(); follows != session.followsDamage) {
    session.followsDamage = follows;
    followDamage();
  }
}

void Lens::end(Relay* relay) {
  if (!relay->complaint().empty()) report(relay->complaint());
  if (sessions_.at(relay).isClientWatched) poller_.remove(relay->client());
  poller_.remove(relay->server());
  const bool followed = sessions_.at(relay).followsDamage;
  sessions_.erase(relay);
  if (followed) followDamage();
}

void Lens::followDamage() {
  composing_.follow(std::ranges::any_of(sessions_, [](const auto& each) { return each.second.followsDamage; }));
  watchComposing();
}

}  // namespace platform::linux::lens

namespace platform {

std::expected<int, Error> runThroughLens(const std::vector<std::string>& program, const LensRule& rule) {
  using namespace linux;
  using namespace linux::lens;
  const std::string name = posix::environmentVariable("DISPLAY").value_or("");
  const posix::SignalWatch signals;
  auto screen = SharedScreen::open("", rule);
  if (!screen) return std::unexpected(screen.error());
  const auto server = ServerAddress::parse(name);
  if (!server) return std::unexpected(Error{"\"" + name + "\" is not the name of an X11 display."});
  auto display = PrivateDisplay::make();
  if (!display) return std::unexpected(display.error());
  auto authority = PrivateAuthority::make(display->number());
  if (!authority) return std::unexpected(authority.error());
  Lens lens(*server, std::move(*display), std::move(*authority), std::move(*screen));
  const auto child = posix::ChildProgram::start(program, lens.variables(), signals);
  if (!child) return std::unexpected(child.error());
  return lens.run(*child, signals);
}

}  // namespace platform
