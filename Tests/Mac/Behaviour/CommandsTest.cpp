// The commands, and the permission gate in front of them with every answer.
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

using CommandsTest = MacTest;

const fake::AlertLook permissionAlert{
    "Screen Recording permission needed",
    "Quillfade shows a live view of your screen with annotation layers filtered out. That needs Screen Recording "
    "permission.\n\nAllow Quillfade in System Settings → Privacy & Security → Screen Recording, then relaunch it. Your "
    "screen share itself is unaffected.\n\nOr use the solid cover, which needs no permission.",
    {"Open System Settings", "Use Solid Cover"},
    true};

TEST_F(CommandsTest, HidingAnnotationsCoversTheWholeScreenFirst) {
  world.screens = {{.frame = {{0, 0}, {1440, 900}}}, {.frame = {{1440, -200}, {1920, 1080}}, .number = 70, .scale = 1}};
  world.capture.displays = {69, 70};
  launched([this] {
    choose("Hide Annotations");
    EXPECT_EQ(world.defaults.at("region"), fake::Default{std::string{"{{0, -200}, {3360, 1100}}"}});
    EXPECT_EQ(shownFrames(), (std::vector<platform::Rect>{{{0, 0}, {1440, 900}}, {{1440, -200}, {1920, 1080}}}));
    choose("Hide Annotations");
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_EQ(world.bar()->symbol, "pencil");
    EXPECT_EQ(world.defaults.at("enabled"), fake::Default{false});
  });
}

TEST_F(CommandsTest, WithoutAScreenNothingIsCovered) {
  launched([this] {
    world.screens.clear();
    world.mainScreen = std::nullopt;
    choose("Whole Screen");
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_FALSE(world.defaults.contains("region"));
  });
}

