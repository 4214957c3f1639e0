// How frames come to an overlay window, and which stream has it.

#include "Tests/Linux/Cover/OverlayWindowFixture.h"

namespace platform::linux::cover {
namespace {

TEST_F(OverlayWindowOnX, AFrameIsShownExactlyAndLaterOnesWhereTheyChange) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
  // Outside the change, the window keeps what it shows.
  client_.fill(window_->id(), {0, 0, 10, 10}, 0xFFFF0000);
  client_.sync();
  EXPECT_TRUE(window_->presentFrame(source.paint({50, 60, 20, 30}, 0xFFFFFF)));
  const support::Picture shown = picture();
  EXPECT_EQ(shown.count(0xFFFFFF), std::size_t{20} * 30);
  EXPECT_EQ(shown.count(0xFFFFFF, {50, 60, 20, 30}), std::size_t{20} * 30);
  EXPECT_EQ(shown.count(0xFF0000), 100U);
}

TEST_F(OverlayWindowOnX, BorderAndLabelDoNotAddUpOverManyFrames) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.border = {.width = 1, .color = halfWhite};
  appearance.label = label("Waiting");
  show(appearance);
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  const support::Picture first = picture();
  EXPECT_TRUE(isHalfWhiteOver(first.at(0, 0), greenPixel));
  // Frames that partly touch the border and the label.
  for (const xcb::PixelRect& part :
       {xcb::PixelRect{0, 0, 50, 50}, {0, 0, 30, 300}, {190, 140, 30, 20}, {100, 100, 300, 200}}) {
    EXPECT_TRUE(window_->presentFrame(source.paint(part, green)));
    EXPECT_EQ(picture(), first);
  }
}

TEST_F(OverlayWindowOnX, HidingTheLabelAsksForAWholeFrame) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.label = label("Waiting");
  show(appearance);
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  EXPECT_FALSE(source.takeWholeRequest());
  appearance.label.reset();
  window_->setAppearance(appearance);
  EXPECT_TRUE(source.takeWholeRequest());
  EXPECT_TRUE(window_->presentFrame(source.paint({0, 0, 1, 1}, green, true)));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, AnExposedPartIsRequestedAgain) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  settle();
  (void)source.takeWholeRequest();
  window_->orderOut();
  window_->orderFront(std::nullopt);
  settle();
  EXPECT_TRUE(source.takeWholeRequest());
}

TEST_F(OverlayWindowOnX, WhereSomethingLayAboveThePictureNoBackgroundFlashes) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  const auto menu = client_.createWindow({.frame = place, .color = 0xff654321});
  client_.sync();
  EXPECT_EQ(picture().count(0x654321), std::size_t{400} * 300);
  client_.destroy(menu);
  client_.sync();
  EXPECT_EQ(picture().count(bluePixel), 0U);
  EXPECT_TRUE(source.takeWholeRequest());
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green, true)));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, AFrameOfAnotherSizeIsStretched) {
  show(mirrorAppearance());
  Source source(server_.display(), 200, 150, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint({0, 0, 200, 150}, green, true)));
  EXPECT_FALSE(window_->presentFrame(source.paint({0, 0, 100, 150}, 0xFFFFFF))) << "a part cannot be stretched";
  EXPECT_TRUE(source.takeWholeRequest());
  EXPECT_TRUE(window_->presentFrame(source.paint({0, 0, 1, 1}, 0xFFFFFF, true)));
  const support::Picture shown = picture();
  EXPECT_EQ(shown.at(0, 0), 0xFFFFFFU);
  EXPECT_EQ(shown.at(190, 299), 0xFFFFFFU);
  EXPECT_EQ(shown.at(210, 0), greenPixel);
  EXPECT_EQ(shown.at(399, 299), greenPixel);
  EXPECT_EQ(shown.count(bluePixel), 0U);
}

TEST_F(OverlayWindowOnX, ALateFrameOfAnOlderStreamIsDropped) {
  show(mirrorAppearance());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  const auto late = older.paint(inside, 0xFFFFFF);
  EXPECT_TRUE(window_->presentFrame(newer.paint(inside, green)));
  EXPECT_FALSE(window_->presentFrame(late));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, WhenANewerStreamEndsTheOneBeforeItIsAskedForTheWholePicture) {
  show(mirrorAppearance());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF)));
  EXPECT_TRUE(window_->presentFrame(newer.paint(inside, green)));
  EXPECT_FALSE(window_->presentFrame(older.paint(inside, 0xFFFFFF))) << "The newer one still runs.";
  EXPECT_FALSE(older.takeWholeRequest());
  newer.end();
  EXPECT_TRUE(older.takeWholeRequest());
  EXPECT_FALSE(window_->presentFrame(older.paint({0, 0, 10, 10}, 0xFFFFFF))) << "A part, over another one's picture.";
  EXPECT_TRUE(older.takeWholeRequest());
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF, true)));
  EXPECT_EQ(picture().count(0xFFFFFF), std::size_t{400} * 300);
  EXPECT_TRUE(older.paintLive({0, 0, 10, 10}, green));
}

TEST_F(OverlayWindowOnX, TheFirstFrameOfAStreamThatHasEndedAlreadyHandsOnAtOnce) {
  show(mirrorAppearance());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF)));
  const auto late = newer.paint(inside, green, true);
  newer.end();
  EXPECT_TRUE(window_->presentFrame(late));
  EXPECT_TRUE(older.takeWholeRequest());
}

