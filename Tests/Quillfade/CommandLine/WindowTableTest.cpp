#include "Quillfade/CommandLine/WindowTable.h"

#include <limits>
#include <sstream>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::SizeIs;

class WindowTable : public OnDesktop {
 protected:
  [[nodiscard]] Strings lines(const std::vector<platform::CaptureWindow>& windows,
                              const std::optional<platform::Rect>& region = std::nullopt) const {
    std::istringstream text(windowTable({{}, windows}, region, desktop));
    Strings result;
    for (std::string line; std::getline(text, line);) result.push_back(line);
    return result;
  }
  // The line of this window alone.
  [[nodiscard]] std::string line(const platform::CaptureWindow& window) const { return lines({window}).at(1); }
};

const std::string own = "org.example.presenter";

TEST_F(WindowTable, WithoutWindowsOnlyTheHeadingIsPrinted) {
  EXPECT_THAT(lines({}), ElementsAre("ID  OWNER  LAYER  SIZE  COVERS  LIVE COPY  WHY"));
}

TEST_F(WindowTable, WhatCannotBeOnItIsSaid) {
  const std::string sentence =
      "Windows of Wayland programs are not on this list: their ink cannot be taken away here, and only the solid cover "
      "hides it.\n";
  EXPECT_THAT(windowTable({{}, {}, true}, std::nullopt, desktop), EndsWith("\n" + sentence));
  EXPECT_THAT(windowTable({{}, {}, false}, std::nullopt, desktop), Not(HasSubstr("Wayland")));
}

TEST_F(WindowTable, EveryColumnStartsAtOnePlace) {
  EXPECT_THAT(lines({listedWindow(7, "Editor", 0, {720, 450}), listedWindow(1234567, "Gromit-mpx", 500)}),
              ElementsAre("ID       OWNER       LAYER  SIZE      COVERS  LIVE COPY  WHY",
                          "7        Editor      0      720x450   25%     kept       not a large overlay",
                          "1234567  Gromit-mpx  500    1440x900  100%    left out   large, on an overlay layer"));
}

TEST_F(WindowTable, EachJudgementComesWithItsReason) {
  auto hidden = listedWindow(1, "Ink", 1000);
  hidden.isOnScreen = false;
  EXPECT_THAT(line(hidden), EndsWith("kept       not on screen"));
  EXPECT_THAT(line(listedWindow(1, own, 0, {10, 10})), EndsWith("left out   belongs to Quillfade"));
  EXPECT_THAT(line(listedWindow(1, "Ink", 500)), EndsWith("left out   large, on an overlay layer"));
  EXPECT_THAT(line(listedWindow(1, "Ink", 500, {100, 100})), EndsWith("kept       not a large overlay"));
  EXPECT_THAT(line(listedWindow(1, "Ink", 499)), EndsWith("kept       not a large overlay"));
  EXPECT_THAT(line(listedWindow(1, "zoom", 1)), EndsWith("left out   large floating window of a conferencing program"));
  EXPECT_THAT(line(listedWindow(1, "zoom", 0)),
              EndsWith("kept       belongs to a conferencing program, but is small or not floating"));
  EXPECT_THAT(line(listedWindow(1, "zoom", 1, {100, 100})),
              EndsWith("kept       belongs to a conferencing program, but is small or not floating"));
}

TEST_F(WindowTable, AScreenWithoutAnAreaIsSaidToHaveNone) {
  desktop.arrangeScreens({{{{0, 0}, {0, 0}}, 1, 1}});
  EXPECT_THAT(line(listedWindow(1, "Ink", 500)), EndsWith("-       kept       the screen has no area"));
}

TEST_F(WindowTable, AWindowBeyondMeasureIsListedWithoutNumbers) {
  constexpr double endless = std::numeric_limits<double>::infinity();
  for (const platform::Size size : {platform::Size{endless, 900}, {1e200, 1e200}}) {
    EXPECT_THAT(line(listedWindow(1, "Ink", 500, size)),
                EndsWith("-       kept       its size is not a finite number"));
  }
  // Finite, but not a number that anyone could read.
  EXPECT_THAT(line(listedWindow(1, "Ink", 500, {1e120, 2})), HasSubstr("-x2"));
}

TEST_F(WindowTable, AWindowWithoutAnOwnersIdentifierGoesByTheFirstOfItsNames) {
  auto window = listedWindow(9, std::nullopt, 0);
  window.names = {"XZoom", "xzoom"};
  EXPECT_THAT(line(window), testing::StartsWith("9   XZoom  0 "));
}

