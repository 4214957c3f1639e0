// Which windows are held open over which areas, without an X server.
#include "Platform/Linux/Holes/HoleBook.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace platform::linux::holes {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Step = HoleBook::Step;

constexpr xcb_window_t ink = 0x200001;
constexpr xcb_window_t other = 0x300001;
constexpr xcb_window_t mirror = 0x100001;
constexpr xcb_visualid_t opaque = 1;
constexpr xcb_visualid_t translucent = 2;
constexpr xcb::PixelRect screen{0, 0, 1000, 800};
constexpr xcb::PixelRect area{100, 100, 300, 200};

scene::SceneWindow window(xcb_window_t id, const xcb::PixelRect& frame = screen) {
  return {.id = id,
          .outer = frame,
          .depth = 32,
          .visual = translucent,
          .isOverrideRedirect = true,
          .isViewable = true,
          .isDescribed = true};
}

class HoleBookTest : public ::testing::Test {
 protected:
  static scene::WindowFilter leavingOut(std::vector<xcb_window_t> windows) { return {std::move(windows), {}, 0xFFFFF}; }
  static scene::WindowFilter holdingBack(const std::vector<xcb_window_t>& except = {}) {
    scene::WindowFilter filter({}, {}, 0xFFFFF);
    filter.holdBackFrom(1000);
    for (const xcb_window_t judged : except) filter.admit(judged);
    return filter;
  }
  std::vector<Step> steps() { return book.steps(windows); }

  HoleBook book{[](xcb_window_t id) { return id == mirror; }, [](xcb_visualid_t id) { return id == translucent; }};
  std::vector<scene::SceneWindow> windows{window(other), window(ink), window(mirror, area)};
};

TEST_F(HoleBookTest, AStreamOpensTheWindowsThatItNames) {
  book.open(1, area, leavingOut({ink}));
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, true}));
  EXPECT_THAT(steps(), IsEmpty()) << "what is done is not done again";
}

TEST_F(HoleBookTest, WithItsEndTheWindowGetsBackWhatWasItsOwn) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  book.close(1);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {}, false}));
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, AreasAreInTheCoordinatesOfTheWindowInsideItsBorder) {
  windows[1].outer = {50, 40, 500, 400};
  windows[1].border = 3;
  book.open(1, area, leavingOut({ink}));
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {{47, 57, 300, 200}}, true}));
}

TEST_F(HoleBookTest, AWindowOutsideTheAreaIsLeftAlone) {
  windows[1].outer = {500, 400, 100, 100};
  book.open(1, area, leavingOut({ink}));
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, AnAreaLargerThanTheWindowIsNotCutOffSinceTheWindowMayGrow) {
  windows[1].outer = {150, 150, 100, 100};
  book.open(1, area, leavingOut({ink}));
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {{-50, -50, 300, 200}}, true}));
}

TEST_F(HoleBookTest, OfAreasThatOverlapTheUnionIsMissing) {
  book.open(1, area, leavingOut({ink}));
  book.open(2, {200, 200, 300, 200}, leavingOut({ink}));
  const auto done = steps();
  ASSERT_EQ(done.size(), 1U);
  EXPECT_TRUE(holdSame(done[0].areas, PixelSet{{100, 100, 300, 200}, {200, 300, 300, 100}, {400, 200, 100, 100}}));
}

TEST_F(HoleBookTest, WhenOneOfThemEndsTheOthersAreaStaysMissing) {
  book.open(1, area, leavingOut({ink}));
  book.open(2, {200, 200, 300, 200}, leavingOut({ink}));
  (void)steps();
  book.close(1);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {{200, 200, 300, 200}}, true}));
}

TEST_F(HoleBookTest, ARestartOverTheSameAreaChangesNothing) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  book.open(2, area, leavingOut({ink}));
  EXPECT_THAT(steps(), IsEmpty());
  book.close(1);
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, ARestartThatLeavesOutFewerWindowsGivesBackTheOthers) {
  book.open(1, area, leavingOut({ink, other}));
  (void)steps();
  book.open(2, area, leavingOut({ink}));
  EXPECT_THAT(steps(), IsEmpty());
  book.close(1);
  EXPECT_THAT(steps(), ElementsAre(Step{other, {}, false}));
}

TEST_F(HoleBookTest, TheHoleStaysInPlaceWhenTheWindowMoves) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  windows[1].outer = {-30, 20, 1000, 800};
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {{130, 80, 300, 200}}, true}));
}

TEST_F(HoleBookTest, AWindowThatGrowsIsClearedAgainAndOneThatIsTheSameIsNot) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  windows[1].outer.width = 1200;
  EXPECT_THAT(steps(), IsEmpty());
  book.renewed(ink);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, true}));
}

TEST_F(HoleBookTest, AWindowThatMovesOutOfTheAreaGetsBackWhatWasItsOwn) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  windows[1].outer = {2000, 0, 1000, 800};
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {}, false}));
}

TEST_F(HoleBookTest, AWindowThatItsOwnerReshapesIsLookedAtAgain) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  book.reshaped(ink);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, true, true}));
  EXPECT_THAT(steps(), IsEmpty());
  book.reshaped(other);
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, ADestroyedWindowIsForgottenEvenWhenItsNumberIsUsedAgain) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  book.destroyed(ink);
  windows.erase(windows.begin() + 1);
  EXPECT_THAT(steps(), IsEmpty());
  windows.push_back(window(ink));
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, AWindowThatGoesIntoAnotherOneGetsBackWhatWasItsOwn) {
  book.open(1, area, leavingOut({ink}));
  (void)steps();
  windows.erase(windows.begin() + 1);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {}, false}));
}

TEST_F(HoleBookTest, WindowsOfThisProgramAreNeverOpened) {
  book.open(1, area, leavingOut({ink, mirror}));
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, true}));
}

TEST_F(HoleBookTest, ANewWindowThatCouldBeInkIsOpenFromTheMomentItIsHeardOfUntilItIsAdmitted) {
  book.open(1, area, holdingBack({other}));
  windows[1].isDescribed = false;
  windows[1].visual = 0;
  windows[1].isViewable = false;
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, false})) << "nobody has judged it, so what is drawn in it stays";
  book.admit(1, std::vector{ink});
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {}, false}));
}

TEST_F(HoleBookTest, ANewWindowThatTurnsOutToBeInkIsClearedToo) {
  book.open(1, area, holdingBack({other}));
  (void)steps();
  book.open(2, area, leavingOut({ink}));
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, true}));
}

TEST_F(HoleBookTest, NewWindowsThatCannotBeInkAreSeenAtOnce) {
  book.open(1, area, holdingBack({other}));
  windows[1].visual = opaque;
  EXPECT_THAT(steps(), IsEmpty());
  windows[1] = window(ink);
  windows[1].isOverrideRedirect = false;
  EXPECT_THAT(steps(), IsEmpty());
  windows[1] = window(ink, {110, 110, 20, 20});
  EXPECT_THAT(steps(), IsEmpty());
}

TEST_F(HoleBookTest, WhatComesToTheScreenAgainIsJudgedAgain) {
  book.open(1, area, holdingBack({other, ink}));
  EXPECT_THAT(steps(), IsEmpty());
  book.unmapped(ink);
  EXPECT_THAT(steps(), ElementsAre(Step{ink, {area}, false}));
}

}  // namespace
}  // namespace platform::linux::holes
