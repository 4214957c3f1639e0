#include "Quillfade/Cover/ExclusionRules.h"

#include <cmath>
#include <limits>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::CaptureWindow;
using platform::Rect;

const std::string own = "org.example.presenter";
const std::string unknown = "org.example.unknown";
const platform::Screen screen{{{0, 0}, {1000, 1000}}, 1, 2};

// A window that covers this fraction of the screen.
CaptureWindow covering(double coverage, std::optional<std::string> owner, std::int64_t layer) {
  return listedWindow(1, std::move(owner), layer, {1000, coverage * 1000});
}

bool isLeftOut(const CaptureWindow& window, const std::optional<std::string>& ownIdentifier = own,
               const platform::Screen& onScreen = screen) {
  return !excludedWindows({{}, {window}}, onScreen, ownIdentifier).empty();
}

TEST(ExclusionRules, NoWindowsGiveNoExclusionAndTheEmptyKey) {
  const auto excluded = excludedWindows({}, screen, own);
  EXPECT_TRUE(excluded.empty());
  EXPECT_EQ(key(excluded), "");
}

TEST(ExclusionRules, OwnWindowsAreLeftOutWhateverTheirLayerAndSize) {
  EXPECT_TRUE(isLeftOut(covering(0.01, own, 0)));
  EXPECT_TRUE(isLeftOut(covering(40, own, -5)));
  CaptureWindow elsewhere = covering(0.5, own, 0);
  elsewhere.frame.origin = {9000, 9000};
  EXPECT_TRUE(isLeftOut(elsewhere));
}

TEST(ExclusionRules, OwnWindowsAreKnownByTheExactIdentifier) {
  EXPECT_FALSE(isLeftOut(covering(1, "org.example.Presenter", 0)));
  EXPECT_FALSE(isLeftOut(covering(1, own + ".helper", 0)));
}

TEST(ExclusionRules, AWindowOffScreenIsNeverLeftOut) {
  for (const std::string& owner : {own, unknown}) {
    CaptureWindow window = covering(1, owner, 1000);
    window.isOnScreen = false;
    EXPECT_FALSE(isLeftOut(window)) << owner;
  }
}

TEST(ExclusionRules, AConferencingWindowIsLeftOutAboveTheNormalLayer) {
  EXPECT_FALSE(isLeftOut(covering(1, "us.zoom.xos", 0)));
  EXPECT_FALSE(isLeftOut(covering(5, "us.zoom.xos", -1)));
  EXPECT_TRUE(isLeftOut(covering(0.31, "us.zoom.xos", 1)));
}

TEST(ExclusionRules, CoverageMustExceedThreeTenths) {
  EXPECT_FALSE(isLeftOut(covering(0.3, "us.zoom.xos", 1)));
  EXPECT_FALSE(isLeftOut(covering(0.3, unknown, 500)));
  EXPECT_TRUE(isLeftOut(covering(std::nextafter(0.3, 1), unknown, 500)));
}

TEST(ExclusionRules, AnUnknownProgramsWindowIsLeftOutFromLayerFiveHundred) {
  EXPECT_TRUE(isLeftOut(covering(0.5, unknown, 500)));
  EXPECT_FALSE(isLeftOut(covering(0.5, unknown, 499)));
  EXPECT_TRUE(isLeftOut(covering(0.5, unknown, std::numeric_limits<std::int64_t>::max())));
}

TEST(ExclusionRules, SmallFloatingWindowsStayAtAnyLayer) {
  EXPECT_FALSE(isLeftOut(covering(0.2, unknown, 2000)));
  EXPECT_FALSE(isLeftOut(covering(0.2, "us.zoom.xos", 2000)));
}

TEST(ExclusionRules, TheTableOfConferencingProgramsHoldsTheseSeven) {
  EXPECT_THAT(conferencing(), testing::UnorderedElementsAre(
                                  "com.tinyspeck.slackmacgap", "com.slack.Slack", "us.zoom.xos", "com.microsoft.teams2",
                                  "com.microsoft.teams", "com.cisco.webexmeetingsapp", "com.hnc.Discord"));
}

TEST(ExclusionRules, TheTableIsComparedExactly) {
  EXPECT_FALSE(conferencing().contains("com.slack.slack"));
  EXPECT_FALSE(conferencing().contains("US.ZOOM.XOS"));
}

TEST(ExclusionRules, EveryEntryOfTheTableIsAConferencingProgram) {
  // Two of them only match by a fragment, since the identifier is compared in lower case.
  for (const std::string& owner : conferencing()) EXPECT_TRUE(isLeftOut(covering(0.5, owner, 1))) << owner;
}

TEST(ExclusionRules, AFragmentAnywhereMakesAConferencingProgram) {
  for (const char* owner : {"org.sample.SlackBridge", "org.sample.Skype2", "org.sample.myzoomer", "TEAMS", "x.webex",
                            "org.DisCord.canary", "com.apple.screencaptureui"}) {
    EXPECT_TRUE(isLeftOut(covering(0.5, owner, 1))) << owner;
  }
  for (const char* owner : {"org.sample.slac.k", "org.sample.notes", ""}) {
    EXPECT_FALSE(isLeftOut(covering(0.5, owner, 1))) << owner;
  }
}

