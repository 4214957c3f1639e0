#include "Quillfade/CommandLine/Share.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

#include "Quillfade/Basics/Identity.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::CaptureWindow;
using platform::Screen;

const std::vector<Screen> screens{{{{0, 0}, {1000, 1000}}, 1, 1}, {{{1000, 0}, {4000, 4000}}, 2, 1}};

CaptureWindow window(std::uint32_t number, std::string owner, std::int64_t layer, platform::Rect frame) {
  CaptureWindow result = listedWindow(number, std::move(owner), layer, frame.size);
  result.frame = frame;
  return result;
}

std::vector<std::uint32_t> numbersLeftOut(ShareView view, const std::vector<CaptureWindow>& windows,
                                          const std::vector<Screen>& on = screens) {
  std::vector<std::uint32_t> numbers;
  for (const CaptureWindow& each : leftOut(view, windows, on)) numbers.push_back(each.windowID);
  return numbers;
}

const std::vector<CaptureWindow> desktop{
    window(1, "org.example.editor", 0, {{0, 0}, {1000, 1000}}),
    window(2, "org.example.ink", 500, {{0, 0}, {1000, 999}}),
    window(3, std::string{applicationIdentifier}, 1000, {{100, 100}, {20, 20}}),
    window(4, "us.zoom.xos", 3, {{0, 0}, {900, 900}}),
};

TEST(Share, UnmirroredLeavesOutNothingButTheApplicationsOwnWindows) {
  EXPECT_EQ(numbersLeftOut(ShareView::unmirrored, desktop), (std::vector<std::uint32_t>{3}));
}

TEST(Share, CleanLeavesOutWhatTheLiveMirrorLeavesOut) {
  EXPECT_EQ(numbersLeftOut(ShareView::clean, desktop), (std::vector<std::uint32_t>{2, 3, 4}));
}

TEST(Share, TheUsersRulesHoldForTheCleanViewOnly) {
  const std::vector<WindowRule> rules{{"org.example.editor", true}, {"org.example.ink", false}};
  const auto numbers = [&](ShareView view) {
    std::vector<std::uint32_t> result;
    for (const CaptureWindow& each : leftOut(view, desktop, screens, rules)) result.push_back(each.windowID);
    return result;
  };
  EXPECT_EQ(numbers(ShareView::clean), (std::vector<std::uint32_t>{1, 3, 4}));
  EXPECT_EQ(numbers(ShareView::unmirrored), (std::vector<std::uint32_t>{3}));
}

TEST(Share, AWindowIsJudgedAgainstTheScreenThatHoldsItsCentre) {
  // 90 % of its own screen, but only 6 % of the other one.
  EXPECT_EQ(numbersLeftOut(ShareView::clean, {window(1, "org.example.ink", 500, {{0, 0}, {1000, 900}}),
                                              window(2, "org.example.ink", 500, {{2000, 0}, {1000, 900}})}),
            (std::vector<std::uint32_t>{1}));
}

TEST(Share, AWindowBeyondAllScreensIsJudgedAgainstTheFirst) {
  EXPECT_EQ(numbersLeftOut(ShareView::clean, {window(1, "org.example.ink", 500, {{-9000, 0}, {1000, 900}})}),
            (std::vector<std::uint32_t>{1}));
}

TEST(Share, WithoutAScreenTheApplicationsOwnWindowsAreStillLeftOut) {
  EXPECT_EQ(numbersLeftOut(ShareView::clean, desktop, {}), (std::vector<std::uint32_t>{3}));
}

TEST(Share, ADesktopWithoutALensSaysSo) {
  const auto reply = share({.program = {"recorder"}});
  EXPECT_EQ(reply.status, exitstatus::failure);
  EXPECT_EQ(reply.output, "A simulated desktop runs no programs.\n");
  EXPECT_EQ(installShare({.application = "a.desktop"}).status, exitstatus::failure);
  EXPECT_EQ(uninstallShare({.application = "a.desktop"}).status, exitstatus::failure);
}

}  // namespace
}  // namespace quillfade
