// Selecting an area with a real mouse: what the screen shows meanwhile, and what is stored in the end.

#include <algorithm>
#include <cmath>
#include <sstream>
#include <vector>

#include "Platform/Linux/Xcb/Coordinates.h"
#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

constexpr std::uint32_t accent = 0xec3750;  // 0.925, 0.216, 0.314

// A colour seen through black at this alpha.
std::uint32_t under(double alpha, std::uint32_t color) {
  std::uint32_t result = 0;
  for (const int shift : {16, 8, 0}) {
    const double channel = static_cast<double>((color >> shift) & 0xffU) * (1 - alpha);
    result |= static_cast<std::uint32_t>(std::lround(channel)) << static_cast<unsigned>(shift);
  }
  return result;
}

bool isColor(const Picture& picture, int x, int y, std::uint32_t color) {
  return picture.count(color, {x, y, 1, 1}, 1) == 1;
}

class AreaSelection : public DrivenDesktop {
 protected:
  void setMonitors(const std::string& left, const std::string& right) {
    const std::string display = server_.display();
    // The monitor whose name begins with a star is the primary one; the first takes the server's only output.
    const std::string primary = left.starts_with('*') ? left : right;
    for (const std::string& monitor : {primary, primary == left ? right : left}) {
      const auto blank = monitor.find(' ');
      support::runToEnd({"xrandr", "--display", display, "--setmonitor", monitor.substr(0, blank),
                         monitor.substr(blank + 1), monitor == primary ? "screen" : "none"});
    }
  }
  void beginSelecting() {
    EXPECT_EQ(run({"select-area"}), (Answer{0, ""}));
    ASSERT_TRUE(showsDimming());
  }
  [[nodiscard]] bool showsDimming() {
    const std::uint32_t dimmed = under(0.38, boardColor);
    return shows([&](const Picture& screen) {
      return isColor(screen, 3, 3, dimmed) && isColor(screen, 1276, 3, dimmed) && isColor(screen, 640, 400, dimmed);
    });
  }
  [[nodiscard]] bool isStored(const std::string& region) {
    return support::waitUntil([&] { return support::readFile(quillfade().settingsPath()).contains(region); });
  }
  // Presses at one corner and moves to the other, without releasing the button.
  void holdDrag(int fromX, int fromY, int toX, int toY) {
    input_.moveTo(fromX, fromY);
    input_.buttonDown();
    input_.moveTo((fromX + toX) / 2, (fromY + toY) / 2);
    input_.moveTo(toX, toY);
  }
};

enum class Management { bare, managed, composited };

class OnEachDesktop : public AreaSelection, public testing::WithParamInterface<Management> {
 protected:
  OnEachDesktop() {
    if (GetParam() != Management::bare) manager_.emplace(server_.display());
    if (GetParam() == Management::composited) compositor_.emplace(server_.display());
    client_.sync();
  }
  std::optional<support::WindowManager> manager_;
  std::optional<support::CompositingManager> compositor_;
};

TEST_P(OnEachDesktop, TheDragIsAHoleInTheDimmingWithABorderAndAReadout) {
  start(solidOff);
  beginSelecting();
  holdDrag(300, 300, 700, 600);
  // The border lies half inside and half outside the rectangle.
  EXPECT_TRUE(shows([](const Picture& screen) {
    return screen.count(accent, {320, 299, 360, 2}, 1) == 720 && screen.count(accent, {320, 599, 360, 2}, 1) == 720 &&
           screen.count(accent, {299, 320, 2, 100}, 1) == 200 && screen.count(accent, {699, 320, 2, 100}, 1) == 200;
  }));
  const Picture screen = client_.screenshot();
  keepPicture(screen, "dragging");
  EXPECT_EQ(screen.count(boardColor, {301, 301, 398, 200}), std::size_t{398} * 200) << "The hole is not dimmed.";
  EXPECT_EQ(screen.count(under(0.38, boardColor), {200, 200, 99, 500}, 1), std::size_t{99} * 500);
  EXPECT_EQ(screen.count(accent, {320, 298, 360, 1}, 1) + screen.count(accent, {320, 301, 360, 1}, 1), 0U);
  // The readout's backing starts 8 points inside the bottom-left corner; its ink is white.
  EXPECT_EQ(screen.count(accent, {307, 570, 1, 15}, 1), 0U);
  EXPECT_GT(screen.count(accent, {308, 575, 60, 10}, 1), 60U);
  EXPECT_EQ(screen.count(accent, {340, 592, 20, 6}, 1), 0U);
  EXPECT_GT(screen.count(0xffffff, {316, 570, 80, 22}, 40), 20U);
  input_.buttonUp();
  EXPECT_TRUE(isStored("{{300, 200}, {400, 300}}")) << support::readFile(quillfade().settingsPath());
  EXPECT_TRUE(becomes("\"enabled\": true"));
  EXPECT_TRUE(shows([&](const Picture& covered) { return isColor(covered, 3, 3, boardColor); }));
}

