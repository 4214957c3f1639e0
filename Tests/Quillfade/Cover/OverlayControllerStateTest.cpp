#include "Tests/Quillfade/Cover/ControllerTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using platform::SettingValue;
using testing::ElementsAre;
using testing::IsEmpty;

using OverlayControllerState = ControllerTest;

TEST_F(OverlayControllerState, AnEmptyStoreGivesTheDefaults) {
  make();
  EXPECT_EQ(controller->style(), CoverStyle::live);
  EXPECT_TRUE(controller->showsOutline());
  EXPECT_EQ(controller->region(), std::nullopt);
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_THAT(controller->liveMirrors(), IsEmpty());
}

TEST_F(OverlayControllerState, RestoringAnEmptyStoreDoesNothing) {
  make().restore();
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stateChanges, 0);
  EXPECT_THAT(writtenKeys(), IsEmpty());
}

TEST_F(OverlayControllerState, ConstructionNeitherReadsEnabledNorShowsNorWrites) {
  store("enabled", true);
  store("region", "{{0, 0}, {100, 100}}");
  make();
  EXPECT_THAT(desktop.settings().reads(), testing::Not(testing::Contains("enabled")));
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_THAT(writtenKeys(), IsEmpty());
}

TEST_F(OverlayControllerState, TheStyleIsLoadedFirstThenTheOutlineThenTheRegion) {
  make();
  EXPECT_THAT(desktop.settings().reads(), ElementsAre("style", "outline", "region"));
}

TEST_F(OverlayControllerState, OnlyTheStoredIntegerOneGivesTheSolidStyle) {
  store("style", integer(1));
  EXPECT_EQ(make().style(), CoverStyle::solid);
  for (const SettingValue& other :
       {integer(0), integer(2), integer(-1), SettingValue{std::string("1")}, SettingValue{std::string("solid")}}) {
    store("style", other);
    EXPECT_EQ(make().style(), CoverStyle::live);
  }
}

TEST_F(OverlayControllerState, TheStoredOutlineFlagIsTakenWhenItIsABool) {
  store("outline", false);
  EXPECT_FALSE(make().showsOutline());
  store("outline", true);
  EXPECT_TRUE(make().showsOutline());
  store("outline", std::string("false"));
  EXPECT_TRUE(make().showsOutline());
}

TEST_F(OverlayControllerState, AStoredRegionOfAtLeastTwentyFourPointsIsAccepted) {
  store("region", "{{0, 0}, {24, 24}}");
  EXPECT_EQ(make().region(), (Rect{{0, 0}, {24, 24}}));
  store("region", "{{-1900.5, 25}, {1440, 875}}");
  EXPECT_EQ(make().region(), (Rect{{-1900.5, 25}, {1440, 875}}));
}

TEST_F(OverlayControllerState, AStoredRegionThatIsTooSmallOrUnreadableStaysAbsent) {
  for (const SettingValue& value :
       {SettingValue{std::string("{{0, 0}, {23.5, 600}}")}, SettingValue{std::string("{{0, 0}, {600, 23.999}}")},
        SettingValue{std::string("{{0, 0}, {nan, 600}}")}, SettingValue{std::string("no rectangle")},
        SettingValue{std::string()}, SettingValue{true}, integer(5)}) {
    store("region", value);
    EXPECT_EQ(make().region(), std::nullopt);
  }
}

TEST_F(OverlayControllerState, AStoredRegionIsNotComparedWithTheScreens) {
  store("region", "{{90000, 0}, {100, 100}}");
  EXPECT_NE(make().region(), std::nullopt);
}

TEST_F(OverlayControllerState, RestoringSwitchesAStoredCoverOn) {
  store("enabled", true);
  store("region", "{{100, 100}, {800, 600}}");
  make().restore();
  EXPECT_TRUE(controller->isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  EXPECT_EQ(stateChanges, 1);
  EXPECT_THAT(writtenKeys(), ElementsAre("enabled"));
}

TEST_F(OverlayControllerState, RestoringTakesAnyAffirmativeValueForOn) {
  const std::vector<std::pair<SettingValue, bool>> cases{
      {integer(1), true},  {integer(2), true},         {std::string("YES"), true},
      {integer(0), false}, {std::string("no"), false},
  };
  store("region", "{{100, 100}, {800, 600}}");
  for (const auto& [value, isOn] : cases) {
    store("enabled", value);
    make().restore();
    EXPECT_EQ(controller->isEnabled(), isOn) << testing::PrintToString(value);
    controller = nullptr;
  }
}

TEST_F(OverlayControllerState, RestoringWithoutARegionLeavesTheCoverOffAndTheStoreAsItIs) {
  store("enabled", true);
  make().restore();
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stateChanges, 0);
  EXPECT_THAT(writtenKeys(), IsEmpty());
  EXPECT_EQ(stored("enabled"), SettingValue{true});
}

