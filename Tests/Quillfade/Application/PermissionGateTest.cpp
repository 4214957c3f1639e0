#include "Tests/Quillfade/Application/CommandsTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using PermissionGateTest = CommandsTest;

TEST_F(PermissionGateTest, LetsEveryCommandPassWithPermission) {
  launch();
  delegate->toggleCover();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 0);
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(PermissionGateTest, AsksOnceAndContinuesIfThatHelps) {
  desktop.screenCaptureAccess().grantsOnRequest = true;
  launchWithoutPermission();
  delegate->toggleCover();
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 1);
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(PermissionGateTest, TrustsTheSecondCheckNotTheRequest) {
  desktop.screenCaptureAccess().grantsOnRequest = true;
  launchWithoutPermission();
  overlay().setRegion(region);
  // Both checks say no, whatever the request said.
  desktop.screenCaptureAccess().nextPreflights = {false, false};
  desktop.dialogs().answerWith(openSettings);
  delegate->toggleCover();
  EXPECT_THAT(alerts(), SizeIs(1));
  EXPECT_FALSE(overlay().isEnabled());
}

TEST_F(PermissionGateTest, ExplainsItselfInThreeParagraphsAndTwoButtons) {
  launchWithoutPermission();
  delegate->toggleCover();
  ASSERT_THAT(alerts(), SizeIs(1));
  EXPECT_EQ(alerts()[0].messageText, "Screen Recording permission needed");
  EXPECT_EQ(
      alerts()[0].informativeText,
      "Quillfade shows a live view of your screen with annotation layers filtered out. That needs Screen Recording "
      "permission.\n\nAllow Quillfade in System Settings \xE2\x86\x92 Privacy & Security \xE2\x86\x92 Screen "
      "Recording, then relaunch it. Your screen share itself is unaffected.\n\nOr use the solid cover, which needs "
      "no permission.");
  EXPECT_THAT(alerts()[0].buttons, ElementsAre("Open System Settings", "Use Solid Cover"));
}

TEST_F(PermissionGateTest, BringsTheApplicationForwardBeforeTheAlert) {
  launchWithoutPermission();
  delegate->toggleCover();
  EXPECT_LT(placeOf("permission: request"), placeOf("application: activate"));
  EXPECT_LT(placeOf("application: activate"), placeOf("dialogs: alert Screen Recording permission needed"));
  EXPECT_EQ(desktop.sharedApplication()->activationCount(), 1);
}

TEST_F(PermissionGateTest, OpeningTheSettingsAbandonsTheCommand) {
  launchWithoutPermission();
  overlay().setRegion(region);
  desktop.dialogs().answerWith(openSettings);
  delegate->toggleCover();
  EXPECT_THAT(desktop.workspace().openedURLs(),
              ElementsAre("x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"));
  EXPECT_EQ(overlay().style(), CoverStyle::live);
  EXPECT_EQ(overlay().region(), region);
  EXPECT_FALSE(overlay().isEnabled());
}

TEST_F(PermissionGateTest, ChoosingTheSolidCoverContinuesWithIt) {
  launchWithoutPermission();
  desktop.dialogs().answerWith(useSolidCover);
  delegate->toggleCover();
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
  EXPECT_EQ(overlay().region(), (Rect{{0, 0}, {1440, 900}}));
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(Rect{{0, 0}, {1440, 900}}));
  EXPECT_THAT(overlay().liveMirrors(), IsEmpty());
  EXPECT_THAT(alerts(), SizeIs(1));
  EXPECT_THAT(desktop.workspace().openedURLs(), IsEmpty());
}

TEST_F(PermissionGateTest, AlwaysPassesWithTheSolidStyle) {
  launchWithoutPermission();
  overlay().setStyle(CoverStyle::solid);
  const int before = desktop.screenCaptureAccess().preflightCount();
  delegate->toggleCover();
  delegate->peek();
  delegate->wholeScreen();
  delegate->selectArea();
  cancelSelection();
  chooseStyle(CoverStyle::live);
  chooseStyle(CoverStyle::solid);
  delegate->toggleOutline();
  EXPECT_THAT(alerts(), IsEmpty());
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 0);
  EXPECT_EQ(desktop.screenCaptureAccess().preflightCount(), before);
}

TEST_F(PermissionGateTest, GuardsEveryCommandThatCanShowTheLiveCover) {
  launchWithoutPermission();
  for (const auto command : {&AppDelegate::toggleCover, &AppDelegate::wholeScreen, &AppDelegate::selectArea}) {
    desktop.dialogs().answerWith(openSettings);
    ((*delegate).*command)();
  }
  desktop.dialogs().answerWith(openSettings);
  chooseStyle(CoverStyle::live);
  EXPECT_THAT(alerts(), SizeIs(4));
  EXPECT_THAT(desktop.windows().made(), IsEmpty());
  EXPECT_EQ(overlay().region(), std::nullopt);
}

TEST_F(PermissionGateTest, DoesNotGuardTheOtherCommands) {
  launchWithoutPermission();
  delegate->peek();
  delegate->toggleOutline();
  chooseStyle(CoverStyle::solid);
  delegate->toggleLaunchAtLogin();
  delegate->showAbout();
  delegate->quit();
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(PermissionGateTest, ShowsOneAlertAtATimeAndBringsItToTheFrontWhenItIsAskedAgain) {
  launchWithoutPermission();
  desktop.dialogs().setDuringAlert([&] {
    EXPECT_EQ(desktop.sharedApplication()->activationCount(), 1);
    delegate->toggleCover();
    EXPECT_EQ(desktop.sharedApplication()->activationCount(), 2);
    delegate->wholeScreen();
    delegate->selectArea();
    chooseStyle(CoverStyle::live);
    EXPECT_FALSE(overlay().isEnabled());
    EXPECT_FALSE(selecting());
  });
  desktop.dialogs().answerWith(useSolidCover);
  delegate->toggleCover();
  EXPECT_THAT(alerts(), SizeIs(1));
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(PermissionGateTest, AsksAgainOnceItsAlertIsAnswered) {
  launchWithoutPermission();
  for (int round = 1; round <= 2; ++round) {
    desktop.dialogs().answerWith(openSettings);
    delegate->toggleCover();
    EXPECT_THAT(alerts(), SizeIs(round));
  }
}

TEST_F(PermissionGateTest, AsksNothingWhileTheSessionIsLocked) {
  launchWithoutPermission();
  desktop.sessionLock().setLocked(true);
  delegate->toggleCover();
  EXPECT_THAT(alerts(), IsEmpty());
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_EQ(overlay().style(), CoverStyle::live);
}

TEST_F(PermissionGateTest, ComesAgainWithinHideAnnotationsWithoutARegion) {
  launchWithoutPermission();
  desktop.screenCaptureAccess().nextPreflights = {true, false, false};
  desktop.dialogs().answerWith(openSettings);
  delegate->toggleCover();
  EXPECT_THAT(alerts(), SizeIs(1));
  EXPECT_EQ(overlay().region(), std::nullopt);
}

}  // namespace
}  // namespace quillfade
