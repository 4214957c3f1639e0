// Real lock screens, and windows like theirs, over and under the real cover. Whatever hides a session stays in front.

#include <memory>

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

struct Locker {
  const char* name;
  std::vector<std::string> command;  // empty: just a window with everything that makes a locker
  std::uint32_t color = 0;
};

void PrintTo(const Locker& locker, std::ostream* out) { *out << locker.name; }

class Lockers : public CoveredDesktop, public testing::WithParamInterface<Locker> {
 protected:
  void lock() {
    if (GetParam().command.empty()) {
      window_ = client_.createWindow({.frame = wholeScreen, .color = 0xff000000U | GetParam().color});
      client_.sync();
      return;
    }
    auto environment = home_.environment(server_.display());
    environment["XSECURELOCK_SAVER"] = "saver_blank";
    process_ = std::make_unique<support::ChildProcess>(GetParam().command, environment);
  }
  void unlock() {
    if (window_) client_.destroy(*window_);
    if (process_) process_->kill();
    client_.sync();
  }
  [[nodiscard]] bool isHidden(const Picture& screen) const {
    return screen.count(GetParam().color) == std::size_t{1280} * 800;
  }
  [[nodiscard]] bool staysHidden(milliseconds duration) {
    return !shows([&](const Picture& screen) { return !isHidden(screen); }, duration);
  }
  // Longer than until the next refresh of the live cover.
  static constexpr milliseconds refresh{1700};

 private:
  support::PrivateHome home_;
  std::optional<xcb_window_t> window_;
  std::unique_ptr<support::ChildProcess> process_;
};

TEST_P(Lockers, OverTheCoverStayInFrontAndTheCoverIsThereAfterwards) {
  drawInk();
  cover();
  ASSERT_TRUE(showsNoInk(inside));
  lock();
  ASSERT_TRUE(shows([&](const Picture& screen) { return isHidden(screen); })) << "The locker does not hide the screen.";
  EXPECT_TRUE(staysHidden(refresh));
  unlock();
  EXPECT_TRUE(shows([](const Picture& screen) { return ink(screen, wholeScreen) > 1000 && ink(screen, inside) == 0; }));
}

TEST_P(Lockers, ThatAreThereFirstAreNotOverlappedByACoverThatStarts) {
  lock();
  ASSERT_TRUE(shows([&](const Picture& screen) { return isHidden(screen); })) << "The locker does not hide the screen.";
  cover();
  EXPECT_TRUE(staysHidden(refresh));
}

TEST_P(Lockers, AreNotOverlappedByASolidCoverEither) {
  support::QuillfadeProgram program(
      QUILLFADE_EXECUTABLE, server_.display(),
      {.demonstration = false, .settings = R"({"style": 1, "enabled": true, "region": "{{0, 0}, {1280, 800}}"})"});
  ASSERT_TRUE(shows([](const Picture& screen) { return screen.count(screen.at(640, 400), inside) > 100'000; }));
  lock();
  EXPECT_TRUE(shows([&](const Picture& screen) { return isHidden(screen); }));
  EXPECT_TRUE(staysHidden(milliseconds(500)));
}

const std::vector<Locker> lockers{
    {.name = "Window", .command = {}, .color = 0x203040},
    {.name = "I3lock", .command = {"i3lock", "--nofork", "--color=305070"}, .color = 0x305070},
    {.name = "Xsecurelock", .command = {"xsecurelock"}},
};

INSTANTIATE_TEST_SUITE_P(Each, Lockers, testing::ValuesIn(lockers),
                         [](const auto& locker) { return std::string(locker.param.name); });

}  // namespace
}  // namespace endtoend