TEST(ExclusionRules, LowercasingCoversEveryCharacterThatCanMatter) {
  EXPECT_TRUE(isLeftOut(covering(0.5, "US.ZOOM.XOS", 1)));  // both ends of the alphabet
  EXPECT_TRUE(isLeftOut(covering(0.5, "TEAMS", 1)));
  EXPECT_TRUE(isLeftOut(covering(0.5, "org.slac\xE2\x84\xAA", 1)));  // the Kelvin sign is a capital k
  // A capital I with a dot becomes an i and a combining dot, so the letter after it no longer follows the i directly.
  EXPECT_TRUE(isLeftOut(covering(0.5, "SCREENCAPTUREU\xC4\xB0", 1)));
  EXPECT_FALSE(isLeftOut(covering(0.5, "D\xC4\xB0SCORD", 1)));
}

TEST(ExclusionRules, AWindowWithoutAnOwnerIsSubjectOnlyToTheHighLayerRule) {
  EXPECT_FALSE(isLeftOut(covering(0.5, std::nullopt, 499)));
  EXPECT_TRUE(isLeftOut(covering(0.5, std::nullopt, 500)));
  EXPECT_FALSE(isLeftOut(covering(0.01, std::nullopt, 0)));
}

TEST(ExclusionRules, WithoutAnOwnIdentifierEveryWindowWithoutAnOwnerIsOwn) {
  EXPECT_TRUE(isLeftOut(covering(0.01, std::nullopt, 0), std::nullopt));
  EXPECT_FALSE(isLeftOut(covering(0.01, "", 0), std::nullopt));
  EXPECT_FALSE(isLeftOut(covering(1, own, 0), std::nullopt));
}

TEST(ExclusionRules, OnAScreenWithoutAreaOnlyOwnWindowsAreLeftOut) {
  const platform::Screen flat{{{0, 0}, {1000, 0}}, 1, 2};
  const platform::Screen undefined{{{0, 0}, {std::nan(""), 1000}}, 1, 2};
  for (const auto& each : {flat, undefined}) {
    EXPECT_TRUE(isLeftOut(covering(0.01, own, 0), own, each));
    EXPECT_FALSE(isLeftOut(covering(5, unknown, 1000), own, each));
    EXPECT_FALSE(isLeftOut(covering(5, "us.zoom.xos", 1000), own, each));
  }
}

TEST(ExclusionRules, AScreenOfLessThanOneSquarePointIsStillMeasured) {
  const platform::Screen tiny{{{0, 0}, {0.5, 0.5}}, 1, 2};
  EXPECT_TRUE(isLeftOut(listedWindow(1, unknown, 500, {0.5, 0.5}), own, tiny));
  EXPECT_FALSE(isLeftOut(listedWindow(1, unknown, 500, {0.1, 0.1}), own, tiny));
}

TEST(ExclusionRules, AHugeWindowIsLeftOutButOneWithoutAFiniteAreaIsNot) {
  EXPECT_TRUE(isLeftOut(listedWindow(1, unknown, 500, {1e6, 1e6})));
  EXPECT_FALSE(isLeftOut(listedWindow(1, unknown, 500, {1e200, 1e200})));
  EXPECT_FALSE(isLeftOut(listedWindow(1, unknown, 500, {std::nan(""), 1000})));
  EXPECT_TRUE(isLeftOut(listedWindow(1, own, 500, {1e200, 1e200})));
}

TEST(ExclusionRules, ExtentsCountWithoutTheirSign) {
  EXPECT_TRUE(isLeftOut(listedWindow(1, unknown, 500, {-1000, 500})));
  const platform::Screen mirrored{{{0, 0}, {-1000, 1000}}, 1, 2};
  EXPECT_TRUE(isLeftOut(covering(0.5, unknown, 500), own, mirrored));
}

TEST(ExclusionRules, AWindowOnAnotherScreenIsJudgedByThisScreensArea) {
  CaptureWindow elsewhere = covering(0.5, unknown, 500);
  elsewhere.frame.origin = {5000, 5000};
  EXPECT_TRUE(isLeftOut(elsewhere));
}

TEST(ExclusionRules, TheResultKeepsTheOrderOfTheList) {
  const platform::ShareableContent content{{},
                                           {listedWindow(9, own, 0), listedWindow(3, unknown, 0),
                                            listedWindow(7, unknown, 600), listedWindow(2, "us.zoom.xos", 3)}};
  std::vector<std::uint32_t> numbers;
  for (const auto& window : excludedWindows(content, screen, own)) numbers.push_back(window.windowID);
  EXPECT_EQ(numbers, (std::vector<std::uint32_t>{9, 7, 2}));
}

std::string keyOf(const std::vector<std::uint32_t>& numbers) {
  std::vector<CaptureWindow> windows;
  for (const auto number : numbers) windows.push_back(listedWindow(number, own, 0));
  return key(windows);
}

TEST(ExclusionKey, IsTheNumbersInAscendingOrder) {
  EXPECT_EQ(keyOf({812, 57, 4031}), "57,812,4031");
  EXPECT_EQ(keyOf({4031, 812, 57}), "57,812,4031");
}

TEST(ExclusionKey, KeepsDuplicates) { EXPECT_EQ(keyOf({10, 9, 10}), "9,10,10"); }

TEST(ExclusionKey, WritesTheLargestNumberWithoutASign) { EXPECT_EQ(keyOf({4294967295U}), "4294967295"); }

}  // namespace
}  // namespace quillfade