TEST_F(OverlayControllerState, RestoringAStoredOffCoverDoesNothing) {
  store("enabled", false);
  store("region", "{{100, 100}, {800, 600}}");
  make().restore();
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stateChanges, 0);
  EXPECT_THAT(writtenKeys(), IsEmpty());
}

TEST_F(OverlayControllerState, RestoringARegionOnNoScreenTurnsTheStoredFlagOff) {
  store("enabled", true);
  store("region", "{{90000, 0}, {100, 100}}");
  make().restore();
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stored("enabled"), SettingValue{false});
  EXPECT_EQ(stateChanges, 1);
}

TEST_F(OverlayControllerState, SwitchingOnStoresItAndThenNotifies) {
  make().setRegion(region);
  bool sawEverything = false;
  controller->setOnStateChange([&] {
    sawEverything = controller->isEnabled() && stored("enabled") == SettingValue{true} && shownWindows().size() == 1;
  });
  controller->setEnabled(true);
  EXPECT_TRUE(sawEverything);
}

TEST_F(OverlayControllerState, SwitchingOnStoresItBeforeTheCoverIsPresented) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    make().setStyle(style);
    controller->setRegion(region);
    const std::string nextWindow = "window " + std::to_string(desktop.windows().made().size() + 1);
    desktop.record().clear();
    controller->setEnabled(true);
    EXPECT_LT(placeOf("settings: enabled"), placeOf(nextWindow + ": make"));
    controller->setEnabled(false);
  }
}

TEST_F(OverlayControllerState, SwitchingOffStoresItBeforeTheCoverIsHidden) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    switchedOn(style);
    const std::string window = "window " + std::to_string(desktop.windows().made().size());
    desktop.record().clear();
    controller->setEnabled(false);
    EXPECT_LT(placeOf("settings: enabled"), placeOf(window + ": order out"));
  }
}

TEST_F(OverlayControllerState, ARefusalIsStoredBeforeTheCoverIsHidden) {
  switchedOn(CoverStyle::live);
  desktop.arrangeScreens({});
  desktop.record().clear();
  controller->setEnabled(true);
  EXPECT_LT(placeOf("settings: enabled"), placeOf("window 1: order out"));
}

TEST_F(OverlayControllerState, ANewRegionIsStoredBeforeTheOldCoverIsHiddenAndTheNewOneShown) {
  switchedOn(CoverStyle::live);
  desktop.record().clear();
  controller->setRegion({{0, 0}, {200, 200}});
  EXPECT_LT(placeOf("settings: region"), placeOf("window 1: order out"));
  EXPECT_LT(placeOf("window 1: order out"), placeOf("window 2: make"));
}

TEST_F(OverlayControllerState, SwitchingOnWithoutARegionIsRefused) {
  make().setEnabled(true);
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stored("enabled"), SettingValue{false});
  EXPECT_EQ(stateChanges, 1);
}