TEST_P(OnEachDesktop, EscapeCancelsAndTheCoverThatWasOnComesBack) {
  start(solidOn);
  ASSERT_TRUE(showsCover());
  beginSelecting();
  EXPECT_EQ(status().find("\"enabled\": true"), std::string::npos);
  input_.press(XK_Escape);
  EXPECT_TRUE(showsCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": true"));
}

std::string nameOf(const testing::TestParamInfo<Management>& kind) {
  if (kind.param == Management::bare) return "Bare";
  return kind.param == Management::managed ? "Managed" : "Composited";
}

INSTANTIATE_TEST_SUITE_P(Each, OnEachDesktop,
                         testing::Values(Management::bare, Management::managed, Management::composited), nameOf);

TEST_F(AreaSelection, TheInstructionStandsInTheMiddleBelowTheTopEdge) {
  start(solidOff);
  beginSelecting();
  const std::uint32_t backing = under(0.55, under(0.38, boardColor));
  // 74 points down to the bottom of the text, 11 more to the bottom of its backing.
  EXPECT_TRUE(shows([&](const Picture& screen) { return isColor(screen, 640, 84, backing); }));
  const Picture screen = client_.screenshot();
  keepPicture(screen, "instruction");
  EXPECT_FALSE(isColor(screen, 640, 85, backing));
  int left = 640;
  int right = 640;
  while (isColor(screen, left - 1, 80, backing) && left > 1) --left;
  while (isColor(screen, right + 1, 80, backing) && right < 1278) ++right;
  EXPECT_NEAR(left + right + 1, 1280, 2) << left << ".." << right;
  EXPECT_GT(right - left, 300);
  EXPECT_GT(screen.count(0xeeeeee, {left, 50, right - left, 35}, 20), 300U) << "There is white text on it.";
  input_.press(XK_Escape);
}

TEST_F(AreaSelection, ADragOnTheSecondOfTwoScreensIsStoredInGlobalCoordinates) {
  setMonitors("*L 640/170x800/210+0+0", "R 640/170x800/210+640+0");
  start(solidOff);
  beginSelecting();
  input_.drag(700, 100, 1000, 400);
  EXPECT_TRUE(isStored("{{700, 400}, {300, 300}}")) << support::readFile(quillfade().settingsPath());
  EXPECT_TRUE(shows([](const Picture& screen) {
    const std::uint32_t color = screen.at(700, 100);
    return color != boardColor && screen.count(color) == std::size_t{300} * 300;
  }));
}

TEST_F(AreaSelection, AScreenLeftOfAndBelowThePrimaryOneHasNegativeCoordinates) {
  setMonitors("L 640/170x800/210+0+0", "*R 640/170x600/160+640+0");
  start(solidOff);
  EXPECT_EQ(run({"select-area"}).status, 0);
  const std::uint32_t dimmed = under(0.38, boardColor);
  ASSERT_TRUE(shows([&](const Picture& s) { return isColor(s, 3, 797, dimmed) && isColor(s, 1276, 3, dimmed); }));
  EXPECT_TRUE(isColor(client_.screenshot(), 1276, 797, boardColor)) << "No screen shows this corner.";
  input_.drag(400, 700, 100, 450);
  EXPECT_TRUE(isStored("{{-540, -100}, {300, 250}}")) << support::readFile(quillfade().settingsPath());
  EXPECT_TRUE(shows([](const Picture& screen) {
    const std::uint32_t color = screen.at(100, 450);
    return color != boardColor && screen.count(color, {100, 450, 300, 250}) == std::size_t{300} * 250;
  }));
}

// Two screens, and their scale factors as given to the toolkit.
struct Screens {
  std::string name;
  std::string left;
  std::string right;
  std::string scales;
  std::vector<platform::linux::xcb::ScreenGeometry> geometries;
};

// As stored in the settings.
std::string storedText(const platform::Rect& region) {
  std::ostringstream text;
  text << "{{" << region.minX() << ", " << region.minY() << "}, {" << region.width() << ", " << region.height() << "}}";
  return text.str();
}

class EveryEdge : public AreaSelection, public testing::WithParamInterface<Screens> {};

