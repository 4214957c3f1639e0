#include "Platform/Linux/Lens/Poller.h"

#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <ctime>
#include <span>
#include <thread>

#include "Tests/Lens/SocketPair.h"

namespace platform::linux::lens {
namespace {

using namespace std::chrono_literals;

char receive(const posix::FileDescriptor& socket) {
  char letter = 0;
  EXPECT_EQ(::read(socket.get(), &letter, 1), 1);
  return letter;
}

void send(const posix::FileDescriptor& socket, char letter) { EXPECT_EQ(::write(socket.get(), &letter, 1), 1); }

std::chrono::nanoseconds processorTime() {
  timespec time{};
  EXPECT_EQ(::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time), 0);
  return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

// How often this thread has gone to sleep.
long sleeps() {
  rusage usage{};
  EXPECT_EQ(::getrusage(RUSAGE_THREAD, &usage), 0);
  return usage.ru_nvcsw;
}

class Timer {
 public:
  void start(std::chrono::nanoseconds delay) {
    const itimerspec later{.it_interval = {}, .it_value = {.tv_sec = 0, .tv_nsec = delay.count()}};
    EXPECT_EQ(::timerfd_settime(descriptor_.get(), 0, &later, nullptr), 0);
  }
  void stop() {
    std::uint64_t count = 0;
    EXPECT_EQ(::read(descriptor_.get(), &count, sizeof count), static_cast<ssize_t>(sizeof count));
  }
  [[nodiscard]] int descriptor() const { return descriptor_.get(); }

 private:
  posix::FileDescriptor descriptor_{::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC)};
};

// Passes messages between two speakers that answer each other.
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

  // How often the poller went to sleep while they took turns, after they had done so for a while.
  long sleepsWhileTheySpeak(std::span<Timer> speakers) {
    for (Timer& each : speakers) poller_.add(each.descriptor(), EPOLLIN, [&each](std::uint32_t) { each.stop(); });
    constexpr std::size_t turnsBefore = BusyPolling::eventsOfSeries + 1;
    constexpr std::size_t turnsCounted = 20;
    long before = 0;
    for (std::size_t turn = 0; turn < turnsBefore + turnsCounted; ++turn) {
      if (turn == turnsBefore) before = sleeps();
      speakers[turn % speakers.size()].start(BusyPolling::longestAnswer / 4);
      poller_.wait();
    }
    for (Timer& each : speakers) poller_.remove(each.descriptor());
    return sleeps() - before;
  }

  SocketPair first_;
  SocketPair second_;
  Poller poller_;
};

TEST_F(PollerTest, PassesALongDialogue) { dialogue(2000); }

TEST_F(PollerTest, FallsAsleepSoonAfterADialogueAndHearsWhatComesLater) {
  dialogue(2000);
  Timer timer;
  timer.start(300ms);
  bool isHeard = false;
  poller_.add(timer.descriptor(), EPOLLIN, [&](std::uint32_t) { isHeard = true; });
  const auto before = processorTime();
  poller_.wait();
  EXPECT_TRUE(isHeard);
  EXPECT_LT(processorTime() - before, 30ms);
}

// Nobody but this thread takes part, so a busy machine can only delay a turn. Then another dialogue is tried.
TEST_F(PollerTest, DoesNotSleepAmidADialogueWhereThereIsAnotherProcessor) {
  if (std::thread::hardware_concurrency() < 2) GTEST_SKIP() << "one processor";
  std::array<Timer, 2> speakers;
  const auto deadline = Poller::Clock::now() + 10s;
  while (sleepsWhileTheySpeak(speakers) > 0) ASSERT_LT(Poller::Clock::now(), deadline);
}

TEST_F(PollerTest, SleepsAmidAStreamOfShortMessages) {
  std::array<Timer, 1> speakers;
  EXPECT_GT(sleepsWhileTheySpeak(speakers), 0);
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
}  // namespace platform::linux::lens
