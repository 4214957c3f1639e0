#include "Quillfade/Settings/UserRules.h"

#include "Quillfade/Cover/ExclusionRules.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::RulesFileEntries;
using platform::RulesFileEntry;
using testing::ElementsAre;
using testing::IsEmpty;

class UserRulesTest : public OnDesktop {
 protected:
  UserRules rules(RulesFileEntries entries) {
    desktop.rulesFile().content = std::move(entries);
    return userRules(desktop.rulesFile());
  }
  std::string combination(const UserRules& rules, std::size_t number) const {
    return combinationText(rules.hotKeys.at(number).combination);
  }
};

TEST_F(UserRulesTest, WithoutAFileEverythingIsAsBuiltIn) {
  const auto built = userRules(desktop.rulesFile());
  EXPECT_THAT(built.windows, IsEmpty());
  EXPECT_THAT(built.faults, IsEmpty());
  EXPECT_EQ(built.hotKeys, builtInHotKeys);
}

TEST_F(UserRulesTest, AFileThatMakesNoSenseIsOneFaultAndChangesNothing) {
  desktop.rulesFile().content = std::unexpected(platform::Error{"This is not JSON from line 2 on."});
  const auto read = userRules(desktop.rulesFile());
  EXPECT_THAT(read.faults, ElementsAre("This is not JSON from line 2 on."));
  EXPECT_EQ(read.hotKeys, builtInHotKeys);
}

TEST_F(UserRulesTest, WindowsAreRead) {
  const auto read = rules({{"alwaysExclude", "1", "zoom*"}, {"neverExclude", "1", "Editor"}});
  EXPECT_THAT(read.windows, ElementsAre(WindowRule{"zoom*", true}, WindowRule{"Editor", false}));
  EXPECT_THAT(read.faults, IsEmpty());
}

TEST_F(UserRulesTest, EachFaultyEntryIsNamedAndTheOthersHold) {
  const auto read = rules({{"alwaysExclude", "1", "zoom"},
                           {"alwaysExclude", "2", std::nullopt},
                           {"alwaysExclude", "3", ""},
                           {"neverExclude", "", "Editor"},
                           {"colo\nur", "", "red"},
                           {"hotKeys", "jump", "Control+J"},
                           {"hotKeys", "peek", std::nullopt},
                           {"hotKeys", "toggle", "Control+Nose"},
                           {"hotKeys", "whole-screen", "Control+F9"}});
  const std::string window =
      "A window is named by its owner or its class, as a string like \"Gromit-mpx\" or \"zoom*\".";
  EXPECT_THAT(read.faults, ElementsAre("alwaysExclude 2: " + window, "alwaysExclude 3: " + window,
                                       "neverExclude: This must be a list of strings, in square brackets.",
                                       R"(colo\nur: Only alwaysExclude, neverExclude and hotKeys are allowed.)",
                                       "hotKeys jump: The hot keys are toggle, peek, select-area and whole-screen.",
                                       "hotKeys peek: A hot key is a string like \"Control+Alt+F9\".",
                                       R"(hotKeys toggle: There is no key \"Nose\".)"));
  EXPECT_THAT(read.windows, ElementsAre(WindowRule{"zoom", true}));
  EXPECT_EQ(combination(read, 0), "Control+Alt+Super+D");
  EXPECT_EQ(combination(read, 3), "Control+F9");
}

TEST_F(UserRulesTest, TwoHotKeysMaySwapCombinations) {
  const auto read = rules({{"hotKeys", "peek", "Control+Alt+Super+D"}, {"hotKeys", "toggle", "Control+Alt+Super+P"}});
  EXPECT_THAT(read.faults, IsEmpty());
  EXPECT_EQ(combination(read, 0), "Control+Alt+Super+P");
  EXPECT_EQ(combination(read, 1), "Control+Alt+Super+D");
}

TEST_F(UserRulesTest, OneCombinationForTwoHotKeysLeavesAllAsBuiltIn) {
  const auto read = rules({{"hotKeys", "peek", "Control+Alt+Super+D"}, {"hotKeys", "whole-screen", "Control+F9"}});
  EXPECT_THAT(read.faults, ElementsAre("hotKeys: Control+Alt+Super+D is set for both toggle and peek, so all four "
                                       "keep their built-in keys."));
  EXPECT_EQ(read.hotKeys, builtInHotKeys);
}

TEST_F(UserRulesTest, PatternsMatchWholeNames) {
  EXPECT_TRUE(matchesPattern("zoom", "zoom"));
  EXPECT_FALSE(matchesPattern("zoom", "Zoom"));
  EXPECT_FALSE(matchesPattern("zoom us", "zoom"));
  EXPECT_TRUE(matchesPattern("zoom us", "zoom*"));
  EXPECT_TRUE(matchesPattern("zoom", "zoom*"));
  EXPECT_TRUE(matchesPattern("org.mozilla.firefox", "org.*.firefox"));
  EXPECT_TRUE(matchesPattern("abcbcd", "a*bcd"));
  EXPECT_FALSE(matchesPattern("abcbce", "a*bcd"));
  EXPECT_TRUE(matchesPattern("zoom", "z??m"));
  EXPECT_FALSE(matchesPattern("zom", "z??m"));
  EXPECT_TRUE(matchesPattern("", "*"));
  EXPECT_FALSE(matchesPattern("", "?"));
  EXPECT_TRUE(matchesPattern("a[b", "a[b"));
  EXPECT_FALSE(matchesPattern(std::string(2000, 'a'), "*a*a*a*a*a*a*a*a*b")) << "and says so soon";
}