TEST_F(OverlayControllerState, SwitchingOnWithoutEnoughOverlapIsRefused) {
  make().setRegion({{1430, 0}, {500, 500}});
  controller->setEnabled(true);
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_EQ(stored("enabled"), SettingValue{false});
  EXPECT_EQ(stateChanges, 1);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerState, ARefusalTakesAShownCoverAway) {
  switchedOn(CoverStyle::live);
  desktop.arrangeScreens({});
  controller->setEnabled(true);
  EXPECT_FALSE(controller->isEnabled());
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(OverlayControllerState, SwitchingOffWhileOffStillStoresAndNotifies) {
  make().setEnabled(false);
  EXPECT_THAT(writtenKeys(), ElementsAre("enabled"));
  EXPECT_EQ(stored("enabled"), SettingValue{false});
  EXPECT_EQ(stateChanges, 1);
}

TEST_F(OverlayControllerState, SwitchingOffHidesStoresAndThenNotifies) {
  switchedOn(CoverStyle::solid);
  bool sawEverything = false;
  controller->setOnStateChange([&] {
    sawEverything = !controller->isEnabled() && stored("enabled") == SettingValue{false} && shownWindows().empty();
  });
  controller->setEnabled(false);
  EXPECT_TRUE(sawEverything);
}

TEST_F(OverlayControllerState, WithoutACallbackNobodyIsNotified) {
  make().setOnStateChange(nullptr);
  controller->setRegion(region);
  controller->setEnabled(true);
  EXPECT_TRUE(controller->isEnabled());
}

TEST_F(OverlayControllerState, ARegionSetWhileOffIsStoredAndShowsNothing) {
  make().setRegion({{0, 25}, {1440, 875}});
  EXPECT_EQ(controller->region(), (Rect{{0, 25}, {1440, 875}}));
  EXPECT_EQ(stored("region"), SettingValue{std::string("{{0, 25}, {1440, 875}}")});
  EXPECT_THAT(writtenKeys(), ElementsAre("region"));
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_EQ(stateChanges, 0);
}

TEST_F(OverlayControllerState, AnyRegionIsAccepted) {
  make();
  for (const Rect& rect : {Rect{}, Rect{{-5, -5}, {1, 1}}, Rect{{9e9, 0}, {24, 24}}}) {
    controller->setRegion(rect);
    EXPECT_EQ(controller->region(), rect);
  }
}

TEST_F(OverlayControllerState, ARegionSetWhileOnNotifiesNobody) {
  switchedOn(CoverStyle::live);
  controller->setRegion({{0, 0}, {100, 100}});
  EXPECT_EQ(stateChanges, 0);
  EXPECT_EQ(writtenKeys().back(), "region");
}

TEST_F(OverlayControllerState, TheSameStyleNeitherStoresNorNotifies) {
  make().setStyle(CoverStyle::live);
  EXPECT_EQ(stateChanges, 0);
  EXPECT_THAT(writtenKeys(), IsEmpty());
}

TEST_F(OverlayControllerState, AnotherStyleIsStoredAsAnIntegerAndNotified) {
  make().setStyle(CoverStyle::solid);
  EXPECT_EQ(stored("style"), integer(1));
  EXPECT_EQ(stateChanges, 1);
  controller->setStyle(CoverStyle::live);
  EXPECT_EQ(stored("style"), integer(0));
  EXPECT_EQ(stateChanges, 2);
}

TEST_F(OverlayControllerState, TheOutlineFlagIsStoredAndNotifiesNobody) {
  make().setShowsOutline(false);
  EXPECT_FALSE(controller->showsOutline());
  EXPECT_EQ(stored("outline"), SettingValue{false});
  EXPECT_THAT(writtenKeys(), ElementsAre("outline"));
  EXPECT_EQ(stateChanges, 0);
}

TEST_F(OverlayControllerState, PeekingScreenChangesAndTheMenuStoreNothingAndNotifyNobody) {
  switchedOn(CoverStyle::live);
  const Strings before = writtenKeys();
  controller->peek();
  controller->screensChanged();
  controller->setMenuOpen(true);
  controller->setMenuOpen(false);
  desktop.runLoop().advance(10);
  EXPECT_EQ(writtenKeys(), before);
  EXPECT_EQ(stateChanges, 0);
  EXPECT_TRUE(controller->isEnabled());
}

TEST_F(OverlayControllerState, WhatWasStoredIsLoadedByTheNextController) {
  switchedOn(CoverStyle::solid, {{10.5, 20}, {300, 400}});
  controller->setShowsOutline(false);
  controller = nullptr;
  make();
  EXPECT_EQ(controller->style(), CoverStyle::solid);
  EXPECT_FALSE(controller->showsOutline());
  EXPECT_EQ(controller->region(), (Rect{{10.5, 20}, {300, 400}}));
  controller->restore();
  EXPECT_TRUE(controller->isEnabled());
}

TEST_F(OverlayControllerState, OnlyTheFourKeysAreEverWritten) {
  switchedOn(CoverStyle::solid);
  controller->setShowsOutline(false);
  controller->setEnabled(false);
  const std::set<std::string> keys = [this] {
    const Strings written = writtenKeys();
    return std::set<std::string>(written.begin(), written.end());
  }();
  EXPECT_THAT(keys, ElementsAre("enabled", "outline", "region", "style"));
}

}  // namespace
}  // namespace quillfade
