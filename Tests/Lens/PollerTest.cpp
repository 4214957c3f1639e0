#include "Platform/Linux/Lens/Poller.h"

#include <gtest/gtest.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <chrono>
#include <ctime>
#include <thread>

#include "Tests/Lens/SocketPair.h"

namespace platform::x11::lens {
namespace {

using namespace std::chrono_literals;

char receive(const FileDescriptor& socket) {
  char letter = 0;
  EXPECT_EQ(::read(socket.get(), &letter, 1), 1);
  return letter;
}

void send(const FileDescriptor& socket, char letter) { EXPECT_EQ(::write(socket.get(), &letter, 1), 1); }

std::chrono::nanoseconds processorTime() {
  timespec time{};
  EXPECT_EQ(::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time), 0);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// Passes letters between two that answer each other.
class PollerTest : public testing::Test {
 protected:
  PollerTest() {
    poller_.add(first_.near.get(), EPOLLIN, [this](std::uint32_t) { pass(first_, second_); });
    poller_.add(second_.near.get(), EPOLLIN, [this](std::uint32_t) { pass(second_, first_); });
  }

  static void pass(const SocketPair& from, const SocketPair& to) { send(to.near, receive(from.near)); }

  void dialogue(int turns) {
    const std::jthread answerer([this, turns] {
      for (int turn = 0; turn < turns; ++turn) send(second_.far, receive(second_.far));
    });
    for (int turn = 0; turn < turns; ++turn) {
      send(first_.far, 'a');
      poller_.wait();
      poller_.wait();
      EXPECT_EQ(receive(first_.far), 'a');
    }
  }

  SocketPair first_;
  SocketPair second_;
  Poller poller_;
};

TEST_F(PollerTest, PassesALongDialogue) { dialogue(2000); }

TEST_F(PollerTest, FallsAsleepSoonAfterADialogueAndHearsWhatComesLater) {
  dialogue(2000);
  const FileDescriptor timer(::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC));
  const itimerspec later{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_nsec = 300'000'000}};
  ASSERT_EQ(::timerfd_settime(timer.get(), 0, &later, nullptr), 0);
  bool isHeard = false;
  poller_.add(timer.get(), EPOLLIN, [&](std::uint32_t) { isHeard = true; });
  const auto before = processorTime();
  poller_.wait();
  EXPECT_TRUE(isHeard);
  EXPECT_LT(processorTime() - before, 30ms);
}

TEST_F(PollerTest, WaitsNoLongerThanUntilTheDeadline) {
  const auto deadline = Poller::Clock::now() + 20ms;
  poller_.wait(deadline);
  EXPECT_GE(Poller::Clock::now(), deadline);
  poller_.wait(deadline);
  send(first_.far, 'a');
  poller_.wait(Poller::Clock::now() + 1h);
  EXPECT_EQ(receive(second_.far), 'a');
}

}  // namespace
}  // namespace platform::x11::lens
