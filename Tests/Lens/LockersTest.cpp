// A real locker that hides the screen by the server's overlay window, in front of and behind lenses.

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Lens/OpenLens.h"

namespace lens {
namespace {

constexpr std::size_t wholeScreen = std::size_t{1280} * 800;

// Its obscurer is a window of its own beneath the overlay window, one pixel short of the screen on each side.
class LensesAndXsecurelock : public endtoend::CoveredDesktop, public testing::WithParamInterface<bool> {
 protected:
  void lock() {
    auto environment = home_.environment(server_.display());
    environment["XSECURELOCK_SAVER"] = "saver_blank";
    environment["XSECURELOCK_COMPOSITE_OBSCURER"] = GetParam() ? "1" : "0";
    locker_.emplace(std::vector<std::string>{"xsecurelock"}, environment);
    ASSERT_TRUE(shows([](const support::Picture& screen) { return screen.count(0) == wholeScreen; }));
  }

  support::PrivateHome home_;
  std::optional<support::ChildProcess> locker_;
};

TEST_P(LensesAndXsecurelock, ALensThatRunsTurnsBlackAndShowsTheDesktopAfterwards) {
  const support::Picture desktop = client_.screenshot();
  const OpenLens open(server_.display());
  const auto program = open.connect();
  ASSERT_EQ(program->screenshot(), desktop);
  lock();
  EXPECT_TRUE(support::waitUntil([&] { return program->screenshot().count(0) == wholeScreen; }));
  locker_->kill();
  EXPECT_TRUE(support::waitUntil([&] { return program->screenshot() == desktop; }));
}

TEST_P(LensesAndXsecurelock, ALensThatStartsWhileItHidesTheScreenIsBlackFromTheFirstPictureOn) {
  const support::Picture desktop = client_.screenshot();
  lock();
  const OpenLens open(server_.display());
  const auto program = open.connect();
  EXPECT_EQ(program->screenshot().count(0), wholeScreen);
  locker_->kill();
  EXPECT_TRUE(support::waitUntil([&] { return program->screenshot() == desktop; }));
}

INSTANTIATE_TEST_SUITE_P(Obscurer, LensesAndXsecurelock, testing::Bool(),
                         [](const auto& obscurer) { return obscurer.param ? "On" : "Off"; });

}  // namespace
}  // namespace lens
