#include "Platform/Linux/Lens/Poller.h"

#include <sys/epoll.h>

#include <array>

namespace platform::x11::lens {

Poller::Poller() : epoll_(::epoll_create1(EPOLL_CLOEXEC)) {}

void Poller::add(int descriptor, std::uint32_t events, Handler handler) {
  handlers_[descriptor] = std::make_shared<Handler>(std::move(handler));
  epoll_event event{.events = events, .data = {.fd = descriptor}};
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_ADD, descriptor, &event);
}

void Poller::change(int descriptor, std::uint32_t events) {
  epoll_event event{.events = events, .data = {.fd = descriptor}};
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_MOD, descriptor, &event);
}

void Poller::remove(int descriptor) {
  ::epoll_ctl(epoll_.get(), EPOLL_CTL_DEL, descriptor, nullptr);
  handlers_.erase(descriptor);
}

void Poller::wait() {
  std::array<epoll_event, 64> events{};
  const int count = ::epoll_wait(epoll_.get(), events.data(), events.size(), -1);
  for (int index = 0; index < count; ++index) {
    const epoll_event& event = events[static_cast<std::size_t>(index)];
    const auto found = handlers_.find(event.data.fd);
    if (found == handlers_.end()) continue;
    // Kept while it runs: it may remove itself.
    const auto handler = found->second;
    (*handler)(event.events);
  }
}

}  // namespace platform::x11::lens
