#include "Tests/Quillfade/Application/CommandsTest.h"

namespace quillfade {
namespace {

using platform::LoginItemStatus;
using platform::Rect;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using HideAnnotations = CommandsTest;

TEST_F(HideAnnotations, WithoutARegionCoversTheWholeScreen) {
  twoScreens();
  launch();
  delegate->toggleCover();
  EXPECT_EQ(overlay().region(), (Rect{{0, 0}, {3360, 1080}}));
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(HideAnnotations, SwitchesTheCoverOffAndOnWithTheSameRegion) {
  launchWithCoverOn();
  delegate->toggleCover();
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  delegate->toggleCover();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

using PeekCommand = CommandsTest;

TEST_F(PeekCommand, LastsFiveSeconds) {
  launchWithCoverOn();
  delegate->peek();
  desktop.runLoop().advance(4.9);
  EXPECT_THAT(shownWindows(), IsEmpty());
  desktop.runLoop().advance(0.1);
  EXPECT_THAT(shownWindows(), SizeIs(1));
}

TEST_F(PeekCommand, DoesNothingWhileTheCoverIsOff) {
  launch();
  delegate->peek();
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
}

using ChooseStyle = CommandsTest;

TEST_F(ChooseStyle, SolidAlwaysApplies) {
  launchWithCoverOn();
  chooseStyle(CoverStyle::solid);
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
  EXPECT_THAT(shownWindows(), SizeIs(1));
  chooseStyle(CoverStyle::solid);
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
}

TEST_F(ChooseStyle, LiveWhileSolidIsInForceChangesNothing) {
  launch();
  overlay().setStyle(CoverStyle::solid);
  const auto writes = desktop.settings().writes().size();
  chooseStyle(CoverStyle::live);
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
  EXPECT_EQ(desktop.settings().writes().size(), writes);
}

TEST_F(ChooseStyle, LiveWhileLiveIsInForceOnlyRunsTheGate) {
  launchWithoutPermission();
  desktop.dialogs().answerWith(openSettings);
  chooseStyle(CoverStyle::live);
  EXPECT_EQ(overlay().style(), CoverStyle::live);
  EXPECT_THAT(alerts(), SizeIs(1));
}

TEST_F(ChooseStyle, TheSolidCoverTakenAtTheGateStays) {
  launchWithoutPermission();
  desktop.dialogs().answerWith(useSolidCover);
  chooseStyle(CoverStyle::live);
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
}

TEST_F(ChooseStyle, ATagThatNamesNoStyleIsIgnored) {
  launch();
  platform::MenuItem item;
  for (const std::int64_t tag : {-1, 2, 99}) {
    item.tag = tag;
    delegate->chooseStyle(item);
  }
  EXPECT_EQ(overlay().style(), CoverStyle::live);
  EXPECT_THAT(desktop.settings().writes(), IsEmpty());
}

TEST_F(ChooseStyle, TheMenuReachesIt) {
  launchWithCoverOn();
  EXPECT_TRUE(menu().choose("Solid cover"));
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
  EXPECT_TRUE(menu().choose("Live (strip annotations)"));
  EXPECT_EQ(overlay().style(), CoverStyle::solid);
}

using ShowOutline = CommandsTest;

TEST_F(ShowOutline, OnlyFlipsTheSettingWhileTheCoverIsOff) {
  launch();
  delegate->toggleOutline();
  EXPECT_FALSE(overlay().showsOutline());
  EXPECT_THAT(desktop.windows().made(), IsEmpty());
  EXPECT_THAT(desktop.settings().writes(), SizeIs(1));
  delegate->toggleOutline();
  EXPECT_TRUE(overlay().showsOutline());
}

TEST_F(ShowOutline, RebuildsACoverThatIsOn) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    launchWithCoverOn(style);
    const auto outlined = shownWindows().front()->contentView->subviews().size();
    delegate->toggleOutline();
    EXPECT_TRUE(overlay().isEnabled());
    ASSERT_THAT(shownWindows(), SizeIs(1));
    EXPECT_THAT(shownWindows().front()->contentView->subviews(), SizeIs(outlined - 1));
    delegate->toggleOutline();
    overlay().setEnabled(false);
  }
}

TEST_F(ShowOutline, SwitchesACoverThatIsOnOffAndOnAgain) {
  launchWithCoverOn();
  const std::size_t before = desktop.settings().writes().size();
  delegate->toggleOutline();
  EXPECT_THAT(overlay().liveMirrors(), SizeIs(1));
  using Write = std::pair<std::string, platform::SettingValue>;
  const std::vector<Write> writes(desktop.settings().writes().begin() + static_cast<std::ptrdiff_t>(before),
                                  desktop.settings().writes().end());
  EXPECT_THAT(writes, ElementsAre(Write{"outline", false}, Write{"enabled", false}, Write{"enabled", true}));
}

using LaunchAtLogin = CommandsTest;

TEST_F(LaunchAtLogin, RegistersUnlessItIsEnabled) {
  launch();
  for (const auto status :
       {LoginItemStatus::notRegistered, LoginItemStatus::requiresApproval, LoginItemStatus::notFound}) {
    desktop.loginItem().currentStatus = status;
    desktop.record().clear();
    delegate->toggleLaunchAtLogin();
    EXPECT_THAT(desktop.record().startingWith("login item"), ElementsAre("login item: register"));
  }
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(LaunchAtLogin, UnregistersWhenItIsEnabled) {
  launch();
  desktop.loginItem().currentStatus = LoginItemStatus::enabled;
  delegate->toggleLaunchAtLogin();
  EXPECT_THAT(desktop.record().startingWith("login item"), ElementsAre("login item: unregister"));
  EXPECT_THAT(alerts(), IsEmpty());
}

TEST_F(LaunchAtLogin, ExplainsARefusalInTheDesktopsWords) {
  launch();
  desktop.loginItem().failure = "The operation was not permitted.";
  delegate->toggleLaunchAtLogin();
  ASSERT_THAT(alerts(), SizeIs(1));
  EXPECT_EQ(alerts()[0].messageText, "Could not change login item");
  EXPECT_EQ(alerts()[0].informativeText, "The operation was not permitted.");
  EXPECT_THAT(alerts()[0].buttons, ElementsAre("OK"));
  EXPECT_LT(placeOf("application: activate"), placeOf("dialogs: alert Could not change login item"));
  EXPECT_THAT(desktop.record().startingWith("login item"), SizeIs(1));
}

TEST_F(LaunchAtLogin, ARefusalIsExplainedAfterAWaitingQuestion) {
  launchWithoutPermission();
  desktop.loginItem().failure = "No.";
  desktop.dialogs().setDuringAlert([&] {
    if (alerts().size() > 1) return;
    delegate->toggleLaunchAtLogin();
    EXPECT_THAT(alerts(), SizeIs(1));
  });
  delegate->toggleCover();
  ASSERT_THAT(alerts(), SizeIs(2));
  EXPECT_EQ(alerts()[1].messageText, "Could not change login item");
}

TEST_F(LaunchAtLogin, ARefusalToUnregisterIsExplained) {
  launch();
  desktop.loginItem().currentStatus = LoginItemStatus::enabled;
  desktop.loginItem().failure = "No.";
  delegate->toggleLaunchAtLogin();
  EXPECT_THAT(alerts(), SizeIs(1));
}

using About = CommandsTest;

TEST_F(About, ShowsThePanelInFrontOfAllOthers) {
  launch();
  delegate->showAbout();
  ASSERT_THAT(desktop.dialogs().aboutPanels(), SizeIs(1));
  const auto& panel = desktop.dialogs().aboutPanels().front();
  EXPECT_EQ(panel.applicationName, "Quillfade");
  EXPECT_EQ(panel.applicationVersion, "1.1");
  EXPECT_EQ(panel.version, "1.1");
  EXPECT_EQ(panel.creditsFontSize, 11);
  EXPECT_EQ(panel.creditsColor, platform::colors::secondaryLabel);
  EXPECT_LT(placeOf("application: activate"), placeOf("dialogs: about panel"));
}

TEST_F(About, CreditsSayWhatTheApplicationDoes) {
  launch();
  delegate->showAbout();
  const std::string credits = desktop.dialogs().aboutPanels().front().credits;
  EXPECT_EQ(credits,
            "A live view of your screen (whole screen or one area) with annotation and drawing overlays filtered out. "
            "Nothing is frozen: the picture keeps updating, and your screen share keeps running. The mirror window is "
            "marked not to be captured.\n\nNeeds Screen Recording permission. A solid cover is available as a "
            "fallback.\n\nMenu bar: pencil = idle, crossed pencil = annotations hidden.");
  EXPECT_EQ(credits.size(), 377U);
}

using Quit = CommandsTest;

TEST_F(Quit, TerminatesAndCleansNothingUp) {
  launchWithCoverOn();
  desktop.record().clear();
  delegate->quit();
  EXPECT_TRUE(desktop.sharedApplication()->isTerminated());
  EXPECT_THAT(desktop.record().entries(), ElementsAre("application: terminate"));
}

using HotKeyCommands = CommandsTest;

TEST_F(HotKeyCommands, EachCombinationDoesWhatItsMenuItemDoes) {
  launch();
  auto& keys = desktop.hotKeys();
  EXPECT_EQ(keys.press(3, controlOptionCommandKeys), 0);
  EXPECT_EQ(overlay().region(), (Rect{{0, 0}, {1440, 900}}));
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(keys.press(35, controlOptionCommandKeys), 0);
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), SizeIs(1));
  EXPECT_EQ(keys.press(2, controlOptionCommandKeys), 0);
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_EQ(keys.press(0, controlOptionCommandKeys), 0);
  EXPECT_TRUE(selecting());
  cancelSelection();
}

TEST_F(HotKeyCommands, TheyPassTheSameGate) {
  launchWithoutPermission();
  for (const std::uint32_t keyCode : {2U, 0U, 3U, 35U}) {
    desktop.dialogs().answerWith(openSettings);
    desktop.hotKeys().press(keyCode, controlOptionCommandKeys);
  }
  EXPECT_THAT(alerts(), SizeIs(3));
}

TEST_F(HotKeyCommands, ATakenCombinationLeavesTheMenuCommand) {
  desktop.hotKeys().takenKeyCodes = {2};
  launch();
  EXPECT_EQ(desktop.hotKeys().press(2, controlOptionCommandKeys), std::nullopt);
  EXPECT_TRUE(menu().choose("Hide Annotations"));
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(CommandsTest, EveryMenuItemReachesItsCommand) {
  launch();
  EXPECT_TRUE(menu().choose("Whole Screen"));
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_TRUE(menu().choose("Hide Annotations"));
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_TRUE(menu().choose("Show Outline"));
  EXPECT_FALSE(overlay().showsOutline());
  EXPECT_TRUE(menu().choose("Launch at Login"));
  EXPECT_EQ(desktop.loginItem().currentStatus, LoginItemStatus::enabled);
  EXPECT_TRUE(menu().choose("About Quillfade"));
  EXPECT_THAT(desktop.dialogs().aboutPanels(), SizeIs(1));
  EXPECT_TRUE(menu().choose("Select Area…"));
  EXPECT_TRUE(selecting());
  cancelSelection();
  EXPECT_TRUE(menu().choose("Quit Quillfade"));
  EXPECT_TRUE(desktop.sharedApplication()->isTerminated());
}

TEST_F(CommandsTest, WorkContinuesWhileAnAlertIsUp) {
  launch();
  overlay().setRegion(region);
  overlay().setEnabled(true);
  overlay().peek();
  std::size_t shownDuringAlert = 0;
  desktop.loginItem().failure = "No.";
  desktop.dialogs().setDuringAlert([&] {
    desktop.runLoop().advance(5);
    shownDuringAlert = shownWindows().size();
  });
  delegate->toggleLaunchAtLogin();
  EXPECT_EQ(shownDuringAlert, 1U);
}

using CommandsDeathTest = CommandsTest;

TEST_F(CommandsDeathTest, WithoutAnApplicationAlertsAboutAndQuitEndTheProcess) {
  launchWithoutPermission();
  desktop.disconnect();
  desktop.loginItem().failure = "No.";
  EXPECT_DEATH(delegate->toggleCover(), "fatal error");
  EXPECT_DEATH(delegate->toggleLaunchAtLogin(), "fatal error");
  EXPECT_DEATH(delegate->showAbout(), "fatal error");
  EXPECT_DEATH(delegate->quit(), "fatal error");
}

}  // namespace
}  // namespace quillfade
