// What the application asks of the Mac at its start, and in which order.
#include "Tests/Mac/Behaviour/MacTest.h"
#include "Tests/Mac/Behaviour/Record.h"

namespace quillfade {
namespace {

using LaunchTest = MacTest;

TEST_F(LaunchTest, ShowsThePencilAndNothingElse) {
  launched([this] {
    EXPECT_EQ(world.bar(), (fake::BarLook{-2, "pencil", "Quillfade", true, "Quillfade · idle"}));
    EXPECT_TRUE(world.menu().empty());
    EXPECT_TRUE(world.windowsOnScreen().empty());
    EXPECT_EQ(world.policies, (std::vector{1, 1}));
    EXPECT_EQ(world.activations, 0);
    EXPECT_TRUE(world.defaultWrites.empty());
    EXPECT_TRUE(world.streams().empty());
    EXPECT_EQ(world.preflights, 0);
  });
  EXPECT_EQ(status, 0);
}

TEST_F(LaunchTest, TakesItsStepsInOrder) {
  world.defaults = {{"region", std::string{"{{100, 200}, {800, 300}}"}}, {"enabled", true}};
  launched([] {});
  expectInOrder(fake::takeRecord(), {
                                        "-[NSApplication setDelegate:]",
                                        "-[NSApplication setActivationPolicy:]",
                                        "-[NSApplication run]",
                                        "-[NSApplication setActivationPolicy:]",
                                        "-[NSStatusBar statusItemWithLength:]",
                                        "+[NSImage imageWithSystemSymbolName:accessibilityDescription:]",
                                        "-[NSStatusBarButton setImage:]",
                                        "-[NSImage setTemplate:]",
                                        "-[NSStatusBarButton setToolTip:]",
                                        "-[NSMenu setDelegate:]",
                                        "-[NSStatusItem setMenu:]",
                                        "InstallEventHandler",
                                        "RegisterEventHotKey 2 6400 as 1",
                                        "RegisterEventHotKey 35 6400 as 2",
                                        "RegisterEventHotKey 0 6400 as 3",
                                        "RegisterEventHotKey 3 6400 as 4",
                                        "-[NSNotificationCenter addObserver:selector:name:object:]",
                                        "+[NSImage imageWithSystemSymbolName:accessibilityDescription:]",
                                        "-[NSStatusBarButton setToolTip:]",
                                        "-[NSUserDefaults objectForKey:]",
                                        "-[NSUserDefaults setBool:forKey:]",
                                        "-[QLFWindow initWithContentRect:styleMask:backing:defer:]",
                                        "-[QLFWindow setContentView:]",
                                        "-[QLFWindow setFrame:display:]",
                                        "-[QLFWindow orderFrontRegardless]",
                                        "a timer every 1.500000",
                                        "-[NSRunLoop addTimer:forMode:]",
                                        "CGPreflightScreenCaptureAccess",
                                        "-[NSStatusBarButton setToolTip:]",
                                        "-[NSProcessInfo environment]",
                                    });
}

TEST_F(LaunchTest, WithoutAButtonEverythingElseWorks) {
  world.hasStatusButton = false;
  launched([this] {
    EXPECT_EQ(world.bar(), (fake::BarLook{.length = -2}));
    choose("Whole Screen");
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(LaunchTest, WithoutASymbolTheButtonKeepsItsImage) {
  world.missingSymbols = {"pencil.slash"};
  launched([this] {
    choose("Whole Screen");
    EXPECT_EQ(world.bar()->symbol, "pencil");
    EXPECT_EQ(world.bar()->toolTip, "Quillfade · annotations hidden");
  });
}

TEST_F(LaunchTest, WithoutAnySymbolThereIsNoImage) {
  world.missingSymbols = {"pencil"};
  launched([this] { EXPECT_EQ(world.bar(), (fake::BarLook{.length = -2, .toolTip = "Quillfade · idle"})); });
}

TEST_F(LaunchTest, ACoverThatWasOnComesBack) {
  coveredLive([this] {
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{100, 200}, {800, 300}}}));
    EXPECT_EQ(world.bar()->symbol, "pencil.slash");
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
  });
}

TEST_F(LaunchTest, ACoverOfNoScreenStaysOff) {
  world.defaults = {{"region", std::string{"{{5000, 0}, {100, 100}}"}}, {"enabled", true}};
  launched([this] {
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_EQ(world.defaults.at("enabled"), fake::Default{false});
  });
}

TEST_F(LaunchTest, TheDemonstrationAsksForNothing) {
  world.environment = {{"QUILLFADE_DEMO", "1"}, {"HOME", "/Users/presenter"}};
  world.captureAllowed = false;
  launched([this] {
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{240, 240}, {520, 340}}}));
    EXPECT_TRUE(world.alerts.empty());
    EXPECT_EQ(world.permissionRequests, 0);
    EXPECT_EQ(world.defaults.at("region"), fake::Default{std::string{"{{240, 240}, {520, 340}}"}});
  });
}

TEST_F(LaunchTest, OnlyAOneStartsTheDemonstration) {
  for (const char* value : {"true", "01", "1 ", ""}) {
    world.environment = {{"QUILLFADE_DEMO", value}};
    launched([this] { EXPECT_TRUE(shownFrames().empty()); });
  }
}

TEST_F(LaunchTest, AChangeOfTheScreensMovesTheCover) {
  coveredLive([this] {
    world.screens = {{.frame = {{0, 0}, {1920, 1080}}}, {.frame = {{-500, 0}, {500, 1080}}, .number = 70}};
    world.capture.displays = {69, 70};
    world.changeScreens();
    fake::settle();
    EXPECT_EQ(world.streams().size(), 2U);
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    // The area is measured from the top of the display.
    EXPECT_EQ(world.streams().back().source, (platform::Rect{{100, 580}, {800, 300}}));
  });
}

}  // namespace
}  // namespace quillfade