TEST_F(UserRulesTest, ARuleFindsAWindowByItsOwnerOrByAnyOfItsNames) {
  const std::vector<WindowRule> all{{"us.zoom.xos", true}, {"as_toolbar", false}};
  auto window = listedWindow(1, "us.zoom.xos", 0);
  EXPECT_EQ(ruleFor(window, all), &all[0]);
  window = listedWindow(2, "Other", 0);
  EXPECT_EQ(ruleFor(window, all), nullptr);
  window.names = {"Other", "as_toolbar"};
  EXPECT_EQ(ruleFor(window, all), &all[1]);
  window.owningApplication = std::nullopt;
  EXPECT_EQ(ruleFor(window, all), &all[1]);
  EXPECT_EQ(ruleFor(listedWindow(3, std::nullopt, 0), {{"", true}}), nullptr);
}

TEST_F(UserRulesTest, AnExactRuleComesBeforeAPatternAndLeavingOutBeforeKeeping) {
  const auto window = listedWindow(1, "zoom", 0);
  const std::vector<WindowRule> exactKeeps{{"*", true}, {"zoom", false}};
  EXPECT_EQ(ruleFor(window, exactKeeps), &exactKeeps[1]);
  const std::vector<WindowRule> both{{"z*", false}, {"zo*", true}, {"*m", false}};
  EXPECT_EQ(ruleFor(window, both), &both[1]);
}

TEST_F(UserRulesTest, AUsersRuleComesBeforeTheBuiltInOnesExceptForOurOwnWindows) {
  const platform::Screen screen{{{0, 0}, {1440, 900}}, 1, 2};
  const std::optional<std::string> own = "org.example.presenter";
  const auto ink = listedWindow(1, "Ink", 500);
  const auto note = listedWindow(2, "Note", 0, {100, 100});
  EXPECT_EQ(judge(ink, screen, own, {{"Ink", false}}), Judgement::keptByUser);
  EXPECT_EQ(judge(note, screen, own, {{"Note", true}}), Judgement::excludedByUser);
  EXPECT_EQ(judge(listedWindow(3, *own, 1000), screen, own, {{"*", false}}), Judgement::excludedOwn);
  auto hidden = note;
  hidden.isOnScreen = false;
  EXPECT_EQ(judge(hidden, screen, own, {{"*", true}}), Judgement::keptOffScreen);
}

TEST_F(UserRulesTest, NoRuleLeavesOutALockScreenAndOnlyAFullNameAPossibleOne) {
  const platform::Screen screen{{{0, 0}, {1440, 900}}, 1, 2};
  auto sheet = listedWindow(1, "QtInk", 101);
  const auto judged = [&](const std::vector<WindowRule>& rules) { return judge(sheet, screen, "own", rules); };
  sheet.sheet = platform::ScreenSheet::takesPointer;
  EXPECT_EQ(judged({}), Judgement::keptTakesPointer);
  EXPECT_EQ(judged({{"*", true}}), Judgement::excludedByUser);
  sheet.sheet = platform::ScreenSheet::perhapsLocker;
  EXPECT_EQ(judged({}), Judgement::keptPerhapsLocker);
  EXPECT_EQ(judged({{"*", true}, {"Qt?nk", true}}), Judgement::keptPerhapsLocker);
  EXPECT_EQ(judged({{"QtInk", true}}), Judgement::excludedByUser);
  EXPECT_EQ(judged({{"QtInk", false}}), Judgement::keptByUser);
  sheet.sheet = platform::ScreenSheet::locker;
  EXPECT_EQ(judged({}), Judgement::keptLocker);
  EXPECT_EQ(judged({{"QtInk", true}, {"*", true}}), Judgement::keptLocker);
  EXPECT_FALSE(isExcluded(Judgement::keptLocker));
  EXPECT_FALSE(isExcluded(Judgement::keptPerhapsLocker));
  EXPECT_FALSE(isExcluded(Judgement::keptTakesPointer));
}

TEST_F(UserRulesTest, ASheetOfAConferencingProgramIsJudgedByItsLayer) {
  const platform::Screen screen{{{0, 0}, {1440, 900}}, 1, 2};
  for (const auto each : {platform::ScreenSheet::takesPointer, platform::ScreenSheet::perhapsLocker}) {
    auto sheet = listedWindow(1, "us.zoom.xos", 101);
    sheet.sheet = each;
    EXPECT_EQ(judge(sheet, screen, "own"), Judgement::excludedConferencing);
  }
}

}  // namespace
}  // namespace quillfade
