#include "Platform/Linux/Lens/Poller.h"

#include <sys/epoll.h>

#include <algorithm>
#include <chrono>
#include <thread>

namespace platform::linux::lens {

namespace {

using Clock = Poller::Clock;

constexpr int forever = -1;

// In milliseconds, for epoll.
int timeUntil(std::optional<Clock::time_point> deadline) {
  if (!deadline) return forever;
  const auto left = std::chrono::ceil<std::chrono::milliseconds>(*deadline - Clock::now());
  return static_cast<int>(std::max(left, std::chrono::milliseconds::zero()).count());
}

// With one processor, polling would keep it from the program that we wait for.
bool canPollBusily() { return std::thread::hardware_concurrency() > 1; }

}  // namespace

Poller::Poller() : epoll_(::epoll_create1(EPOLL_CLOEXEC)), canPollBusily_(canPollBusily()) {}

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

int Poller::next(Events& events, std::optional<Clock::time_point> deadline) {
  const auto poll = [&](int milliseconds) {
    return ::epoll_wait(epoll_.get(), events.data(), mostEvents, milliseconds);
  };
  if (!canPollBusily_) return poll(timeUntil(deadline));
  const auto begin = Clock::now();
  const auto waited = [&] { return Clock::now() - begin; };
  int count = 0;
  while (count == 0 && waited() < busyPolling_.patience()) count = poll(0);
  if (count == 0) count = poll(timeUntil(deadline));
  if (count == 1 && events[0].events == EPOLLIN) {
    busyPolling_.noteTurn(events[0].data.fd, waited());
  } else {
    busyPolling_.noteOther(waited());
  }
  return count;
}

void Poller::wait(std::optional<Clock::time_point> deadline) {
  Events events;
  const int count = next(events, deadline);
  for (int index = 0; index < count; ++index) {
    const epoll_event& event = events[static_cast<std::size_t>(index)];
    const auto found = handlers_.find(event.data.fd);
    if (found == handlers_.end()) continue;
    // Kept alive while it runs: it may remove itself.
    const auto handler = found->second;
    (*handler)(event.events);
  }
}

}  // namespace platform::linux::lens