TEST_F(CommandsTest, APermissionThatIsGrantedWhenAskedForIsEnough) {
  world.captureAllowed = false;
  world.grantsOnRequest = true;
  launched([this] {
    choose("Whole Screen");
    EXPECT_EQ(world.permissionRequests, 1);
    EXPECT_TRUE(world.alerts.empty());
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(CommandsTest, TheSettingsAreOpenedAndTheCommandAbandoned) {
  world.captureAllowed = false;
  world.alertAnswers = {1000};
  launched([this] {
    choose("Whole Screen");
    EXPECT_EQ(world.alerts, (std::vector{permissionAlert}));
    EXPECT_EQ(world.openedLinks,
              (Strings{"x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"}));
    EXPECT_TRUE(shownFrames().empty());
    EXPECT_TRUE(world.defaultWrites.empty());
  });
}

TEST_F(CommandsTest, TheSolidCoverIsChosenInstead) {
  world.captureAllowed = false;
  for (const std::int64_t answer : {1001, 1002, -1}) {
    world.defaults.clear();
    world.openedLinks.clear();
    world.alertAnswers = {answer};
    launched([this] {
      choose("Hide Annotations");
      EXPECT_TRUE(world.openedLinks.empty());
      EXPECT_EQ(shownFrames().size(), 1U);
      EXPECT_TRUE(world.runningStreams().empty());
      EXPECT_EQ(world.defaults.at("style"), fake::Default{std::int64_t{1}});
      // From then on nobody asks.
      choose("Hide Annotations");
      choose("Hide Annotations");
    });
  }
  EXPECT_EQ(world.alerts.size(), 3U);
}

TEST_F(CommandsTest, TimersGoOnWhileAnAlertIsShown) {
  coveredLive([this] {
    const auto before = world.capture.requests.size();
    world.loginItemFailure = "It is not allowed.";
    world.duringAlert = [this, before] {
      fake::advance(3.1);
      EXPECT_EQ(world.capture.requests.size(), before + 3);  // a cover that came back, two refreshes
    };
    choose("Launch at Login");
    EXPECT_EQ(world.alerts.size(), 1U);
  });
}

TEST_F(CommandsTest, ALiveCoverIsNeverSwitchedOnFromASolidOne) {
  world.defaults["style"] = std::int64_t{1};
  launched([this] {
    choose("Live (strip annotations)");
    EXPECT_EQ(world.defaults.at("style"), fake::Default{std::int64_t{1}});
  });
}

TEST_F(CommandsTest, TheSolidCoverTakesThePlaceOfTheLiveOne) {
  coveredLive([this] {
    choose("Solid cover");
    ASSERT_EQ(world.windowsOnScreen().size(), 1U);
    EXPECT_EQ(world.windowsOnScreen().front().background, "window background");
    EXPECT_TRUE(world.runningStreams().empty());
    EXPECT_EQ(world.defaults.at("style"), fake::Default{std::int64_t{1}});
  });
}

TEST_F(CommandsTest, TheOutlineIsTakenAwayFromACoverThatIsShown) {
  coveredLive([this] {
    EXPECT_EQ(picture().subviews.size(), 2U);
    choose("Show Outline");
    EXPECT_EQ(picture().subviews.size(), 1U);
    EXPECT_EQ(world.defaults.at("outline"), fake::Default{false});
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(CommandsTest, APeekEndsAfterFiveSeconds) {
  coveredLive([this] {
    choose("Peek for 5 Seconds");
    EXPECT_TRUE(shownFrames().empty());
    fake::advance(4.9);
    EXPECT_TRUE(shownFrames().empty());
    fake::advance(0.2);
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(CommandsTest, ASecondPeekStartsTheTimeAnew) {
  coveredLive([this] {
    press(keyP);
    fake::advance(4);
    press(keyP);
    fake::advance(4);
    EXPECT_TRUE(shownFrames().empty());
    fake::advance(1.1);
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(CommandsTest, APeekThatIsCancelledBringsNothingBack) {
  coveredLive([this] {
    press(keyP);
    press(keyD);
    fake::advance(6);
    EXPECT_TRUE(shownFrames().empty());
  });
}

TEST_F(CommandsTest, TheLoginItemIsSwitchedOnAndOff) {
  launched([this] {
    choose("Launch at Login");
    EXPECT_EQ(world.loginItemStatus, 1);
    choose("Launch at Login");
    EXPECT_EQ(world.loginItemStatus, 0);
    EXPECT_TRUE(world.alerts.empty());
  });
}

TEST_F(CommandsTest, ARefusedLoginItemIsExplained) {
  launched([this] {
    world.loginItemFailure = "Operation not permitted";
    choose("Launch at Login");
    world.loginItemStatus = 1;
    world.loginItemFailure = "";  // refused without a reason
    choose("Launch at Login");
    EXPECT_EQ(world.alerts, (std::vector<fake::AlertLook>{
                                {"Could not change login item", "Operation not permitted", {"OK"}, true},
                                {"Could not change login item", "The system gave no reason.", {"OK"}, true},
                            }));
    EXPECT_EQ(world.loginItemStatus, 1);
  });
}

TEST_F(CommandsTest, TheAboutPanelSaysWhatItIs) {
  launched([this] {
    choose("About Quillfade");
    ASSERT_EQ(world.aboutPanels.size(), 1U);
    const auto& panel = world.aboutPanels.front();
    EXPECT_EQ(panel.name, "Quillfade");
    EXPECT_EQ(panel.applicationVersion, "1.1");
    EXPECT_EQ(panel.version, "1.1");
    EXPECT_EQ(panel.font, "system 11");
    EXPECT_EQ(panel.color, "secondary label");
    EXPECT_EQ(panel.credits.size(), 377U);
    EXPECT_TRUE(panel.credits.ends_with("\n\nMenu bar: pencil = idle, crossed pencil = annotations hidden."));
    EXPECT_EQ(world.activations, 1);
  });
}

TEST_F(CommandsTest, QuittingTerminatesTheApplication) {
  coveredLive([this] {
    EXPECT_FALSE(world.isTerminated);
    choose("Quit Quillfade");
    EXPECT_TRUE(world.isTerminated);
  });
}

}  // namespace
}  // namespace quillfade
