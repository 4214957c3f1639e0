// See-through sheets over the whole screen that take the pointer and that no window manager places. Drawing programs
// have such sheets, and so do some lockers. Only the user's rule can say which is which.

#include "Tests/EndToEnd/CoveredDesktop.h"
#include "Tests/Support/Desktop.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

constexpr std::uint32_t sheetInk = 0xff00ff;

class PointerSheets : public CoveredDesktop, public testing::WithParamInterface<bool> {
 protected:
  PointerSheets() {
    if (GetParam()) compositor_.emplace(server_.display());
  }

  // Strokes on a sheet that is otherwise empty, yet takes the pointer.
  xcb_window_t openSheet(const std::string& className, int depth = 32) {
    const auto sheet =
        client_.createWindow({.frame = wholeScreen, .color = 0x00000000, .depth = depth, .mapped = false});
    client_.setClass(sheet, className, className);
    client_.map(sheet);
    client_.sync();
    client_.fill(sheet, {100, 300, 900, 40}, 0xff000000U | sheetInk);
    client_.sync();
    return sheet;
  }
  [[nodiscard]] bool showsSheetOnlyOutside(milliseconds deadline = support::defaultDeadline) {
    return shows(
        [](const Picture& screen) { return screen.count(sheetInk, inside) == 0 && screen.count(sheetInk) > 10'000; },
        deadline);
  }
  [[nodiscard]] std::string windowsTable() {
    return support::runToEnd({QUILLFADE_EXECUTABLE, "windows"}, environment_);
  }
  support::QuillfadeProgram& coverWith(const std::string& rules) {
    auto& program = cover({.demonstration = false,
                           .settings = settingsWithRegion(area),
                           .rules = rules,
                           .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}}});
    environment_ = {{"DISPLAY", server_.display()}, {"DBUS_SESSION_BUS_ADDRESS", bus_.address()}};
    return program;
  }

  support::SessionBus bus_;
  support::Environment environment_;
  std::optional<support::CompositingManager> compositor_;
};

TEST_P(PointerSheets, TheOneThatARuleNamesIsLeftOutOnScreenToo) {
  openSheet("QtInk");
  coverWith(R"({"alwaysExclude": ["QtInk"]})");
  EXPECT_TRUE(showsSheetOnlyOutside());
  EXPECT_THAT(windowsTable(), testing::ContainsRegex("QtInk .* left out +left out by your rule: .QtInk"));
}

TEST_P(PointerSheets, TheOneThatARuleNamesIsLeftOutWhenItOpensOverTheCover) {
  coverWith(R"({"alwaysExclude": ["QtInk"]})");
  openSheet("QtInk");
  EXPECT_TRUE(showsSheetOnlyOutside());
}

TEST_P(PointerSheets, ARuleWrittenWhileTheCoverIsOnHoldsFromTheNextRefresh) {
  openSheet("QtInk");
  auto& program = coverWith("");
  EXPECT_FALSE(showsSheetOnlyOutside(milliseconds(300)));
  // Nothing moves on the desktop but the program itself.
  support::writeFile(program.rulesPath(), R"({"alwaysExclude": ["QtInk"]})");
  EXPECT_TRUE(showsSheetOnlyOutside());
  EXPECT_TRUE(std::filesystem::remove(program.rulesPath()));
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(sheetInk, inside) > 10'000; }));
}

TEST_P(PointerSheets, WithoutARuleTheyStayInFrontAndTheTableSaysSoAndNamesTheRule) {
  openSheet("QtInk");
  coverWith("");
  EXPECT_FALSE(showsSheetOnlyOutside(milliseconds(2000)));
  EXPECT_THAT(windowsTable(), testing::ContainsRegex("QtInk .* kept +takes the pointer and could be a lock screen; if "
                                                     "it is an annotation: .alwaysExclude.: \\[.QtInk.\\]"));
}

TEST_P(PointerSheets, APatternDoesNotLeaveOutWhatCouldBeALocker) {
  openSheet("QtInk");
  coverWith(R"({"alwaysExclude": ["*"]})");
  EXPECT_FALSE(showsSheetOnlyOutside(milliseconds(2000)));
  EXPECT_THAT(windowsTable(), testing::ContainsRegex("QtInk .* kept +takes the pointer and could be a lock screen"));
}

TEST_P(PointerSheets, NoRuleLeavesOutAnOpaqueWindowOverTheWholeScreen) {
  openSheet("Shade", 24);
  coverWith(R"({"alwaysExclude": ["Shade"]})");
  EXPECT_FALSE(showsSheetOnlyOutside(milliseconds(2000)));
  EXPECT_THAT(windowsTable(), testing::ContainsRegex("Shade .* kept +could be a lock screen"));
}

TEST_P(PointerSheets, ASolidCoverHidesTheOneThatARuleNames) {
  openSheet("QtInk");
  const support::QuillfadeProgram program(
      QUILLFADE_EXECUTABLE, server_.display(),
      {.demonstration = false,
       .settings = R"({"style": 1, "outline": false, "enabled": true, "region": ")" + regionText(area) + "\"}",
       .rules = R"({"alwaysExclude": ["QtInk"]})"});
  EXPECT_TRUE(showsSheetOnlyOutside());
}

INSTANTIATE_TEST_SUITE_P(With, PointerSheets, testing::Bool(),
                         [](const auto& parameter) { return parameter.param ? "Picom" : "NoCompositingManager"; });

// A real locker whose name is in the rules is a locker all the same.
class NamedLockers : public CoveredDesktop, public testing::WithParamInterface<std::string> {};

TEST_P(NamedLockers, AreNeitherOverlappedNorLeftOut) {
  const support::ChildProcess locker({"i3lock", "--nofork", "--color=305070"}, {{"DISPLAY", server_.display()}});
  const auto isHidden = [](const Picture& screen) { return screen.count(0x305070) == std::size_t{1280} * 800; };
  ASSERT_TRUE(shows(isHidden));
  cover({.demonstration = false, .settings = settingsWithRegion(area), .rules = GetParam()});
  EXPECT_FALSE(shows([&](const Picture& screen) { return !isHidden(screen); }, milliseconds(2000)));
}

INSTANTIATE_TEST_SUITE_P(By, NamedLockers,
                         testing::Values(R"({"alwaysExclude": ["i3lock"]})", R"({"alwaysExclude": ["*"]})"),
                         [](const auto& parameter) { return parameter.index == 0 ? "Name" : "Pattern"; });

}  // namespace
}  // namespace endtoend
