// The area selection: its windows, the drag, the keys, and what is drawn.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

class SelectionTest : public MacTest {
 protected:
  static constexpr std::uint16_t escape = 53;

  void selecting(const std::function<void()>& test) {
    launched([&] {
      choose("Select Area…");
      test();
    });
  }

  void drag(platform::Point from, platform::Point to) {
    world.mouseDown(from);
    world.mouseDragged(to);
    world.mouseUp(to);
    fake::settle();
  }
};

TEST_F(SelectionTest, AWindowOverEachScreenTakesTheKeyboard) {
  world.screens = {{}, {.frame = {{1440, 100}, {1000, 800}}, .number = 70}};
  world.pointer = {1500, 200};
  selecting([this] {
    const auto windows = world.windowsOnScreen();
    ASSERT_EQ(windows.size(), 2U);
    EXPECT_EQ(windows[0].frame, (platform::Rect{{0, 0}, {1440, 900}}));
    EXPECT_EQ(windows[1].frame, (platform::Rect{{1440, 100}, {1000, 800}}));
    for (const auto& window : windows) {
      EXPECT_TRUE(window.content.hasBitmap);
      EXPECT_EQ(window.level, 1000);
      EXPECT_EQ(window.behavior, 273U);
      EXPECT_EQ(window.styleMask, 0U);
      EXPECT_EQ(window.background, "clear");
      EXPECT_FALSE(window.isOpaque);
      EXPECT_FALSE(window.hasShadow);
      EXPECT_EQ(window.animation, 2);
      EXPECT_TRUE(window.canBecomeKey);
      EXPECT_TRUE(window.canBecomeMain);
      // Never set: a window for which it was set to NO takes clicks on its clear parts, too.
      EXPECT_EQ(window.ignoresMouse, std::nullopt);
      EXPECT_EQ(window.sharing, std::nullopt);
    }
    EXPECT_FALSE(windows[0].isKey);
    EXPECT_TRUE(windows[1].isKey) << "the one under the pointer";
    EXPECT_EQ(windows[0].content.cursors, (Strings{"crosshair 0 0 1440 900"}));
    EXPECT_EQ(windows[1].content.cursors, (Strings{"crosshair 0 0 1000 800"}));
    EXPECT_TRUE(world.isActive);
    EXPECT_EQ(world.monitors(), 1);
    world.pressKey(escape);
  });
}

TEST_F(SelectionTest, ADragChoosesTheArea) {
  selecting([this] {
    drag({300, 200}, {100, 500});
    EXPECT_EQ(world.defaults.at("region"), fake::Default{std::string{"{{100, 200}, {200, 300}}"}});
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{100, 200}, {200, 300}}}));
    EXPECT_EQ(world.monitors(), 0);
    EXPECT_EQ(world.liveWindows(), 1);
  });
}

TEST_F(SelectionTest, ADragOnAnotherScreenIsMeasuredThere) {
  world.screens = {{}, {.frame = {{1440, 100}, {1000, 800}}, .number = 70}};
  world.capture.displays = {69, 70};
  selecting([this] {
    drag({1500, 200}, {1800, 400});
    EXPECT_EQ(world.defaults.at("region"), fake::Default{std::string{"{{1500, 200}, {300, 200}}"}});
  });
}

TEST_F(SelectionTest, ASmallDragChoosesNothing) {
  selecting([this] {
    drag({300, 200}, {323, 500});
    EXPECT_FALSE(world.defaults.contains("region"));
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_F(SelectionTest, AClickWithoutADragChoosesNothing) {
  selecting([this] {
    world.mouseDown({300, 200});
    world.mouseUp({300, 200});
    fake::settle();
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_EQ(world.liveWindows(), 0);
  });
}

TEST_F(SelectionTest, EscapeEndsItAndBringsTheCoverBack) {
  coveredLive([this] {
    choose("Select Area…");
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    EXPECT_EQ(world.windowsOnScreen().front().level, 1000);
    EXPECT_TRUE(world.pressKey(escape));
    fake::settle();
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{100, 200}, {800, 300}}}));
    EXPECT_EQ(world.monitors(), 0);
  });
}

TEST_F(SelectionTest, TheCancelCommandEndsItToo) {
  selecting([this] {
    world.cancel();
    fake::settle();
    EXPECT_TRUE(world.windowsOnScreen().empty());
  });
}

TEST_F(SelectionTest, OtherKeysArePassedOn) {
  selecting([this] {
    EXPECT_FALSE(world.pressKey(12));
    EXPECT_EQ(world.beeps, 1);
    EXPECT_EQ(world.windowsOnScreen().size(), 1U);
    world.pressKey(escape);
  });
}

TEST_F(SelectionTest, ASecondOneIsDropped) {
  selecting([this] {
    press(keyA);
    EXPECT_EQ(world.windowsOnScreen().size(), 1U);
    EXPECT_EQ(world.monitors(), 1);
    world.pressKey(escape);
  });
}

TEST_F(SelectionTest, TheScreenIsDimmedUnderAnInstruction) {
  selecting([this] {
    // The instruction has 56 characters of 8 points each.
    EXPECT_EQ(world.draw(), (Strings{
                                "fill [0 0 1440 900] even-odd with black alpha 0.38",
                                "fill (478 815 484 38) radius 11 11 with black alpha 0.55",
                                "text \"Drag to select the area to keep covered    Esc to cancel\" at 496 826 in "
                                "system 15 medium, white alpha 0.92",
                            }));
    world.pressKey(escape);
  });
}

TEST_F(SelectionTest, TheSelectionIsAHoleWithItsSize) {
  selecting([this] {
    world.mouseDown({100, 200});
    world.mouseDragged({300.5, 500.9});
    const auto drawn = world.draw();
    ASSERT_EQ(drawn.size(), 6U);
    EXPECT_EQ(drawn[0], "fill [0 0 1440 900] [100 200 200.5 300.9] even-odd with black alpha 0.38");
    EXPECT_EQ(drawn[3], "stroke [100 200 200.5 300.9] width 2 with rgb 0.925 0.216 0.314");
    EXPECT_EQ(drawn[4], "fill (108 208 88 24) radius 6 6 with rgb 0.925 0.216 0.314");
    EXPECT_EQ(drawn[5], "text \"200 × 300\" at 116 212 in digits 12 semibold, white");
    world.pressKey(escape);
  });
}

TEST_F(SelectionTest, ALockEndsIt) {
  selecting([this] {
    world.postFromLoginWindow("com.apple.screenIsLocked");
    fake::settle();
    EXPECT_TRUE(world.windowsOnScreen().empty());
    EXPECT_EQ(world.monitors(), 0);
  });
}

}  // namespace
}  // namespace quillfade
