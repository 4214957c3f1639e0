#include "Tests/Quillfade/Cover/MirrorTest.h"

namespace quillfade {
namespace {

using platform::FrameStatus;
using platform::RendererStatus;
using testing::ElementsAre;

class FrameDelivery : public MirrorTest {
 protected:
  void SetUp() override { showAndStart(); }

  void expectIgnored(const simulated::SharedSample& sample) {
    deliver(sample);
    EXPECT_EQ(framesShown(), 0U);
    EXPECT_EQ(visibleStatus(), waitingText);
    EXPECT_EQ(countLogged("first live frame received"), 0U);
  }
};

TEST_F(FrameDelivery, ACompleteFrameIsShownAndHidesTheStatus) {
  const auto sample = simulated::completeFrame();
  deliver(sample);
  EXPECT_THAT(renderer().enqueued(), ElementsAre(sample));
  EXPECT_EQ(visibleStatus(), "");
}

TEST_F(FrameDelivery, FramesAreShownInOrder) {
  const auto first = simulated::completeFrame();
  const auto second = simulated::completeFrame();
  newestStream()->deliver(first);
  newestStream()->deliver(second);
  desktop.runLoop().settle();
  EXPECT_THAT(renderer().enqueued(), ElementsAre(first, second));
}

TEST_F(FrameDelivery, AFrameReachesTheViewOnlyThroughTheMainQueue) {
  newestStream()->deliver(simulated::completeFrame());
  EXPECT_TRUE(desktop.runLoop().runSerialQueues());
  EXPECT_EQ(framesShown(), 0U);
  desktop.runLoop().runUntilIdle();
  EXPECT_EQ(framesShown(), 1U);
}

TEST_F(FrameDelivery, FramesThatAreNotCompleteAreIgnored) {
  for (const FrameStatus status :
       {FrameStatus::idle, FrameStatus::blank, FrameStatus::suspended, FrameStatus::started, FrameStatus::stopped}) {
    expectIgnored(simulated::frameWithStatus(status));
  }
}

TEST_F(FrameDelivery, AnUnknownStatusIsIgnored) {
  expectIgnored(simulated::frameWithStatus(99));
  expectIgnored(simulated::frameWithStatus(-1));
}

TEST_F(FrameDelivery, AFrameWithoutAStatusIsIgnored) { expectIgnored(simulated::frameWithoutStatus()); }

TEST_F(FrameDelivery, AFrameWithoutAttachmentsIsIgnored) { expectIgnored(simulated::frameWithoutAttachments()); }

TEST_F(FrameDelivery, AFrameWithEmptyAttachmentsIsIgnored) { expectIgnored(simulated::frameWithEmptyAttachments()); }

TEST_F(FrameDelivery, AnInvalidFrameIsIgnored) { expectIgnored(simulated::invalidFrame()); }

TEST_F(FrameDelivery, OnlyTheFirstAttachmentCounts) {
  using platform::FrameInfo;
  expectIgnored(std::make_shared<simulated::Sample>(true, std::vector{FrameInfo{1}, FrameInfo{0}}));
  deliver(std::make_shared<simulated::Sample>(true, std::vector{FrameInfo{0}, FrameInfo{1}}));
  EXPECT_EQ(framesShown(), 1U);
}

TEST_F(FrameDelivery, AnIgnoredFramePostsNothing) {
  newestStream()->deliver(simulated::frameWithStatus(FrameStatus::idle));
  desktop.runLoop().runSerialQueues();
  EXPECT_FALSE(desktop.runLoop().runOne());
}

TEST_F(FrameDelivery, OutputOtherThanTheScreenIsIgnored) {
  deliver(simulated::completeFrame(), newestStream(), platform::StreamOutputType::audio);
  EXPECT_EQ(framesShown(), 0U);
}

TEST_F(FrameDelivery, AFailedRendererIsFlushedBeforeTheFrame) {
  renderer().setStatus(RendererStatus::failed);
  desktop.record().clear();
  deliver(simulated::completeFrame());
  EXPECT_EQ(renderer().flushCount(), 1);
  EXPECT_THAT(desktop.record().startingWith("renderer"), ElementsAre("renderer: flush", "renderer: enqueue"));
}

TEST_F(FrameDelivery, ARendererThatWorksIsNotFlushed) {
  for (const auto status : {RendererStatus::unknown, RendererStatus::rendering}) {
    renderer().setStatus(status);
    deliver(simulated::completeFrame());
  }
  EXPECT_EQ(renderer().flushCount(), 0);
}

TEST_F(FrameDelivery, TheStatusIsHiddenAtEveryFrame) {
  deliver(simulated::completeFrame());
  mirror->mirrorView()->setStatus("Something went wrong.");
  deliver(simulated::completeFrame());
  EXPECT_EQ(visibleStatus(), "");
}

TEST_F(FrameDelivery, TheFirstFrameIsLoggedOncePerMirror) {
  deliver(simulated::completeFrame());
  deliver(simulated::completeFrame());
  mirror->screensChanged();
  desktop.runLoop().settle();
  deliver(simulated::completeFrame());
  EXPECT_EQ(countLogged("first live frame received"), 1U);
}

TEST_F(FrameDelivery, TheFirstFrameIsNotLoggedAgainAfterHidingAndShowing) {
  deliver(simulated::completeFrame());
  mirror->hide();
  desktop.runLoop().settle();
  showAndStart();
  deliver(simulated::completeFrame());
  EXPECT_EQ(framesShown(), 1U);
  EXPECT_EQ(countLogged("first live frame received"), 1U);
}

TEST_F(FrameDelivery, FramesOfEveryRunningStreamAreShown) {
  desktop.capture().startAnswering.isHeld = true;
  mirror->screensChanged();
  desktop.runLoop().settle();
  streams()[1]->startRequest()->answer({});
  // Both are running now: the older one has not been stopped yet.
  deliver(simulated::completeFrame(), streams()[1]);
  EXPECT_EQ(framesShown(), 1U);
}

TEST_F(FrameDelivery, AFrameOfTheReplacedStreamIsShownUntilItStops) {
  desktop.capture().stopAnswering.isHeld = true;
  mirror->screensChanged();
  desktop.runLoop().settle();
  deliver(simulated::completeFrame(), streams()[0]);
  deliver(simulated::completeFrame(), streams()[1]);
  EXPECT_EQ(framesShown(), 2U);
}

TEST_F(FrameDelivery, AFrameThatArrivesAfterHidingIsDropped) {
  newestStream()->deliver(simulated::completeFrame());
  desktop.runLoop().runSerialQueues();
  mirror->hide();
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged("first live frame received"), 0U);
}

TEST_F(FrameDelivery, AFrameThatArrivesAfterTheMirrorIsGoneIsDropped) {
  newestStream()->deliver(simulated::completeFrame());
  desktop.runLoop().runSerialQueues();
  mirror->hide();
  mirror = nullptr;
  desktop.runLoop().settle();
  EXPECT_EQ(countLogged("first live frame received"), 0U);
}

TEST_F(FrameDelivery, TheJobUnderWayHoldsTheFrame) {
  auto sample = simulated::completeFrame();
  const std::weak_ptr<const platform::SampleBuffer> held = sample;
  newestStream()->deliver(sample);
  sample = nullptr;
  desktop.runLoop().runSerialQueues();
  EXPECT_FALSE(held.expired());
  desktop.runLoop().runUntilIdle();
  EXPECT_EQ(framesShown(), 1U);
}

TEST_F(FrameDelivery, FramesOnTheWayDoNotKeepTheMirrorAlive) {
  newestStream()->deliver(simulated::completeFrame());
  desktop.runLoop().runSerialQueues();
  const std::weak_ptr<LiveMirror> held = mirror;
  mirror->hide();
  mirror = nullptr;
  EXPECT_TRUE(held.expired());
}

}  // namespace
}  // namespace quillfade
