#include "Tests/Quillfade/Cover/ControllerTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class OverlayControllerPresentation : public ControllerTest {
 protected:
  void twoScreens() { desktop.arrangeScreens({leftScreen, rightScreen}); }

  [[nodiscard]] const simulated::WindowState& solidWindow() const { return *shownWindows().back(); }
  [[nodiscard]] const simulated::View& solidView() const { return *solidWindow().contentView; }
};

TEST_F(OverlayControllerPresentation, TheLiveStyleShowsAMirrorOnEveryCoveredScreen) {
  twoScreens();
  switchedOn(CoverStyle::live, {{1000, 100}, {1000, 500}});
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{1000, 100}, {440, 500}}, Rect{{1440, 100}, {560, 500}}));
  EXPECT_THAT(controller->liveMirrors(), SizeIs(2));
  EXPECT_THAT(desktop.capture().runningStreams(), SizeIs(2));
}

TEST_F(OverlayControllerPresentation, TheMirrorsFollowTheOrderOfTheScreens) {
  desktop.arrangeScreens({rightScreen, leftScreen});
  switchedOn(CoverStyle::live, {{1000, 100}, {1000, 500}});
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{1440, 100}, {560, 500}}, Rect{{1000, 100}, {440, 500}}));
}

TEST_F(OverlayControllerPresentation, AScreenTouchedByTenPointsGetsNoMirror) {
  twoScreens();
  switchedOn(CoverStyle::live, {{1000, 0}, {450, 500}});
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{1000, 0}, {440, 500}}));
}

TEST_F(OverlayControllerPresentation, ARegionOfExactlySixteenPointsIsShown) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style, {{50, 50}, {16, 16}});
    EXPECT_TRUE(controller->isEnabled());
    EXPECT_THAT(shownWindows(), SizeIs(1));
    controller->setEnabled(false);
  }
}

TEST_F(OverlayControllerPresentation, ANarrowerOrLowerRegionIsRefused) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    for (const platform::Size size : {platform::Size{15.9, 100}, platform::Size{100, 15.9}}) {
      switchedOn(style, {{50, 50}, size});
      EXPECT_FALSE(controller->isEnabled());
      EXPECT_THAT(shownWindows(), IsEmpty());
    }
  }
}

TEST_F(OverlayControllerPresentation, MirrorsShowTheOutlineWhenItIsWanted) {
  switchedOn(CoverStyle::live);
  EXPECT_THAT(shownWindows().back()->contentView->subviews(), SizeIs(2));
  controller->setShowsOutline(false);
  EXPECT_THAT(shownWindows().back()->contentView->subviews(), SizeIs(2));
  controller->setEnabled(false);
  controller->setEnabled(true);
  EXPECT_THAT(shownWindows().back()->contentView->subviews(), SizeIs(1));
}

