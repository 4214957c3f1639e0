#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using platform::Rect;
using simulated::StreamPhase;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class CaptureStart : public MirrorTest {
 protected:
  // The configuration of a mirror over this rectangle, with this one screen.
  platform::StreamConfiguration configurationFor(const Rect& target, const platform::Screen& screen) {
    desktop.arrangeScreens({screen});
    mirror->show(target, false);
    desktop.runLoop().settle();
    return newestStream()->configuration();
  }
};

TEST_F(CaptureStart, OnScreenWindowsAndTheDesktopAreAskedFor) {
  showAndStart();
  ASSERT_EQ(desktop.capture().contentRequests().size(), 1U);
  const platform::ShareableContentOptions expected{.excludingDesktopWindows = false, .onScreenWindowsOnly = true};
  EXPECT_EQ(desktop.capture().contentRequests().front().options, expected);
}

TEST_F(CaptureStart, TheStreamLeavesTheOverlaysOutOfTheDisplay) {
  desktop.capture().content.windows = {listedWindow(7, "org.example.notes", 500),
                                       listedWindow(3, "org.example.text", 0),
                                       listedWindow(5, desktop.process().identifier, 0)};
  showAndStart();
  ASSERT_EQ(streams().size(), 1U);
  EXPECT_EQ(newestStream()->filter().display.displayID, 1U);
  std::vector<std::uint32_t> numbers;
  for (const auto& each : newestStream()->filter().excludingWindows) numbers.push_back(each.windowID);
  EXPECT_THAT(numbers, ElementsAre(7U, 5U));
  EXPECT_EQ(mirror->currentExclusionKey(), "5,7");
}

TEST_F(CaptureStart, TheMirrorIsTheStreamsScreenOutputAndDelegate) {
  showAndStart();
  ASSERT_EQ(newestStream()->outputs().size(), 1U);
  const auto& output = newestStream()->outputs().front();
  EXPECT_EQ(output.receiver.lock(), mirror);
  EXPECT_EQ(output.type, platform::StreamOutputType::screen);
  EXPECT_EQ(output.queue, desktop.runLoop().liveQueues().front());
  EXPECT_EQ(newestStream()->delegate(), mirror);
}

TEST_F(CaptureStart, AStartedStreamBecomesTheMirrorsAndIsLogged) {
  openOverlay(7);
  showAndStart();
  EXPECT_NE(mirror->stream(), nullptr);
  EXPECT_THAT(desktop.capture().runningStreams(), ElementsAre(newestStream()));
  EXPECT_THAT(logMessages(),
              ElementsAre("show region=800x300 at 100,200 permission=true",
                          R"(high-layer candidates: ["org.example.notes/layer500/1440x900"])",
                          R"(excluded: ["org.example.notes/layer500"])", "stream started, excluding 1 window(s)"));
}

TEST_F(CaptureStart, TheCandidatesAreLoggedBeforeTheStreamIsMade) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  ASSERT_THAT(logMessages(), ElementsAre(StartsWith("show region="), "high-layer candidates: []", "excluded: []"));
  const Strings entries = desktop.record().entries();
  const auto made = entries.begin() + static_cast<std::ptrdiff_t>(placeOf("stream 1: make"));
  // The first line created the file.
  EXPECT_EQ(std::count(entries.begin(), made, "files: append " + std::string(logPath)), 2);
}

TEST_F(CaptureStart, TheConfigurationIsFixed) {
  showAndStart();
  const platform::StreamConfiguration expected{.sourceRect = {100, 400, 800, 300},
                                               .width = 1600,
                                               .height = 600,
                                               .minimumFrameInterval = {1, 30},
                                               .pixelFormat = platform::PixelFormat::bgra32,
                                               .showsCursor = true,
                                               .queueDepth = 6};
  EXPECT_EQ(newestStream()->configuration(), expected);
  EXPECT_EQ(static_cast<std::uint32_t>(platform::PixelFormat::bgra32), 0x42475241U);
}

TEST_F(CaptureStart, TheSourceRectangleCountsFromTheScreensTopLeftCorner) {
  const auto configuration = configurationFor({{100, 200}, {500, 300}}, {{{0, 0}, {1440, 900}}, 1, 1});
  EXPECT_EQ(configuration.sourceRect, (platform::DisplayRect{100, 400, 500, 300}));
}

