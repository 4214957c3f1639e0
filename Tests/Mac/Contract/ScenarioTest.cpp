// The same scenes on the simulated desktop and on the macOS adapter.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "Tests/Mac/Contract/BothDesktops.h"

namespace contract {
namespace {

using platform::Rect;
using Frames = std::vector<Rect>;
using Strings = std::vector<std::string>;

class ScenarioTest : public BothDesktops {
 protected:
  static constexpr Rect area{{100, 200}, {800, 300}};

  void scene(const std::function<void()>& scene) { EXPECT_EQ(desktop->run(scene), 0); }
  void coveredScene(const std::function<void()>& work) {
    desktop->store("region", std::string{"{{100, 200}, {800, 300}}"});
    desktop->store("enabled", true);
    scene(work);
  }

  static platform::CaptureWindow window(std::uint32_t number, std::int64_t layer, const char* owner,
                                        Rect frame = {{0, 0}, {1440, 900}}) {
    return {number, layer, frame, true, platform::RunningApplication{owner}};
  }
  [[nodiscard]] bool isLogged(const std::string& message) const {
    const auto messages = desktop->log();
    return std::ranges::find(messages, message) != messages.end();
  }
};

INSTANTIATE_TEST_SUITE_P(Desktops, ScenarioTest, bothDesktops, nameOfDesktop);

TEST_P(ScenarioTest, AFirstStartShowsTheIdlePencil) {
  scene([this] {
    EXPECT_EQ(desktop->icon(), "pencil");
    EXPECT_EQ(desktop->toolTip(), "Quillfade · idle");
    EXPECT_TRUE(desktop->shownFrames().empty());
    EXPECT_TRUE(desktop->menu().empty());
  });
  EXPECT_TRUE(desktop->log().empty());
}

TEST_P(ScenarioTest, TheMenuOffersTheSameLines) {
  scene([this] {
    desktop->openMenu();
    EXPECT_EQ(desktop->menu(), (std::vector<Line>{{"Quillfade · idle"},
                                                  {"-"},
                                                  {"Hide Annotations", true},
                                                  {"Peek for 5 Seconds", true},
                                                  {"-"},
                                                  {"Whole Screen", true},
                                                  {"Select Area…", true},
                                                  {"Area: whole screen"},
                                                  {"-"},
                                                  {"Mode", true},
                                                  {"Show Outline", true, true},
                                                  {"-"},
                                                  {"Launch at Login", true},
                                                  {"About Quillfade", true},
                                                  {"-"},
                                                  {"Quit Quillfade", true}}));
    desktop->closeMenu();
  });
}

TEST_P(ScenarioTest, ACoverThatWasOnComesBackAndCaptures) {
  desktop->openWindows({window(5, 0, "com.example.editor"), window(6, 500, "org.example.ink")});
  coveredScene([this] {
    EXPECT_EQ(desktop->shownFrames(), (Frames{area}));
    EXPECT_EQ(desktop->streams(), (std::vector<Stream>{{69, {6}, {{100, 400}, {800, 300}}, 1600, 600}}));
    EXPECT_EQ(desktop->runningStreams(), 1U);
    EXPECT_EQ(desktop->timers(), 1U);
    EXPECT_EQ(desktop->statusText(), "Waiting for screen capture…");
    for (const std::int64_t status : {1, 0, 2, 0, 5}) desktop->deliver(status);
    EXPECT_EQ(desktop->framesShown(), 2U);
    EXPECT_EQ(desktop->statusText(), "");
  });
  EXPECT_EQ(desktop->log(), (Strings{"show region=800x300 at 100,200 permission=true",
                                     "high-layer candidates: [\"org.example.ink/layer500/1440x900\"]",
                                     "excluded: [\"org.example.ink/layer500\"]",
                                     "stream started, excluding 1 window(s)", "first live frame received"}));
}

TEST_P(ScenarioTest, SeveralScreensAreCoveredOneByOne) {
  desktop->arrangeScreens({{{{0, 0}, {1440, 900}}, 69, 2}, {{{1440, 100}, {1000, 800}}, 70, 1}});
  scene([this] {
    desktop->choose("Whole Screen");
    EXPECT_EQ(desktop->shownFrames(), (Frames{{{0, 0}, {1440, 900}}, {{1440, 100}, {1000, 800}}}));
    EXPECT_EQ(desktop->stored("region"), platform::SettingValue{std::string{"{{0, 0}, {2440, 900}}"}});
    EXPECT_EQ(desktop->streams(), (std::vector<Stream>{{69, {}, {{0, 0}, {1440, 900}}, 2880, 1800},
                                                       {70, {}, {{0, 0}, {1000, 800}}, 1000, 800}}));
    desktop->arrangeScreens({{{{0, 0}, {1440, 900}}, 69, 2}});
    desktop->announceScreens();
    EXPECT_EQ(desktop->shownFrames(), (Frames{{{0, 0}, {1440, 900}}}));
    EXPECT_EQ(desktop->runningStreams(), 1U);
  });
}

TEST_P(ScenarioTest, TheMenuTakesTheCoverAwayAndBringsItBack) {
  coveredScene([this] {
    desktop->openMenu();
    desktop->settle();
    EXPECT_TRUE(desktop->shownFrames().empty());
    EXPECT_EQ(desktop->runningStreams(), 0U);
    EXPECT_EQ(desktop->timers(), 0U);
    desktop->closeMenu();
    desktop->settle();
    EXPECT_EQ(desktop->shownFrames(), (Frames{area}));
    EXPECT_EQ(desktop->runningStreams(), 1U);
  });
}

TEST_P(ScenarioTest, AnOverlayThatComesIsLeftOutSoon) {
  coveredScene([this] {
    desktop->openWindows({window(9, 500, "org.example.ink")});
    desktop->advance(1.6);
    ASSERT_EQ(desktop->streams().size(), 2U);
    EXPECT_EQ(desktop->streams().back().excluded, (std::vector<std::uint32_t>{9}));
    EXPECT_EQ(desktop->runningStreams(), 1U);
    EXPECT_TRUE(isLogged("overlay set changed, restarting capture"));
    desktop->advance(10);
    EXPECT_EQ(desktop->streams().size(), 2U);
  });
}

TEST_P(ScenarioTest, AStartThatWasOvertakenIsStopped) {
  desktop->hold(Stage::start, true);
  coveredScene([this] {
    desktop->pressHotKey(2);
    desktop->answerHeld();
    desktop->settle();
    EXPECT_EQ(desktop->runningStreams(), 0U);
    EXPECT_TRUE(desktop->shownFrames().empty());
    EXPECT_FALSE(isLogged("stream started, excluding 0 window(s)"));
  });
}

TEST_P(ScenarioTest, EveryFailureOfTheStartIsTold) {
  for (const Stage stage : {Stage::content, Stage::output, Stage::start}) {
    desktop->fail(stage, "No reason at all.");
    coveredScene([this] {
      EXPECT_EQ(desktop->statusText(), "Screen capture failed. Check Screen Recording permission.");
      EXPECT_EQ(desktop->runningStreams(), 0U);
    });
    EXPECT_TRUE(isLogged("stream start failed: No reason at all."));
    startAnew();
  }
}

TEST_P(ScenarioTest, AStreamThatEndsByItselfIsLogged) {
  coveredScene([this] {
    desktop->endStream("The display went away.");
    EXPECT_TRUE(isLogged("stream stopped: The display went away."));
    EXPECT_EQ(desktop->shownFrames(), (Frames{area}));
  });
}

TEST_P(ScenarioTest, ThePermissionIsAskedForOnce) {
  desktop->allowCapture(false, true);
  scene([this] {
    desktop->choose("Hide Annotations");
    EXPECT_TRUE(desktop->alerts().empty());
    EXPECT_EQ(desktop->shownFrames().size(), 1U);
  });
}

TEST_P(ScenarioTest, WithoutAPermissionTheSettingsAreOpened) {
  desktop->allowCapture(false);
  desktop->answerAlert(1000);
  scene([this] {
    desktop->choose("Whole Screen");
    ASSERT_EQ(desktop->alerts().size(), 1U);
    EXPECT_TRUE(desktop->alerts().front().starts_with("Screen Recording permission needed\n"));
    EXPECT_EQ(desktop->openedLinks(),
              (Strings{"x-apple.systempreferences:com.apple.preference.security?Privacy_ScreenCapture"}));
    EXPECT_TRUE(desktop->shownFrames().empty());
  });
}

TEST_P(ScenarioTest, WithoutAPermissionTheSolidCoverIsOffered) {
  desktop->allowCapture(false);
  desktop->answerAlert(1001);
  scene([this] {
    desktop->choose("Whole Screen");
    EXPECT_EQ(desktop->shownFrames().size(), 1U);
    EXPECT_TRUE(desktop->streams().empty());
    EXPECT_EQ(desktop->stored("style"), platform::SettingValue{std::int64_t{1}});
  });
}

TEST_P(ScenarioTest, HotKeysDoAsTheMenuDoes) {
  desktop->takeKey(35);
  scene([this] {
    EXPECT_TRUE(desktop->pressHotKey(3));
    EXPECT_EQ(desktop->shownFrames().size(), 1U);
    EXPECT_FALSE(desktop->pressHotKey(35));
    desktop->choose("Peek for 5 Seconds");
    EXPECT_TRUE(desktop->shownFrames().empty());
    desktop->advance(5);
    EXPECT_EQ(desktop->shownFrames().size(), 1U);
    EXPECT_TRUE(desktop->pressHotKey(2));
    EXPECT_TRUE(desktop->shownFrames().empty());
  });
}

TEST_P(ScenarioTest, AnAreaIsSelected) {
  scene([this] {
    desktop->choose("Select Area…");
    EXPECT_EQ(desktop->shownFrames(), (Frames{{{0, 0}, {1440, 900}}}));
    desktop->drag({500, 600}, {100, 200});
    EXPECT_EQ(desktop->stored("region"), platform::SettingValue{std::string{"{{100, 200}, {400, 400}}"}});
    EXPECT_EQ(desktop->shownFrames(), (Frames{{{100, 200}, {400, 400}}}));
  });
}

TEST_P(ScenarioTest, ASelectionThatIsCancelledLeavesEverythingAsItWas) {
  coveredScene([this] {
    desktop->choose("Select Area…");
    desktop->pressEscape();
    EXPECT_EQ(desktop->shownFrames(), (Frames{area}));
  });
}

TEST_P(ScenarioTest, ALockTakesEverythingAway) {
  coveredScene([this] {
    desktop->setLocked(true);
    EXPECT_TRUE(desktop->shownFrames().empty());
    EXPECT_EQ(desktop->runningStreams(), 0U);
    desktop->setLocked(false);
    EXPECT_EQ(desktop->shownFrames(), (Frames{area}));
  });
}

TEST_P(ScenarioTest, ARefusedLoginItemIsExplained) {
  desktop->refuseLoginItem("It is managed by somebody else.");
  scene([this] {
    desktop->choose("Launch at Login");
    EXPECT_EQ(desktop->alerts(), (Strings{"Could not change login item\nIt is managed by somebody else."}));
  });
}

TEST_P(ScenarioTest, TheDemonstrationCoversItsArea) {
  desktop->setEnvironment("QUILLFADE_DEMO", "1");
  desktop->allowCapture(false);
  scene([this] { EXPECT_EQ(desktop->shownFrames(), (Frames{{{240, 240}, {520, 340}}})); });
}

TEST_P(ScenarioTest, ACommandDoesAsTheMenuDoes) {
  scene([this] {
    EXPECT_EQ(desktop->command({"whole-screen"}), (platform::RemoteReply{0, ""}));
    EXPECT_EQ(desktop->shownFrames(), (Frames{{{0, 0}, {1440, 900}}}));
    EXPECT_TRUE(desktop->command({"status"}).output.starts_with("Annotations: hidden\n"));
    EXPECT_EQ(desktop->command({"peek", "0"}).status, 2);
    EXPECT_EQ(desktop->command({"toggle"}), (platform::RemoteReply{0, ""}));
    EXPECT_TRUE(desktop->shownFrames().empty());
    EXPECT_EQ(desktop->command({"quit"}).status, 0);
    EXPECT_TRUE(desktop->isTerminated());
  });
}

TEST_P(ScenarioTest, ACommandListsTheWindows) {
  desktop->openWindows({window(9, 500, "org.example.ink")});
  scene([this] { EXPECT_TRUE(desktop->command({"windows"}).output.contains("org.example.ink")); });
}

TEST_P(ScenarioTest, TheAboutPanelNamesTheProduct) {
  scene([this] {
    desktop->choose("About Quillfade");
    EXPECT_EQ(desktop->aboutPanels(), (Strings{"Quillfade"}));
  });
}

TEST_P(ScenarioTest, TheLoginItemIsSwitchedOn) {
  scene([this] {
    desktop->choose("Launch at Login");
    EXPECT_TRUE(desktop->alerts().empty());
    desktop->openMenu();
    const auto lines = desktop->menu();
    EXPECT_TRUE(std::ranges::find(lines, Line{"Launch at Login", true, true}) != lines.end());
    desktop->closeMenu();
  });
}

TEST_P(ScenarioTest, QuittingTerminates) {
  coveredScene([this] {
    desktop->choose("Quit Quillfade");
    EXPECT_TRUE(desktop->isTerminated());
  });
}

}  // namespace
}  // namespace contract