TEST_F(OverlayControllerPresentation, TheSolidStyleShowsOneOpaqueWindowOverTheRegion) {
  switchedOn(CoverStyle::solid);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  EXPECT_THAT(controller->liveMirrors(), IsEmpty());
  EXPECT_THAT(desktop.capture().contentRequests(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, TheSolidWindowLiesAboveAllOthersAndIsSeenByTheAudience) {
  switchedOn(CoverStyle::solid);
  const auto& attributes = solidWindow().attributes;
  EXPECT_EQ(attributes.contentRect, Rect{});
  EXPECT_EQ(attributes.style, platform::WindowStyle::borderless);
  EXPECT_EQ(attributes.backing, platform::BackingStore::buffered);
  EXPECT_FALSE(attributes.isDeferred);
  EXPECT_EQ(attributes.level, desktop.windows().shieldingLevel());
  EXPECT_EQ(attributes.collectionBehavior, 0x151U);
  EXPECT_TRUE(attributes.ignoresMouseEvents);
  EXPECT_FALSE(attributes.hasShadow);
  EXPECT_TRUE(attributes.isOpaque);
  EXPECT_EQ(attributes.backgroundColor, platform::colors::windowBackground);
  EXPECT_FALSE(attributes.isReleasedWhenClosed);
  EXPECT_FALSE(attributes.isMovable);
  EXPECT_EQ(attributes.animationBehavior, platform::AnimationBehavior::none);
  EXPECT_EQ(attributes.sharing, std::nullopt);
}

TEST_F(OverlayControllerPresentation, TheSolidWindowComesToTheFrontWithoutActivation) {
  make().setStyle(CoverStyle::solid);
  controller->setRegion(region);
  controller->setEnabled(true);
  EXPECT_THAT(desktop.record().startingWith("window 1"),
              ElementsAre("window 1: make", "window 1: set content view", "window 1: set frame and display",
                          "window 1: order front"));
  EXPECT_EQ(desktop.sharedApplication()->activationCount(), 0);
}

TEST_F(OverlayControllerPresentation, TheSolidViewCarriesTheOutline) {
  switchedOn(CoverStyle::solid);
  EXPECT_EQ(solidView().frame(), (Rect{{0, 0}, region.size}));
  EXPECT_EQ(solidView().resizeMask(), 18U);
  ASSERT_THAT(solidView().subviews(), SizeIs(1));
  const auto& border = *solidView().subviews().front();
  const simulated::LayerBorder expected{1.0, {platform::ColorRole::label, 0, 0, 0, 0.16}};
  EXPECT_EQ(border.border(), expected);
  EXPECT_EQ(border.frame(), (Rect{{0, 0}, region.size}));
  EXPECT_EQ(border.resizeMask(), 18U);
  EXPECT_EQ(border.background(), std::nullopt);
}

TEST_F(OverlayControllerPresentation, WithoutAnOutlineTheSolidViewIsEmpty) {
  make().setShowsOutline(false);
  controller->setStyle(CoverStyle::solid);
  controller->setRegion(region);
  controller->setEnabled(true);
  EXPECT_THAT(solidView().subviews(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, TheSolidWindowStaysOnTheScreenUnderTheRegionsCentre) {
  twoScreens();
  switchedOn(CoverStyle::solid, {{0, 0}, {3360, 1080}});
  EXPECT_THAT(shownFrames(), ElementsAre(rightScreen.frame));
}

TEST_F(OverlayControllerPresentation, ASolidRegionWhoseCentreIsOnNoScreenGoesToTheMainScreen) {
  desktop.arrangeScreens({leftScreen, {{{3000, 0}, {1920, 1080}}, 2, 1}});
  desktop.screens().setMain(desktop.screens().all().back());
  switchedOn(CoverStyle::solid, {{1000, 0}, {3000, 500}});  // its centre is in the gap
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{3000, 0}, {1000, 500}}));
}

TEST_F(OverlayControllerPresentation, ASolidRegionOffTheMainScreenGoesToTheFirstScreen) {
  desktop.arrangeScreens({leftScreen, {{{3000, 0}, {1920, 1080}}, 2, 1}});
  desktop.screens().setMain(desktop.screens().all().back());
  switchedOn(CoverStyle::solid,
             {{1000, 0}, {1500, 500}});  // its centre is in the gap, and it ends before the main screen
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{1000, 0}, {440, 500}}));
}

TEST_F(OverlayControllerPresentation, ASolidRegionThatOnlyTouchesTheMainScreenGoesToTheFirstScreen) {
  desktop.arrangeScreens({leftScreen, {{{3000, 0}, {1920, 1080}}, 2, 1}});
  desktop.screens().setMain(desktop.screens().all().back());
  // It ends exactly at the main screen's edge: the common part has no area.
  switchedOn(CoverStyle::solid, {{1000, 0}, {2000, 500}});
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{1000, 0}, {440, 500}}));
}

TEST_F(OverlayControllerPresentation, ASolidPartThatIsTooSmallIsNotShownButTheCoverStaysOn) {
  desktop.arrangeScreens({leftScreen, {{{3000, 0}, {1920, 1080}}, 2, 1}});
  desktop.screens().setMain(desktop.screens().all().back());
  // Its part on the main screen is not empty, but too narrow.
  switchedOn(CoverStyle::solid, {{1000, 0}, {2010, 500}});
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, WithoutAMainScreenASolidRegionInAGapIsNotShown) {
  desktop.arrangeScreens({leftScreen, {{{3000, 0}, {1920, 1080}}, 2, 1}});
  desktop.screens().setMain(std::nullopt);
  switchedOn(CoverStyle::solid, {{1000, 0}, {3000, 500}});
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, SwitchingOffReleasesEverything) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    controller->setEnabled(false);
    desktop.runLoop().settle();
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_THAT(controller->liveMirrors(), IsEmpty());
    EXPECT_THAT(desktop.runLoop().liveTimers(), IsEmpty());
    EXPECT_THAT(desktop.capture().runningStreams(), IsEmpty());
    EXPECT_FALSE(desktop.windows().made().back()->isAlive);
  }
}