TEST_P(EveryEdge, OfEachOfTwoScreensTakesTheKeyboardAndThePress) {
  setMonitors(GetParam().left, GetParam().right);
  auto screens = GetParam().geometries;
  platform::linux::xcb::placeInPoints(screens);
  start(solidOff, {{"QT_SCREEN_SCALE_FACTORS", GetParam().scales}});
  constexpr int extent = 120;
  for (const auto& screen : screens) {
    const PixelRect& pixels = screen.pixels;
    for (const int x : {pixels.x, pixels.x + pixels.width / 2, pixels.right() - 1}) {
      for (const int y : {pixels.y, pixels.y + pixels.height / 2, pixels.bottom() - 1}) {
        const int toX = x < pixels.right() - extent ? x + extent : x - extent;
        const int toY = y < pixels.bottom() - extent ? y + extent : y - extent;
        input_.moveTo(x, y);
        ASSERT_EQ(run({"select-area"}), (Answer{0, ""}));
        ASSERT_TRUE(support::waitUntil([&] { return client_.frame(focusedWindow()) == pixels; })) << x << "," << y;
        input_.drag(x, y, toX, toY);
        const std::string text = storedText(toPoints({std::min(x, toX), std::min(y, toY), extent, extent}, screens));
        ASSERT_TRUE(isStored(text)) << x << "," << y << " gives not " << text << " but "
                                    << support::readFile(quillfade().settingsPath());
        ASSERT_EQ(run({"toggle"}).status, 0);
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(AreaSelection, EveryEdge,
                         testing::Values(Screens{"SideBySide",
                                                 "*L 640/170x800/210+0+0",
                                                 "R 500/130x600/160+640+0",
                                                 "",
                                                 {{{0, 0, 640, 800}, 1, {}}, {{640, 0, 500, 600}, 1, {}}}},
                                         Screens{"Stacked",
                                                 "T 1280/300x300/80+0+0",
                                                 "*B 800/200x500/130+0+300",
                                                 "",
                                                 {{{0, 300, 800, 500}, 1, {}}, {{0, 0, 1280, 300}, 1, {}}}},
                                         Screens{"Scaled",
                                                 "*L 640/170x800/210+0+0",
                                                 "R 640/170x600/160+640+0",
                                                 "L=1;R=2",
                                                 {{{0, 0, 640, 800}, 1, {}}, {{640, 0, 640, 600}, 2, {}}}}),
                         [](const auto& screens) { return screens.param.name; });

TEST_F(AreaSelection, ADragMayLeaveTheScreenWhereItBegan) {
  setMonitors("*L 640/170x800/210+0+0", "R 640/170x800/210+640+0");
  start(solidOff);
  beginSelecting();
  input_.drag(500, 100, 900, 300);
  EXPECT_TRUE(isStored("{{500, 500}, {400, 200}}")) << support::readFile(quillfade().settingsPath());
}

TEST_F(AreaSelection, OnAScreenOfTwiceTheScaleEverythingIsTwiceAsLargeAndTheAreaIsInPoints) {
  setMonitors("*L 640/170x800/210+0+0", "R 640/170x800/210+640+0");
  start(solidOff, {{"QT_SCREEN_SCALE_FACTORS", "L=1;R=2"}});
  beginSelecting();
  holdDrag(700, 200, 1100, 500);
  EXPECT_TRUE(shows([](const Picture& screen) {
    return screen.count(accent, {740, 198, 320, 4}, 1) == std::size_t{320} * 4 &&
           screen.count(boardColor, {702, 202, 396, 200}) == std::size_t{396} * 200;
  }));
  keepPicture(client_.screenshot(), "scaled");
  input_.buttonUp();
  // R starts at 640 and is 320 x 400 points large; its top edge is level with that of L, at 800.
  EXPECT_TRUE(isStored("{{670, 550}, {200, 150}}")) << support::readFile(quillfade().settingsPath());
  EXPECT_TRUE(shows([](const Picture& screen) {
    const std::uint32_t color = screen.at(700, 200);
    return color != boardColor && screen.count(color) == std::size_t{400} * 300;
  }));
}

TEST_F(AreaSelection, TheKeyboardGoesToTheScreenUnderThePointerAndBackAfterwards) {
  setMonitors("*L 640/170x800/210+0+0", "R 640/170x800/210+640+0");
  const auto editor = client_.createWindow({.frame = {900, 100, 200, 100}, .color = 0x00ff00});
  xcb_set_input_focus(client_.connection(), XCB_INPUT_FOCUS_PARENT, editor, XCB_CURRENT_TIME);
  client_.sync();
  start(solidOff);
  for (const int x : {300, 900}) {
    input_.moveTo(x, 600);
    beginSelecting();
    EXPECT_TRUE(support::waitUntil([&] {
      const auto focused = client_.frame(focusedWindow());
      return focused && focused->width == 640 && focused->x == (x < 640 ? 0 : 640);
    }));
    input_.press(XK_Escape);
    EXPECT_TRUE(showsNoCover());
    EXPECT_TRUE(support::waitUntil([&] { return focusedWindow() == editor; }));
  }
}

TEST_F(AreaSelection, AClickOrADragThatIsTooSmallCancels) {
  start(solidOff);
  for (const int extent : {0, 23}) {
    beginSelecting();
    input_.drag(400, 400, 400 + extent, 400 + extent);
    EXPECT_TRUE(showsNoCover());
    EXPECT_THAT(status(), HasSubstr("\"enabled\": false"));
    EXPECT_THAT(status(), HasSubstr("\"width\": 400"));
  }
  beginSelecting();
  input_.drag(400, 400, 424, 424);
  EXPECT_TRUE(becomes("\"width\": 24, \"height\": 24"));
}

TEST_F(AreaSelection, ASecondRequestWhileOneRunsChangesNothing) {
  start(solidOn);
  beginSelecting();
  EXPECT_EQ(run({"select-area"}), (Answer{0, ""}));
  input_.press(XK_Escape);
  EXPECT_TRUE(showsCover()) << "The running selection remembers that the cover was on.";
}

}  // namespace
}  // namespace endtoend