TEST_F(WindowTable, AnOwnerWithoutANameIsAQuestionMark) {
  EXPECT_THAT(line(listedWindow(9, std::nullopt, 0)), testing::StartsWith("9   ?      0 "));
}

TEST_F(WindowTable, NoOwnerCanForgeALineOrHideOne) {
  const auto table = lines({listedWindow(1, "Ink\n2  Editor  0  1x1  0%  kept  fine", 500),
                            listedWindow(3, "\x1B[1A\x1B[2K\rInk", 500), listedWindow(4, "a\tb", 0)});
  ASSERT_THAT(table, SizeIs(4));
  EXPECT_THAT(table[1], HasSubstr(R"(Ink\n2  Editor)"));
  EXPECT_THAT(table[2], HasSubstr(R"(\u{1B}[1A\u{1B}[2K\rInk)"));
  EXPECT_THAT(table[3], HasSubstr(R"(a\tb)"));
}

TEST_F(WindowTable, MultibyteLettersTakeOneColumn) {
  const auto table = lines({listedWindow(1, "R\xC3\xA9sum\xC3\xA9", 0), listedWindow(2, "Resume", 0)});
  EXPECT_EQ(table[1], "1   R\xC3\xA9sum\xC3\xA9  0      1440x900  100%    kept       not a large overlay");
  EXPECT_EQ(table[2], "2   Resume  0      1440x900  100%    kept       not a large overlay");
}

TEST_F(WindowTable, ARuleOfTheUsersIsNamedWhereItDecided) {
  desktop.rulesFile().content =
      platform::RulesFileEntries{{"alwaysExclude", "1", "Note*"}, {"neverExclude", "1", "Ink"}};
  EXPECT_THAT(line(listedWindow(1, "Notebook", 0, {10, 10})), EndsWith("left out   left out by your rule: \"Note*\""));
  EXPECT_THAT(line(listedWindow(1, "Ink", 500)), EndsWith("kept       kept by your rule: \"Ink\""));
  EXPECT_THAT(line(listedWindow(1, "Other", 500)), EndsWith("left out   large, on an overlay layer"));
}

TEST_F(WindowTable, AWindowKeptForTakingThePointerNamesTheRuleThatWouldLeaveItOut) {
  auto sheet = listedWindow(1, "Qt\nInk", 101);
  sheet.sheet = platform::ScreenSheet::takesPointer;
  EXPECT_THAT(line(sheet),
              EndsWith(R"(kept       takes the pointer; if it is an annotation: "alwaysExclude": ["Qt\nInk"])"));
  sheet.sheet = platform::ScreenSheet::perhapsLocker;
  EXPECT_THAT(line(sheet), EndsWith("kept       takes the pointer and could be a lock screen; if it is an annotation: "
                                    R"("alwaysExclude": ["Qt\nInk"])"));
  sheet.owningApplication.reset();
  EXPECT_THAT(line(sheet), EndsWith("kept       takes the pointer and could be a lock screen"));
  sheet.sheet = platform::ScreenSheet::locker;
  EXPECT_THAT(line(sheet), EndsWith("kept       could be a lock screen"));
}

TEST_F(WindowTable, WindowsAreMeasuredAgainstTheScreenOfTheRegion) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 2}, {{{1440, 0}, {2880, 1800}}, 2, 1}});
  const auto window = listedWindow(1, "Ink", 500, {1440, 900});
  EXPECT_THAT(lines({window})[1], HasSubstr("100%    left out"));
  EXPECT_THAT(lines({window}, platform::Rect{{2000, 100}, {300, 300}})[1], HasSubstr("25%     kept"));
}

TEST_F(WindowTable, FractionsOfAPercentAreDropped) {
  EXPECT_THAT(line(listedWindow(1, "Ink", 0, {1439, 900})), HasSubstr(" 99% "));
  EXPECT_THAT(line(listedWindow(1, "Ink", 0, {1, 1})), HasSubstr(" 0% "));
}

TEST_F(WindowTable, WithoutAScreenItSaysSo) {
  desktop.arrangeScreens({});
  EXPECT_THAT(lines({listedWindow(1, "Ink", 500)}), ElementsAre("There is no screen."));
}

}  // namespace
}  // namespace quillfade
