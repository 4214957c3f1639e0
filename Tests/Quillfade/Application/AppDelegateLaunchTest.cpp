#include "Tests/Quillfade/Application/DelegateTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using platform::SettingValue;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

using AppDelegateLaunch = DelegateTest;

constexpr Rect demonstrationRegion{{240, 240}, {520, 340}};

TEST_F(AppDelegateLaunch, AFreshDelegateHasDoneNothingYet) {
  delegate = std::make_shared<AppDelegate>(desktop);
  EXPECT_EQ(delegate->statusItem(), nullptr);
  EXPECT_EQ(delegate->hotKeys(), nullptr);
  EXPECT_THAT(desktop.record().entries(), IsEmpty());
}

TEST_F(AppDelegateLaunch, TheFirstLaunchShowsAnIdlePencilAndNoCover) {
  launch();
  EXPECT_EQ(button().shownImage()->name(), "pencil");
  EXPECT_EQ(button().shownImage()->description(), "Quillfade");
  EXPECT_TRUE(button().shownImage()->isTemplate());
  EXPECT_EQ(button().toolTip(), idleText);
  EXPECT_FALSE(overlay().isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(AppDelegateLaunch, TheApplicationBecomesAnAccessory) {
  launch();
  EXPECT_THAT(desktop.sharedApplication()->policies(), ElementsAre(platform::ActivationPolicy::accessory));
  EXPECT_EQ(static_cast<int>(platform::ActivationPolicy::accessory), 1);
}

TEST_F(AppDelegateLaunch, CoversMayLieAboveWhatTheLiveCopyLeavesOutAndNothingElse) {
  auto sheet = listedWindow(1, "QtInk", 101);
  sheet.sheet = platform::ScreenSheet::perhapsLocker;
  EXPECT_FALSE(desktop.windows().mayOverlap(sheet));
  launch();
  EXPECT_FALSE(desktop.windows().mayOverlap(sheet));
  desktop.rulesFile().content = platform::RulesFileEntries{{"alwaysExclude", "1", "QtInk"}};
  EXPECT_TRUE(desktop.windows().mayOverlap(sheet)) << "a rule holds from the moment it is written";
  sheet.sheet = platform::ScreenSheet::locker;
  EXPECT_FALSE(desktop.windows().mayOverlap(sheet));
  desktop.arrangeScreens({});
  EXPECT_FALSE(desktop.windows().mayOverlap(sheet));
}

TEST_F(AppDelegateLaunch, TheStatusItemIsSquareAndItsMenuIsEmptyUntilOpened) {
  launch();
  ASSERT_THAT(desktop.statusBar().items(), SizeIs(1));
  EXPECT_EQ(statusItem()->length(), -2);
  EXPECT_THAT(menu().items(), IsEmpty());
  EXPECT_EQ(menu().delegate(), delegate);
}

TEST_F(AppDelegateLaunch, FourHotKeysAreRegistered) {
  launch();
  EXPECT_THAT(desktop.hotKeys().registered(), SizeIs(4));
  ASSERT_NE(delegate->hotKeys(), nullptr);
  EXPECT_THAT(delegate->hotKeys()->refs(), SizeIs(4));
}

TEST_F(AppDelegateLaunch, TheHotKeysAreKeptOnlyOnceAllFourAreBound) {
  std::vector<bool> kept;
  desktop.hotKeys().duringRegistration = [&](platform::HotKeyID) { kept.push_back(delegate->hotKeys() != nullptr); };
  launch();
  EXPECT_THAT(kept, ElementsAre(false, false, false, false));
  EXPECT_NE(delegate->hotKeys(), nullptr);
}

TEST_F(AppDelegateLaunch, TheStepsComeInTheirOrder) {
  launch();
  EXPECT_THAT(desktop.record().entries(),
              ElementsAre("application: activation policy 1", "status bar: make item", "status bar: symbol pencil",
                          "status button: image pencil", "image pencil: template", "status button: tooltip Quillfade",
                          "status bar: make menu", "menu: set delegate", "status item: set menu",
                          "hot keys: install handler", "hot keys: register 1", "hot keys: register 2",
                          "hot keys: register 3", "hot keys: register 4", "screens: observe changes",
                          "session lock: observe changes", "status bar: symbol pencil", "image pencil: template",
                          "status button: image pencil", std::string("status button: tooltip ") + idleText));
}

TEST_F(AppDelegateLaunch, RestoringAndTheDemonstrationComeLast) {
  store("enabled", true);
  store("region", std::string("{{100, 100}, {800, 600}}"));
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  launch();
  const std::size_t restored = placeOf("settings: enabled");
  EXPECT_LT(placeOf(std::string("status button: tooltip ") + idleText), restored);
  EXPECT_LT(restored, placeOf("settings: region"));
}

TEST_F(AppDelegateLaunch, ARestoredCoverCrossesThePencil) {
  store("enabled", true);
  store("region", std::string("{{100, 100}, {800, 600}}"));
  launch();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(button().shownImage()->name(), "pencil.slash");
  EXPECT_EQ(button().toolTip(), hiddenText);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(AppDelegateLaunch, EveryStateChangeReachesTheIcon) {
  launch();
  overlay().setRegion(region);
  overlay().setEnabled(true);
  EXPECT_EQ(button().shownImage()->name(), "pencil.slash");
  overlay().setEnabled(false);
  EXPECT_EQ(button().shownImage()->name(), "pencil");
  EXPECT_EQ(button().toolTip(), idleText);
}

TEST_F(AppDelegateLaunch, AStatusItemWithoutAButtonDoesNotStopTheLaunch) {
  desktop.statusBar().refusesButtons = true;
  launch();
  EXPECT_NE(statusItem()->shownMenu(), nullptr);
  EXPECT_THAT(desktop.hotKeys().registered(), SizeIs(4));
  overlay().setRegion(region);
  overlay().setEnabled(true);
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(AppDelegateLaunch, WithoutTheSymbolTheButtonKeepsNoImage) {
  desktop.statusBar().missingSymbols = {"pencil"};
  launch();
  EXPECT_EQ(button().shownImage(), nullptr);
  EXPECT_EQ(button().toolTip(), idleText);
}

TEST_F(AppDelegateLaunch, ATakenHotKeyDoesNotStopTheLaunch) {
  desktop.hotKeys().takenKeyCodes = {35};
  launch();
  EXPECT_THAT(desktop.hotKeys().registered(), SizeIs(3));
  EXPECT_THAT(alerts(), IsEmpty());
  EXPECT_EQ(button().toolTip(), idleText);
  menu().open();
  EXPECT_NE(menu().item("Peek for 5 Seconds"), nullptr);
  menu().close();
}

TEST_F(AppDelegateLaunch, AUsersHotKeyReplacesTheBuiltInOne) {
  desktop.rulesFile().content = platform::RulesFileEntries{{"hotKeys", "toggle", "Control+Alt+F9"}};
  launch();
  overlay().setRegion(region);
  EXPECT_EQ(desktop.hotKeys().press(2, controlOptionCommandKeys), std::nullopt);
  EXPECT_EQ(desktop.hotKeys().press(0x65, 0x1800), 0);
  EXPECT_TRUE(overlay().isEnabled());
}

TEST_F(AppDelegateLaunch, TheFirstStartEverTellsWhereTheIconIsAndWhatItsKeyDoes) {
  launch();
  EXPECT_THAT(desktop.notifications().shown,
              ElementsAre(platform::Notification{"Quillfade is in the tray",
                                                 "Look for the pencil: its menu offers everything.\nThis key hides "
                                                 "annotations, or shows them again: Control+Alt+Super+D"}));
  delegate = nullptr;
  launch();
  EXPECT_THAT(desktop.notifications().shown, SizeIs(1));
}

TEST_F(AppDelegateLaunch, AnUnavailableKeyIsNotPromised) {
  desktop.hotKeys().takenKeyCodes = {2};
  launch();
  EXPECT_THAT(desktop.notifications().shown,
              ElementsAre(platform::Notification{"Quillfade is in the tray",
                                                 "Look for the pencil: its menu offers everything."}));
}

TEST_F(AppDelegateLaunch, TheMenuShowsTheKeysThatTheUserChoseAndTheUsersLanguage) {
  desktop.rulesFile().content =
      platform::RulesFileEntries{{"hotKeys", "toggle", "Control+K"}, {"hotKeys", "peek", "Control+F9"}};
  desktop.texts().translations = {{"Hide Annotations", "Anmerkungen verbergen"}};
  launch();
  menu().open();
  const auto* hide = menu().item("Anmerkungen verbergen");
  ASSERT_NE(hide, nullptr);
  EXPECT_EQ(hide->keyEquivalent, "k");
  EXPECT_EQ(hide->keyEquivalentModifierMask, platform::modifierflags::control);
  EXPECT_EQ(menu().item("Peek for 5 Seconds")->keyEquivalent, "") << "It has no letter.";
  menu().close();
}

TEST_F(AppDelegateLaunch, UnavailableHotKeysAreKnown) {
  desktop.hotKeys().takenKeyCodes = {35};
  launch();
  constexpr auto held = platform::HotKeyStanding::Kind::held;
  constexpr auto taken = platform::HotKeyStanding::Kind::taken;
  EXPECT_THAT(delegate->hotKeyStates(), ElementsAre(HotKeyState{"Control+Alt+Super+D", "toggle", {held}},
                                                    HotKeyState{"Control+Alt+Super+P", "peek", {taken}},
                                                    HotKeyState{"Control+Alt+Super+A", "select-area", {held}},
                                                    HotKeyState{"Control+Alt+Super+F", "whole-screen", {held}}));
}

TEST_F(AppDelegateLaunch, TheDemonstrationCoversAFixedAreaWithoutAskingForPermission) {
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  desktop.screenCaptureAccess().isGranted = false;
  launch();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(demonstrationRegion));
  EXPECT_THAT(alerts(), IsEmpty());
  EXPECT_EQ(desktop.screenCaptureAccess().requestCount(), 0);
  EXPECT_EQ(button().shownImage()->name(), "pencil.slash");
}

TEST_F(AppDelegateLaunch, TheDemonstrationIsRememberedForTheNextLaunch) {
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  launch();
  EXPECT_EQ(desktop.settings().values.at("region"), SettingValue{std::string("{{240, 240}, {520, 340}}")});
  EXPECT_EQ(desktop.settings().values.at("enabled"), SettingValue{true});
}

TEST_F(AppDelegateLaunch, OnlyTheExactValueOneStartsTheDemonstration) {
  for (const char* value : {"true", "01", "1 ", " 1", "", "yes", "11"}) {
    desktop.process().environment["QUILLFADE_DEMO"] = value;
    launch();
    EXPECT_FALSE(overlay().isEnabled()) << value;
    EXPECT_EQ(overlay().region(), std::nullopt) << value;
    delegate = nullptr;
  }
}

TEST_F(AppDelegateLaunch, TheDemonstrationReplacesARestoredCover) {
  store("enabled", true);
  store("region", std::string("{{100, 100}, {800, 600}}"));
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  launch();
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(overlay().region(), demonstrationRegion);
  EXPECT_EQ(desktop.settings().values.at("region"), SettingValue{std::string("{{240, 240}, {520, 340}}")});
}

TEST_F(AppDelegateLaunch, TheDemonstrationKeepsTheStoredStyle) {
  store("style", std::int64_t{1});
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  launch();
  EXPECT_THAT(shownFrames(), ElementsAre(demonstrationRegion));
  EXPECT_THAT(overlay().liveMirrors(), IsEmpty());
}

TEST_F(AppDelegateLaunch, AScreenChangeReachesTheCoverOnce) {
  launchWithCoverOn(CoverStyle::solid);
  desktop.record().clear();
  desktop.screens().notifyChange();
  EXPECT_THAT(desktop.record().startingWith("window 1: order out"), SizeIs(1));
  EXPECT_THAT(desktop.record().startingWith("window 2: order front"), SizeIs(1));
}

TEST_F(AppDelegateLaunch, WhatWasHandedOutDoesNothingOnceTheDelegateIsGone) {
  launch();
  const auto item = statusItem();
  const auto heldMenu = item->shownMenu();
  delegate = nullptr;
  desktop.screens().notifyChange();
  heldMenu->open();
  heldMenu->close();
  EXPECT_THAT(heldMenu->items(), IsEmpty());
  EXPECT_EQ(desktop.hotKeys().press(2, controlOptionCommandKeys), std::nullopt);
}

TEST_F(AppDelegateLaunch, TheDelegateIsHeldByNobodyElse) {
  launchWithCoverOn();
  menu().open();
  menu().close();
  delegate->selectArea();
  const std::weak_ptr<AppDelegate> held = delegate;
  delegate = nullptr;
  EXPECT_TRUE(held.expired());
}

using AppDelegateLaunchDeathTest = AppDelegateLaunch;

TEST_F(AppDelegateLaunchDeathTest, WithoutAnApplicationTheLaunchEndsTheProcess) {
  desktop.disconnect();
  EXPECT_DEATH(launch(), "fatal error");
}

TEST_F(AppDelegateLaunchDeathTest, WithoutAStatusItemTheLaunchEndsTheProcess) {
  desktop.statusBar().refusesItems = true;
  EXPECT_DEATH(launch(), "fatal error");
}

TEST_F(AppDelegateLaunch, LockingTheSessionHidesTheCoverAndEndsASelection) {
  launchWithCoverOn();
  delegate->selectArea();
  desktop.sessionLock().setLocked(true);
  desktop.runLoop().settle();
  EXPECT_THAT(delegate->selector().windows(), IsEmpty());
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(overlay().region(), region);
  desktop.sessionLock().setLocked(false);
  EXPECT_THAT(shownFrames(), ElementsAre(region));
}

TEST_F(AppDelegateLaunch, TheLockIsIgnoredOnceTheDelegateIsGone) {
  launch();
  delegate = nullptr;
  desktop.sessionLock().setLocked(true);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

}  // namespace
}  // namespace quillfade
