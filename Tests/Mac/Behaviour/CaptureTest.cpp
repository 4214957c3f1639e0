// From the window list to frames on the screen.
#include "Tests/Mac/Behaviour/MacTest.h"
#include "Tests/Mac/Behaviour/Record.h"

namespace quillfade {
namespace {

class CaptureTest : public MacTest {
 protected:
  static constexpr const char* failed = "Screen capture failed. Check Screen Recording permission.";

  // A pane over the whole screen that clicks pass through.
  void openOverlay(std::uint32_t number) {
    world.capture.windows.push_back({.number = number, .layer = 500, .owner = "org.example.ink"});
  }
};

TEST_F(CaptureTest, AsksForTheWindowsOnTheScreenWithTheDesktop) {
  coveredLive([this] { EXPECT_EQ(world.capture.requests, (std::vector<std::pair<bool, bool>>{{false, true}})); });
}

TEST_F(CaptureTest, TheStreamShowsTheAreaWithoutTheOverlays) {
  world.capture.windows = {{.number = 7, .layer = 0, .owner = "com.example.editor"},
                           {.number = 8, .layer = 500, .owner = "org.example.ink"},
                           {.number = 9, .layer = 25, .frame = {{0, 0}, {1440, 24}}, .owner = "com.apple.dock"},
                           {.number = 10, .layer = 1000, .owner = std::nullopt}};
  coveredLive([this] {
    ASSERT_EQ(world.streams().size(), 1U);
    const auto stream = world.streams().front();
    EXPECT_EQ(stream.phase, fake::StreamPhase::running);
    EXPECT_EQ(stream.display, 69U);
    EXPECT_EQ(stream.excluded, (std::vector<std::uint32_t>{8, 10}));
    EXPECT_EQ(stream.source, (platform::Rect{{100, 400}, {800, 300}}));  // from the top
    EXPECT_EQ(stream.width, 1600U);
    EXPECT_EQ(stream.height, 600U);
    EXPECT_EQ(stream.interval, "1/30");
    EXPECT_EQ(stream.pixelFormat, 0x42475241U);
    EXPECT_TRUE(stream.showsCursor);
    EXPECT_EQ(stream.queueDepth, 6);
    EXPECT_TRUE(wasLogged("excluded: [\"org.example.ink/layer500\", \"?/layer1000\"]"));
  });
}

TEST_F(CaptureTest, FramesComeOnAQueueOfTheirOwn) {
  coveredLive([] { EXPECT_EQ(fake::liveQueues(), 1); });
  const auto record = fake::takeRecord();
  expectInOrder(record, {"dispatch_queue_attr_make_with_qos_class 33",
                         "dispatch_queue_create org.quillfade.Quillfade.mirror with attributes",
                         "-[SCStream addStreamOutput:type:sampleHandlerQueue:error:]",
                         "-[SCStream startCaptureWithCompletionHandler:]"});
}

TEST_F(CaptureTest, OnlyCompleteFramesAreShown) {
  coveredLive([this] {
    int number = 0;
    for (const std::int64_t status : {1, 2, 3, 4, 5, 6, -1}) deliver(1, {.number = ++number, .status = status});
    deliver(1, {.number = 20, .isValid = false});
    deliver(1, {.number = 21, .hasAttachments = false});
    deliver(1, {.number = 22, .isEmpty = true});
    deliver(1, {.number = 23, .isForeign = true});
    deliver(1, {.number = 24, .status = std::monostate{}});
    deliver(1, {.number = 25, .status = std::string{"0"}});
    deliver(1, {.number = 26, .status = 0.5});
    deliver(1, {.number = 27, .isAudio = true});
    EXPECT_TRUE(framesShown().empty());
    EXPECT_EQ(visibleStatus(), "Waiting for screen capture…");
    EXPECT_FALSE(wasLogged("first live frame received"));
    deliver(1, {.number = 30});
    deliver(1, {.number = 31, .status = std::int64_t{1}});
    deliver(1, {.number = 32, .status = 0.0});
    EXPECT_EQ(framesShown(), (std::vector{30, 32}));
    EXPECT_EQ(visibleStatus(), "");
    const auto messages = logged();
    EXPECT_EQ(std::ranges::count(messages, "first live frame received"), 1);
  });
}

TEST_F(CaptureTest, ARendererThatFailedIsFlushedFirst) {
  coveredLive([this] {
    world.failRenderer();
    deliver(1, {.number = 1});
    deliver(1, {.number = 2});
    EXPECT_EQ(framesShown(), (std::vector{2}));
    EXPECT_EQ(picture().sublayers.front().flushes, 1);
    deliver(1, {.number = 3});
    EXPECT_EQ(picture().sublayers.front().flushes, 1);
  });
}

TEST_F(CaptureTest, AFailureOfTheListIsToldAndLogged) {
  world.capture.content.failure = "The user declined.";
  coveredLive([this] {
    EXPECT_EQ(visibleStatus(), failed);
    EXPECT_TRUE(wasLogged("stream start failed: The user declined."));
    EXPECT_TRUE(world.streams().empty());
  });
}

TEST_F(CaptureTest, AFailureWithoutAReasonIsOneAllTheSame) {
  world.capture.content.failure = "";
  world.capture.content.failsWithoutError = true;
  coveredLive([this] {
    EXPECT_EQ(visibleStatus(), failed);
    EXPECT_TRUE(wasLogged("stream start failed: The system gave no reason."));
  });
}

TEST_F(CaptureTest, AFailureOfTheStartIsToldAndLogged) {
  world.capture.start.failure = "There is no such display.";
  coveredLive([this] {
    EXPECT_EQ(visibleStatus(), failed);
    EXPECT_TRUE(wasLogged("stream start failed: There is no such display."));
    EXPECT_TRUE(world.runningStreams().empty());
  });
}

TEST_F(CaptureTest, AFailureOfTheOutputIsToldAndLogged) {
  for (const char* reason : {"No output.", ""}) {
    world.capture.outputFailure = reason;
    world.files.contents.clear();
    coveredLive([&] {
      EXPECT_EQ(visibleStatus(), failed);
      EXPECT_TRUE(
          wasLogged(std::string{"stream start failed: "} + (*reason != 0 ? reason : "The system gave no reason.")));
      EXPECT_TRUE(world.runningStreams().empty());
    });
  }
}

TEST_F(CaptureTest, WithoutItsDisplayAMirrorWaits) {
  world.capture.displays = {70};
  coveredLive([this] {
    EXPECT_TRUE(world.streams().empty());
    EXPECT_EQ(visibleStatus(), "Waiting for screen capture…");
  });
}

TEST_F(CaptureTest, WithoutANumberOfItsScreenAMirrorWaits) {
  world.screens.front().number = std::nullopt;
  coveredLive([this] {
    EXPECT_TRUE(world.streams().empty());
    EXPECT_EQ(visibleStatus(), "Waiting for screen capture…");
  });
}

TEST_F(CaptureTest, TheNewStreamRunsBeforeTheOldOneIsStopped) {
  coveredLive([this] {
    openOverlay(9);
    world.capture.start.isHeld = true;
    fake::advance(1.6);
    ASSERT_EQ(world.streams().size(), 2U);
    EXPECT_EQ(world.streams()[0].phase, fake::StreamPhase::running);
    EXPECT_EQ(world.streams()[1].excluded, (std::vector<std::uint32_t>{9}));
    deliver(1, {.number = 1});
    EXPECT_EQ(framesShown(), (std::vector{1}));
    world.answerHeld();
    fake::settle();
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    EXPECT_FALSE(world.streams()[0].isAlive);
    deliver(2, {.number = 2});
    EXPECT_EQ(framesShown(), (std::vector{1, 2}));
    EXPECT_TRUE(wasLogged("overlay set changed, restarting capture"));
  });
}

TEST_F(CaptureTest, ARestartThatFailsLeavesTheOldStream) {
  coveredLive([this] {
    openOverlay(9);
    world.capture.start.failure = "Too many streams.";
    fake::advance(1.6);
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
    EXPECT_FALSE(world.streams()[1].isAlive);
    EXPECT_EQ(visibleStatus(), failed);
    deliver(1, {.number = 1});
    EXPECT_EQ(visibleStatus(), "");
  });
}

TEST_F(CaptureTest, AStartThatComesTooLateIsStoppedAgain) {
  world.capture.start.isHeld = true;
  coveredLive([this] {
    EXPECT_EQ(world.runningStreams(), (std::vector{1}));
    press(keyD);
    EXPECT_EQ(world.runningStreams(), (std::vector{1})) << "its start is not answered yet";
    world.answerHeld();
    fake::settle();
    EXPECT_TRUE(world.runningStreams().empty());
    EXPECT_FALSE(world.streams()[0].isAlive);
    EXPECT_FALSE(wasLogged("stream started, excluding 0 window(s)"));
  });
}

TEST_F(CaptureTest, AListThatComesTooLateStartsNothing) {
  world.capture.content.isHeld = true;
  coveredLive([this] {
    press(keyD);
    world.answerHeld();
    fake::settle();
    EXPECT_TRUE(world.streams().empty());
  });
}

TEST_F(CaptureTest, AnswersThatNeverComeKeepNothing) {
  world.capture.content.isHeld = true;
  coveredLive([this] { EXPECT_EQ(visibleStatus(), "Waiting for screen capture…"); });
  EXPECT_TRUE(world.streams().empty());
}

TEST_F(CaptureTest, AFrameUnderWayWhenTheCoverGoesIsNotShown) {
  coveredLive([this] {
    for (int i = 0; i < 5; ++i) world.deliver(1, {.number = i});
    press(keyD);
    EXPECT_TRUE(world.windowsOnScreen().empty());
    EXPECT_TRUE(world.runningStreams().empty());
  });
}

TEST_F(CaptureTest, AStreamThatTheServiceEndsIsLogged) {
  coveredLive([this] {
    deliver(1, {.number = 1});
    world.endStream(1, "The user stopped sharing.");
    fake::settle();
    EXPECT_TRUE(wasLogged("stream stopped: The user stopped sharing."));
    EXPECT_EQ(framesShown(), (std::vector{1})) << "the last picture stays";
    // And the stop that follows is refused, which does not matter.
    press(keyD);
    EXPECT_TRUE(world.windowsOnScreen().empty());
  });
}

TEST_F(CaptureTest, AStopThatFailsDoesNotMatter) {
  coveredLive([this] {
    world.capture.stop.failure = "It is too late.";
    press(keyD);
    press(keyD);
    EXPECT_EQ(world.runningStreams(), (std::vector{2}));
    EXPECT_EQ(shownFrames().size(), 1U);
  });
}

TEST_F(CaptureTest, WindowsThatWentSinceTheListAreLeftOut) {
  openOverlay(9);
  coveredLive([this] {
    world.capture.windows.clear();
    fake::advance(1.6);
    ASSERT_EQ(world.streams().size(), 2U);
    EXPECT_TRUE(world.streams()[1].excluded.empty());
  });
}

}  // namespace
}  // namespace quillfade
