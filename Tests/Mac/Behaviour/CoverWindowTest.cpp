// The windows of the live and of the solid cover, as they are on the screen.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using CoverWindowTest = MacTest;

constexpr std::int64_t shieldingLevel = 2147483628;
constexpr platform::Rect area{{100, 200}, {800, 300}};
constexpr platform::Rect inside{{0, 0}, {800, 300}};

void expectCoverWindow(const fake::WindowLook& window) {
  EXPECT_EQ(window.frame, area);
  EXPECT_EQ(window.level, shieldingLevel);
  EXPECT_EQ(window.behavior, 0x151U);
  EXPECT_EQ(window.styleMask, 0U);
  EXPECT_EQ(window.backing, 2U);
  EXPECT_FALSE(window.isDeferred);
  EXPECT_EQ(window.ignoresMouse, true);
  EXPECT_FALSE(window.hasShadow);
  EXPECT_TRUE(window.isOpaque);
  EXPECT_FALSE(window.isReleasedWhenClosed);
  EXPECT_FALSE(window.isMovable);
  EXPECT_EQ(window.animation, 2);
  EXPECT_FALSE(window.canBecomeKey);
  EXPECT_FALSE(window.canBecomeMain);
  EXPECT_EQ(window.content.frame, inside);
}

void expectOutline(const fake::ViewLook& outline) {
  EXPECT_EQ(outline.frame, inside);
  EXPECT_EQ(outline.resizeMask, 18U);
  EXPECT_EQ(outline.borderWidth, 1);
  EXPECT_EQ(outline.border, "label alpha 0.16");
  EXPECT_EQ(outline.background, "");
}

bool needsNoBitmap(const fake::ViewLook& view) {
  return !view.hasBitmap && std::ranges::all_of(view.subviews, needsNoBitmap);
}

TEST_F(CoverWindowTest, NoViewOfACoverTakesABitmap) {
  for (const std::int64_t style : {0, 1}) {
    world.defaults = {{"style", style}, {"region", std::string{"{{100, 200}, {800, 300}}"}}, {"enabled", true}};
    launched([this] {
      ASSERT_EQ(world.windowsOnScreen().size(), 1U);
      EXPECT_TRUE(needsNoBitmap(world.windowsOnScreen()[0].content));
      EXPECT_TRUE(world.draw().empty());
    });
  }
}

TEST_F(CoverWindowTest, TheLiveCoverIsKeptOutOfCaptures) {
  coveredLive([this] {
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    const auto window = world.windowsOnScreen().front();
    expectCoverWindow(window);
    EXPECT_EQ(window.background, "black");
    EXPECT_EQ(window.sharing, 0U);
    EXPECT_FALSE(world.isActive) << "whoever worked goes on working";
  });
}

TEST_F(CoverWindowTest, TheLiveCoverShowsItsPictureUnderAStatus) {
  coveredLive([this] {
    const auto view = picture();
    EXPECT_EQ(view.background, "black");
    ASSERT_EQ(view.sublayers.size(), 1U);
    EXPECT_EQ(view.sublayers.front().gravity, "resize");
    EXPECT_EQ(view.sublayers.front().frame, inside);
    EXPECT_FALSE(view.sublayers.front().didAnimate);
    ASSERT_EQ(view.subviews.size(), 2U);
    const auto& label = view.subviews.front();
    EXPECT_EQ(label.text, "Waiting for screen capture…");
    EXPECT_EQ(label.font, "system 15 medium");
    EXPECT_EQ(label.textColor, "white alpha 0.65");
    EXPECT_TRUE(label.isTextCentred);
    EXPECT_TRUE(label.isCentred);
    EXPECT_FALSE(label.isHidden);
    expectOutline(view.subviews.back());
  });
}

TEST_F(CoverWindowTest, ThePictureFollowsTheWindowHoweverAppKitLaysOut) {
  for (const bool atOnce : {false, true}) {
    world.beliefs.laysOutAtOnce = atOnce;
    coveredLive([this] {
      EXPECT_EQ(picture().sublayers.front().frame, inside);
      EXPECT_FALSE(picture().sublayers.front().didAnimate);
      EXPECT_EQ(picture().subviews.back().frame, inside);
    });
  }
}

TEST_F(CoverWindowTest, TheSolidCoverIsSeenByEverybody) {
  world.defaults["style"] = std::int64_t{1};
  world.defaults["region"] = std::string{"{{100, 200}, {800, 300}}"};
  world.defaults["enabled"] = true;
  launched([this] {
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    const auto window = world.windowsOnScreen().front();
    expectCoverWindow(window);
    EXPECT_EQ(window.background, "window background");
    EXPECT_EQ(window.sharing, std::nullopt);
    EXPECT_EQ(window.content.resizeMask, 18U);
    EXPECT_TRUE(window.content.sublayers.empty());
    ASSERT_EQ(window.content.subviews.size(), 1U);
    expectOutline(window.content.subviews.front());
    EXPECT_TRUE(world.streams().empty());
  });
}

TEST_F(CoverWindowTest, TheSolidCoverLiesOnTheScreenUnderItsCentre) {
  world.screens = {{}, {.frame = {{1440, 0}, {1000, 900}}, .number = 70}};
  world.defaults = {{"style", std::int64_t{1}}, {"region", std::string{"{{1300, 0}, {500, 900}}"}}, {"enabled", true}};
  launched([this] { EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{1440, 0}, {360, 900}}})); });
}

TEST_F(CoverWindowTest, OneOutsideOfAllScreensLiesOnTheMainOne) {
  world.screens = {{}, {.frame = {{1440, 0}, {1000, 900}}, .number = 70}};
  world.mainScreen = 1;
  // Its centre is above both screens.
  world.defaults = {
      {"style", std::int64_t{1}}, {"region", std::string{"{{1300, 800}, {500, 900}}"}}, {"enabled", true}};
  launched([this] { EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{1440, 800}, {360, 100}}})); });
}

TEST_F(CoverWindowTest, WithoutAnOutlineThereIsNone) {
  world.defaults["outline"] = false;
  world.defaults["region"] = std::string{"{{100, 200}, {800, 300}}"};
  world.defaults["enabled"] = true;
  launched([this] {
    EXPECT_EQ(picture().subviews.size(), 1U);
    choose("Solid cover");
    EXPECT_TRUE(picture().subviews.empty());
  });
}

TEST_F(CoverWindowTest, AMirrorOfEachScreenShowsItsPart) {
  world.screens = {{}, {.frame = {{1440, 0}, {1000, 900}}, .number = 70, .scale = 1}};
  world.capture.displays = {69, 70};
  world.defaults = {{"region", std::string{"{{1400, 100}, {200, 100}}"}}, {"enabled", true}};
  launched([this] {
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{1400, 100}, {40, 100}}, {{1440, 100}, {160, 100}}}));
    const auto streams = world.streams();
    ASSERT_EQ(streams.size(), 2U);
    EXPECT_EQ(streams[0].display, 69U);
    EXPECT_EQ(streams[0].width, 80U);
    EXPECT_EQ(streams[1].display, 70U);
    EXPECT_EQ(streams[1].width, 160U);
    EXPECT_EQ(fake::liveTimers(), 2);
  });
}

}  // namespace
}  // namespace quillfade