TEST_F(OverlayControllerPresentation, ANewRegionRebuildsAShownCover) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    const Rect elsewhere{{0, 0}, {200, 200}};
    controller->setRegion(elsewhere);
    EXPECT_THAT(shownFrames(), ElementsAre(elsewhere));
  }
}

TEST_F(OverlayControllerPresentation, ANewRegionOnNoScreenShowsNothingButTheCoverStaysOn) {
  switchedOn(CoverStyle::live);
  controller->setRegion({{90000, 0}, {100, 100}});
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, ANewStyleHidesTheOldCoverThenStoresThenShows) {
  switchedOn(CoverStyle::live);
  desktop.record().clear();
  controller->setStyle(CoverStyle::solid);
  EXPECT_LT(placeOf("window 1: order out"), placeOf("settings: style"));
  EXPECT_LT(placeOf("settings: style"), placeOf("window 2: order front"));
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  EXPECT_THAT(controller->liveMirrors(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, ANewStyleWhileOffShowsNothing) {
  make().setRegion(region);
  controller->setStyle(CoverStyle::solid);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, SwitchingOnALiveCoverThatIsOnGivesTwoMirrorsPerScreen) {
  switchedOn(CoverStyle::live);
  controller->setEnabled(true);
  EXPECT_THAT(shownFrames(), ElementsAre(region, region));
  EXPECT_THAT(controller->liveMirrors(), SizeIs(2));
  controller->setEnabled(false);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerPresentation, SwitchingOnASolidCoverThatIsOnReusesItsWindow) {
  switchedOn(CoverStyle::solid);
  const auto view = solidWindow().contentView;
  controller->setEnabled(true);
  EXPECT_THAT(desktop.windows().made(), SizeIs(1));
  EXPECT_THAT(shownWindows(), SizeIs(1));
  EXPECT_NE(solidWindow().contentView, view);
}

TEST_F(OverlayControllerPresentation, AfterHidingANewSolidWindowIsMade) {
  switchedOn(CoverStyle::solid);
  controller->setEnabled(false);
  controller->setEnabled(true);
  EXPECT_THAT(desktop.windows().made(), SizeIs(2));
}

using MenuOpen = OverlayControllerPresentation;

TEST_F(MenuOpen, TheCoverStaysAwayWhileTheMenuIsOpen) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    controller->setMenuOpen(true);
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_TRUE(controller->isEnabled());
    controller->setMenuOpen(false);
    EXPECT_THAT(shownFrames(), ElementsAre(region));
    controller->setEnabled(false);
  }
}

TEST_F(MenuOpen, LeavesACoverThatIsOffAsItIs) {
  make().setRegion(region);
  desktop.record().clear();
  controller->setMenuOpen(true);
  controller->setMenuOpen(false);
  EXPECT_THAT(desktop.record().entries(), IsEmpty());
}

using ScreenChange = OverlayControllerPresentation;

TEST_F(ScreenChange, RebuildsAShownCover) {
  switchedOn(CoverStyle::live);
  const auto before = controller->liveMirrors().front();
  controller->screensChanged();
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  EXPECT_NE(controller->liveMirrors().front(), before);
  EXPECT_FALSE(before->isShowing());
}

TEST_F(ScreenChange, DoesNothingWhileTheCoverIsOff) {
  make().setRegion(region);
  desktop.record().clear();
  controller->screensChanged();
  EXPECT_THAT(desktop.record().entries(), IsEmpty());
}

TEST_F(ScreenChange, UnpluggingTheOnlyCoveredScreenHidesTheCoverUntilItIsBack) {
  desktop.arrangeScreens({leftScreen, rightScreen});
  const Rect onTheRight{{1600, 100}, {500, 500}};
  switchedOn(CoverStyle::live, onTheRight);
  desktop.arrangeScreens({leftScreen});
  controller->screensChanged();
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(controller->region(), onTheRight);
  desktop.arrangeScreens({leftScreen, rightScreen});
  controller->screensChanged();
  EXPECT_THAT(shownFrames(), ElementsAre(onTheRight));
}

TEST_F(ScreenChange, WithoutAnyScreenNothingIsShownAndTheStateStays) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    desktop.arrangeScreens({});
    controller->screensChanged();
    EXPECT_TRUE(controller->isEnabled());
    EXPECT_THAT(shownWindows(), IsEmpty());
    desktop.arrangeScreens({leftScreen});
  }
}

}  // namespace
}  // namespace quillfade
