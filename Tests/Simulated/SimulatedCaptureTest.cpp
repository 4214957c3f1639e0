#include <thread>

#include "Tests/Simulated/SimulatedCaptureTest.h"

namespace quillfade {
namespace {

using platform::ShareableContent;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

TEST_F(SimulatedCaptureTest, AnswersAtTheNextTurnAndNeverInsideTheCall) {
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  EXPECT_THAT(completions, IsEmpty());
  desktop.runLoop().runOne();
  EXPECT_THAT(completions, ElementsAre("done"));
  EXPECT_TRUE(newest().isRunning());
}

TEST_F(SimulatedCaptureTest, AnswersOnAnotherThread) {
  const auto mainThread = std::this_thread::get_id();
  std::thread::id answeredOn;
  desktop.capture().shareableContent({}, [&](const auto&) { answeredOn = std::this_thread::get_id(); });
  desktop.runLoop().runUntilIdle();
  EXPECT_NE(answeredOn, std::thread::id());
  EXPECT_NE(answeredOn, mainThread);
}

TEST_F(SimulatedCaptureTest, FailsAsTold) {
  desktop.capture().startAnswering.failure = "No frames.";
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  EXPECT_THAT(completions, ElementsAre("No frames."));
  EXPECT_FALSE(newest().isRunning());
}

TEST_F(SimulatedCaptureTest, HoldsRequestsUntilTheyAreAnswered) {
  desktop.capture().contentAnswering.isHeld = true;
  std::vector<std::size_t> displays;
  for (int count = 0; count < 2; ++count) {
    desktop.capture().shareableContent({}, [&](const auto& content) { displays.push_back(content->displays.size()); });
  }
  desktop.runLoop().settle();
  EXPECT_THAT(displays, IsEmpty());
  desktop.capture().contentRequests()[1].request->answer(ShareableContent{{{1}, {2}}, {}});
  desktop.capture().contentRequests()[0].request->answer(ShareableContent{});
  EXPECT_THAT(displays, ElementsAre(2U, 0U));
}

TEST_F(SimulatedCaptureTest, DeliversFramesOnTheQueueWhileTheStreamRuns) {
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  newest().deliver(simulated::completeFrame());
  EXPECT_THAT(output->samples, IsEmpty());
  desktop.runLoop().settle();
  EXPECT_THAT(output->samples, SizeIs(1));
}

TEST_F(SimulatedCaptureTest, DeliversNoFrameAfterTheStop) {
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  newest().deliver(simulated::completeFrame());
  stream->stopCapture(noteCompletion());
  desktop.runLoop().runUntilIdle();
  desktop.runLoop().settle();
  EXPECT_THAT(output->samples, IsEmpty());
}

TEST_F(SimulatedCaptureTest, AStreamEndsWithItsHandle) {
  auto stream = makeStream();
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  stream = nullptr;
  EXPECT_FALSE(newest().isRunning());
  EXPECT_FALSE(newest().isHeld());
}

TEST_F(SimulatedCaptureTest, AStreamThatStopsByItselfTellsItsDelegateAndRefusesToStopAgain) {
  const auto stream = makeStream();
  stream->startCapture(noteCompletion());
  desktop.runLoop().settle();
  newest().stopWithError("Gone.");
  EXPECT_EQ(output->stopped, "Gone.");
  stream->stopCapture(noteCompletion());
  desktop.runLoop().settle();
  EXPECT_THAT(completions, ElementsAre("done", "The stream has already stopped."));
}

}  // namespace
}  // namespace quillfade