TEST_F(CaptureStart, TheSourceRectangleIsRelativeToAScreenAwayFromTheOrigin) {
  const auto configuration = configurationFor({{-1900, -150}, {200, 100}}, {{{-1920, -180}, {1920, 1080}}, 1, 1});
  EXPECT_EQ(configuration.sourceRect, (platform::DisplayRect{20, 950, 200, 100}));
}

TEST_F(CaptureStart, PixelSizesRoundHalvesAwayFromZero) {
  const auto configuration = configurationFor({{0, 0}, {100.25, 50.25}}, {{{0, 0}, {1440, 900}}, 1, 2});
  EXPECT_EQ(configuration.width, 201);
  EXPECT_EQ(configuration.height, 101);
}

TEST_F(CaptureStart, FractionalScaleFactorsCount) {
  const auto configuration = configurationFor({{0, 0}, {1001, 333}}, {{{0, 0}, {1440, 900}}, 1, 1.25});
  EXPECT_EQ(configuration.width, 1251);
  EXPECT_EQ(configuration.height, 416);
}

TEST_F(CaptureStart, TheDisplayIsThatOfTheScreenUnderTheCentre) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 11, 2}, {{{1440, 0}, {1920, 1080}}, 22, 1}});
  mirror->show({{1500, 0}, {300, 300}}, false);
  desktop.runLoop().settle();
  EXPECT_EQ(newestStream()->filter().display.displayID, 22U);
  EXPECT_EQ(newestStream()->configuration().width, 300);
}

TEST_F(CaptureStart, TheScreenIsChosenWhenTheContentArrives) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  // Large on the old screen, small on the new one.
  openOverlay(7);
  desktop.arrangeScreens({{{{0, 0}, {9000, 9000}}, 22, 1}});
  contentRequest(0)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  ASSERT_EQ(streams().size(), 1U);
  EXPECT_EQ(newestStream()->filter().display.displayID, 22U);
  EXPECT_THAT(newestStream()->filter().excludingWindows, IsEmpty());
  EXPECT_EQ(newestStream()->configuration().width, 800);
}

TEST_F(CaptureStart, ATargetOnNoScreenFallsBackToTheMainScreen) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 11, 2}, {{{1440, 0}, {1920, 1080}}, 22, 1}});
  desktop.screens().setMain(desktop.screens().all().back());
  mirror->show({{-5000, -5000}, {300, 300}}, false);
  desktop.runLoop().settle();
  EXPECT_EQ(newestStream()->filter().display.displayID, 22U);
}

TEST_F(CaptureStart, WithoutAScreenItEndsSilently) {
  desktop.arrangeScreens({});
  showAndStart();
  EXPECT_THAT(streams(), IsEmpty());
  EXPECT_EQ(visibleStatus(), waitingText);
  EXPECT_EQ(logMessages().size(), 1U);
}

TEST_F(CaptureStart, WithoutADisplayNumberItEndsSilently) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, std::nullopt, 2}});
  showAndStart();
  EXPECT_THAT(streams(), IsEmpty());
  EXPECT_EQ(logMessages().size(), 1U);
}

TEST_F(CaptureStart, WithoutADisplayOfThatNumberItEndsSilently) {
  desktop.capture().content.displays = {{2}, {3}};
  showAndStart();
  EXPECT_THAT(streams(), IsEmpty());
  EXPECT_EQ(visibleStatus(), waitingText);
  EXPECT_EQ(logMessages().size(), 1U);
  EXPECT_EQ(mirror->currentExclusionKey(), "");
}

TEST_F(CaptureStart, AFailingContentRequestIsLoggedAndShown) {
  desktop.capture().contentAnswering.failure = "Capturing is not permitted.";
  showAndStart();
  EXPECT_EQ(visibleStatus(), failureText);
  EXPECT_EQ(logMessages().back(), "stream start failed: Capturing is not permitted.");
  EXPECT_THAT(streams(), IsEmpty());
}

TEST_F(CaptureStart, AnOutputThatCannotBeAddedIsLoggedAndShown) {
  openOverlay(7);
  desktop.capture().addOutputFailure = "No output.";
  showAndStart();
  EXPECT_EQ(visibleStatus(), failureText);
  EXPECT_EQ(logMessages().back(), "stream start failed: No output.");
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_FALSE(newestStream()->isHeld());
  EXPECT_EQ(newestStream()->phase(), StreamPhase::made);
}