TEST_F(OverlayWindowOnX, OfThreeStreamsTheOldestIsAskedWhenTheOthersHaveEnded) {
  show(mirrorAppearance());
  Source oldest(server_.display(), 400, 300, 1);
  Source second(server_.display(), 400, 300, 2);
  Source third(server_.display(), 400, 300, 3);
  EXPECT_TRUE(window_->presentFrame(oldest.paint(inside, 0xFFFFFF)));
  EXPECT_TRUE(window_->presentFrame(second.paint(inside, green)));
  EXPECT_TRUE(window_->presentFrame(third.paint(inside, 0xFF0000)));
  second.end();
  (void)oldest.takeWholeRequest();
  third.end();
  EXPECT_TRUE(oldest.takeWholeRequest());
  window_->orderOut();
  window_->orderFront(std::nullopt);
  settle();
  EXPECT_TRUE(oldest.takeWholeRequest()) << "A part that comes into view is asked of the stream that runs.";
}

TEST_F(OverlayWindowOnX, TheWholePictureOfAnOlderStreamShowsOverThatOfOneThatHasEnded) {
  show(mirrorAppearance());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  EXPECT_TRUE(window_->presentFrame(newer.paint(inside, green)));
  newer.end();
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF, true)));
  EXPECT_EQ(picture().count(0xFFFFFF), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, WithoutAPictureLayerFramesAreDropped) {
  show({.background = blue, .picture = {}, .label = {}, .border = {}});
  Source source(server_.display(), 400, 300, 1);
  EXPECT_FALSE(window_->presentFrame(source.paint(inside, green)));
  EXPECT_EQ(picture().count(bluePixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, ForgettingTheFramesUncoversTheBackground) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  window_->forgetFrames();
  EXPECT_EQ(picture().count(bluePixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, PresentingWaitsForNothing) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  const auto frame = source.paint(inside, green);
  settle();
  // Nobody answers while the server is grabbed, so waiting would never end.
  xcb_grab_server(client_.connection());
  client_.sync();
  EXPECT_TRUE(window_->presentFrame(frame));
  xcb_ungrab_server(client_.connection());
  client_.sync();
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, OnceAFrameIsShownTheStreamPaintsByItself) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.border = {.width = 3, .color = halfWhite};
  show(appearance);
  Source source(server_.display(), 400, 300, 1);
  EXPECT_FALSE(source.paintLive(inside, green)) << "nobody has shown a frame yet";
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  const auto target = source.paintLive({50, 60, 20, 30}, 0xFFFFFF);
  ASSERT_TRUE(target);
  EXPECT_EQ(target->window, window_->id());
  EXPECT_EQ(target->x, 0);
  EXPECT_EQ(target->y, 0);
  EXPECT_EQ(target->windowWidth, 400);
  EXPECT_EQ(target->windowHeight, 300);
  EXPECT_EQ(target->border, appearance.border);
  EXPECT_TRUE(waitUntil([&] { return picture().count(0xFFFFFF, {50, 60, 20, 30}) == std::size_t{20} * 30; }));
}

TEST_F(OverlayWindowOnX, UnderALabelThePictureComesFrameByFrame) {
  OverlayAppearance appearance = mirrorAppearance();
  appearance.label = label("Waiting");
  show(appearance);
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  EXPECT_FALSE(source.paintLive(inside, green));
}

TEST_F(OverlayWindowOnX, AStretchedPictureComesFrameByFrame) {
  show(mirrorAppearance());
  Source source(server_.display(), 200, 150, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint({0, 0, 200, 150}, green, true)));
  EXPECT_FALSE(source.paintLive({0, 0, 200, 150}, green));
}

TEST_F(OverlayWindowOnX, AnotherAppearanceOrSizeEndsThePaintingOfTheStream) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  OverlayAppearance appearance = mirrorAppearance();
  appearance.border = {.width = 1, .color = halfWhite};
  window_->setAppearance(appearance);
  EXPECT_FALSE(source.paintLive(inside, green));
  EXPECT_TRUE(source.takeWholeRequest());
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green, true)));
  EXPECT_TRUE(source.paintLive(inside, green));
  window_->setFrame({200, 100, 300, 300});
  EXPECT_FALSE(source.paintLive(inside, green));
}

TEST_F(OverlayWindowOnX, AFrameOfANewerStreamEndsThePaintingOfTheOlder) {
  show(mirrorAppearance());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF)));
  EXPECT_TRUE(older.paintLive(inside, 0xFFFFFF));
  EXPECT_TRUE(window_->presentFrame(newer.paint(inside, green)));
  EXPECT_FALSE(older.paintLive(inside, 0xFFFFFF));
  EXPECT_TRUE(newer.paintLive({0, 0, 1, 1}, green));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

// The server serves its clients in an order of its own. While it is grabbed, much piles up on both connections.
TEST_F(OverlayWindowOnX, WhatTheStreamHasPaintedNeverShowsOverWhatCameLater) {
  show(mirrorAppearance());
  Source source(server_.display(), 400, 300, 1);
  for (int round = 0; round < 50; ++round) {
    ASSERT_TRUE(window_->presentFrame(source.paint(inside, green, true)));
    ASSERT_TRUE(source.paintLive(inside, 0xFF0000)) << "round " << round;
    settle();
    xcb_grab_server(client_.connection());
    client_.sync();
    for (int i = 0; i < 20; ++i) ASSERT_TRUE(source.paintLive(inside, 0xFF0000 + static_cast<std::uint32_t>(i)));
    window_->forgetFrames();
    connection_->flush();
    xcb_ungrab_server(client_.connection());
    client_.sync();
    ASSERT_EQ(picture().count(bluePixel), std::size_t{400} * 300) << "round " << round;
  }
}

}  // namespace
}  // namespace platform::linux::cover