TEST_F(CaptureStart, ACaptureThatDoesNotStartIsLoggedAndShown) {
  desktop.capture().startAnswering.failure = "No frames.";
  showAndStart();
  EXPECT_EQ(visibleStatus(), failureText);
  EXPECT_EQ(logMessages().back(), "stream start failed: No frames.");
  EXPECT_EQ(mirror->stream(), nullptr);
  EXPECT_FALSE(newestStream()->isHeld());
}

TEST_F(CaptureStart, AFailedStartKeepsItsExclusionKeyAndIsNotRetried) {
  openOverlay(7);
  desktop.capture().startAnswering.failure = "No frames.";
  showAndStart();
  EXPECT_EQ(mirror->currentExclusionKey(), "7");
  desktop.runLoop().advance(15);
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(CaptureStart, TheFailureTextIsSetOnALaterTurnOfTheMainQueue) {
  desktop.capture().contentAnswering.isHeld = true;
  show();
  desktop.runLoop().settle();
  contentRequest(0)->fail("No.");
  EXPECT_EQ(visibleStatus(), waitingText);
  desktop.runLoop().runOne();
  EXPECT_EQ(logMessages().back(), "stream start failed: No.");
  EXPECT_EQ(visibleStatus(), waitingText);
  desktop.runLoop().runOne();
  EXPECT_EQ(visibleStatus(), failureText);
}

TEST_F(CaptureStart, AFailureKeepsTheMirrorAliveUntilItIsShown) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  contentRequest(0)->fail("No.");
  desktop.runLoop().runOne();
  const std::weak_ptr<LiveMirror> held = mirror;
  mirror = nullptr;
  EXPECT_FALSE(held.expired());
  desktop.runLoop().runOne();
  EXPECT_TRUE(held.expired());
  EXPECT_EQ(visibleStatus(), failureText);
}

TEST_F(CaptureStart, AMirrorThatWasReleasedBeforeItsStartRanStartsNothing) {
  show();
  mirror = nullptr;
  desktop.runLoop().settle();
  EXPECT_THAT(desktop.capture().contentRequests(), IsEmpty());
}

TEST_F(CaptureStart, AStartUnderWayKeepsTheMirrorAliveToItsEnd) {
  desktop.capture().contentAnswering.isHeld = true;
  showAndStart();
  mirror->hide();
  const std::weak_ptr<LiveMirror> held = mirror;
  mirror = nullptr;
  EXPECT_FALSE(held.expired());
  contentRequest(0)->answer(desktop.capture().content);
  desktop.runLoop().settle();
  EXPECT_TRUE(held.expired());
}

TEST_F(CaptureStart, AStreamThatStopsByItselfIsOnlyLogged) {
  showAndStart();
  const auto stream = mirror->stream();
  newestStream()->stopWithError("The display went away.");
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "stream stopped: The display went away.");
  EXPECT_EQ(mirror->stream(), stream);
  EXPECT_EQ(streams().size(), 1U);
  EXPECT_EQ(visibleStatus(), waitingText);
}

TEST_F(CaptureStart, HidingReleasesEvenAStreamThatStoppedByItself) {
  showAndStart();
  newestStream()->stopWithError("The display went away.");
  mirror->hide();
  desktop.runLoop().settle();
  EXPECT_EQ(logMessages().back(), "hide");
  EXPECT_FALSE(newestStream()->isHeld());
}

TEST_F(CaptureStart, ManyStartsAtOnceLeaveOneStream) {
  show();
  for (int count = 0; count < 20; ++count) mirror->screensChanged();
  desktop.runLoop().settle();
  EXPECT_EQ(desktop.capture().runningStreams().size(), 1U);
  EXPECT_EQ(streams().size(), 1U);
}

TEST_F(CaptureStart, WorkThatNeverRunsIsDestroyedWithTheDesktop) {
  desktop.capture().startAnswering.isHeld = true;
  showAndStart();
  const std::weak_ptr<LiveMirror> held = mirror;
  mirror = nullptr;
  EXPECT_FALSE(held.expired());
  desktop.capture().drop();
  EXPECT_TRUE(held.expired());
  EXPECT_FALSE(newestStream()->isHeld());
}

using CaptureStartDeathTest = CaptureStart;

TEST_F(CaptureStartDeathTest, APixelSizeThatDoesNotFitEndsTheProcess) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 1e300}});
  EXPECT_DEATH(showAndStart(), "fatal error");
}

}  // namespace
}  // namespace quillfade
