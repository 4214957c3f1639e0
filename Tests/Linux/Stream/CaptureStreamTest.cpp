#include "Tests/Linux/Stream/CaptureStreamFixture.h"

namespace platform::linux::stream {
namespace {

TEST_F(CaptureStreamTest, TheFirstFrameIsTheWholePicture) {
  client.createWindow({.frame = {100, 50, 120, 90}, .color = 0xff0000, .border = 3});
  client.sync();
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  EXPECT_TRUE(frame->isValid());
  EXPECT_TRUE(frame->isWhole());
  EXPECT_EQ(frame->attachments()->front().status, 0);
  EXPECT_EQ(frame->width(), area.width);
  EXPECT_EQ(frame->height(), area.height);
  EXPECT_EQ(frame->streamSerial(), settings.serial);
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, AChangeArrivesAndOnlyTheChangedPartIsNamed) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = startAndRead();
  client.fill(window, {10, 20, 30, 5}, 0x00ff00);
  client.sync();
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  EXPECT_FALSE(frame->isWhole());
  const auto region = xcb::awaitReply(keeper->get(), xcb_xfixes_fetch_region_reply,
                                      xcb_xfixes_fetch_region(keeper->get(), frame->changedRegion()));
  ASSERT_EQ(xcb_xfixes_fetch_region_rectangles_length(region.get()), 1);
  const xcb_rectangle_t changed = *xcb_xfixes_fetch_region_rectangles(region.get());
  EXPECT_EQ((xcb::PixelRect{changed.x, changed.y, changed.width, changed.height}),
            (xcb::PixelRect{100 + 10 - area.x, 50 + 20 - area.y, 30, 5}));
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, NothingArrivesWhileNothingChanges) {
  client.createWindow({.frame = {100, 50, 120, 90}});
  client.createWindow({.frame = {300, 200, 120, 90}, .depth = 32});
  client.sync();
  const auto stream = startAndRead();
  EXPECT_EQ(receiver->take(400ms), nullptr);
}

TEST_F(CaptureStreamTest, DrawingOutsideTheAreaBringsNoFrame) {
  const auto window = client.createWindow({.frame = {0, 0, 400, 300}});
  client.sync();
  const auto stream = startAndRead();
  client.fill(window, {0, 0, 400, area.y}, 0x123456);
  client.sync();
  EXPECT_EQ(receiver->take(200ms), nullptr);
  client.fill(window, {0, 0, 400, area.y + 1}, 0x654321);
  client.sync();
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, ABusyClientBringsNoMoreFramesThanTheIntervalAllows) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = startAndRead();
  for (int frames = 0; frames < 20; ++frames) {
    const auto frame = frameOfDrawing(window, {0, 0, 120, 90});
    ASSERT_NE(frame, nullptr);
    reader.read(*frame);
  }
  const auto arrivals = receiver->arrivals();
  ASSERT_GE(arrivals.size(), 21U);
  // One frame is in reserve. Delivering a frame takes a varying moment, so the limit is applied to the sum.
  EXPECT_GE(arrivals.back() - arrivals.front(), settings.minimumFrameInterval * (arrivals.size() - 2) - 20ms);
}

TEST_F(CaptureStreamTest, ABusyClientGetsAlmostAllTheFramesThatTheIntervalAllows) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  settings.minimumFrameInterval = 100ms;
  const auto stream = startAndRead();
  const auto begin = std::chrono::steady_clock::now();
  for (int frames = 0; frames < 10; ++frames) {
    const auto frame = frameOfDrawing(window, {0, 0, 120, 90});
    ASSERT_NE(frame, nullptr);
    reader.read(*frame);
  }
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 2s);
}

TEST_F(CaptureStreamTest, TheNextFrameWaitsUntilTheLastOneIsReturned) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto first = receiver->take();
  ASSERT_NE(first, nullptr);
  client.fill(window, {0, 0, 20, 20}, 0xff0000);
  client.sync();
  EXPECT_EQ(receiver->take(200ms), nullptr);
  client.fill(window, {30, 30, 20, 20}, 0x00ff00);
  client.sync();
  reader.read(*first);
  const auto second = receiver->take();
  ASSERT_NE(second, nullptr);
  reader.read(*second);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, TheChangesOfADroppedFrameComeWithTheNext) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = startAndRead();
  client.fill(window, {0, 0, 20, 20}, 0xff0000);
  client.sync();
  ASSERT_NE(receiver->take(), nullptr);
  const auto next = frameOfDrawing(window, {50, 50, 20, 20});
  ASSERT_NE(next, nullptr);
  EXPECT_FALSE(next->isWhole());
  reader.read(*next);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, ADroppedWholeFrameIsFollowedByAWholeOne) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  ASSERT_NE(receiver->take(), nullptr);
  const auto next = frameOfDrawing(window, {0, 0, 20, 20});
  ASSERT_NE(next, nullptr);
  EXPECT_TRUE(next->isWhole());
}

TEST_F(CaptureStreamTest, AReaderThatGivesUpHalfwayBlocksNobody) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = startAndRead();
  for (std::uint32_t round = 0; round < 3; ++round) {
    auto frame = frameOfDrawing(window, {0, 0, 20, 20});
    ASSERT_NE(frame, nullptr);
    ASSERT_TRUE(frame->beginReading(reader.connection().get()));
    // Its requests go out only after the stream has gone on.
    if (round == 1) reader.connection().flush();
    frame.reset();
    const auto next = frameOfDrawing(window, {40, 40, 20, 20});
    ASSERT_NE(next, nullptr);
    reader.read(*next);
    EXPECT_EQ(shown().differences(screen()), 0U) << "round " << round;
  }
}

TEST_F(CaptureStreamTest, TheNextFrameCorrectsAWindowThatWentBeforeItsFrameWasRead) {
  const auto stream = startAndRead();
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}, .color = 0x3355aa});
  client.sync();
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  client.setFrame(window, {90, 40, 150, 130});
  client.sync();
  reader.read(*frame);
  EXPECT_TRUE(waitUntil([&] {
    if (const auto next = receiver->take(50ms)) reader.read(*next);
    return shown() == screen();
  }));
}

TEST_F(CaptureStreamTest, AFrameIsReadOnce) {
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  reader.read(*frame);
  EXPECT_FALSE(frame->beginReading(reader.connection().get()));
  EXPECT_TRUE(reader.synchronize());
}

TEST_F(CaptureStreamTest, AWholeFrameCanBeAskedForWhileNothingChanges) {
  client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto first = receiver->take();
  ASSERT_NE(first, nullptr);
  reader.read(*first);
  first->requestWhole();
  const auto second = receiver->take();
  ASSERT_NE(second, nullptr);
  EXPECT_TRUE(second->isWhole());
  reader.read(*second);
  EXPECT_EQ(shown().differences(screen()), 0U);
  EXPECT_EQ(receiver->take(200ms), nullptr);
}

TEST_F(CaptureStreamTest, WindowsThatAreLeftOutAreNotInTheFrames) {
  client.createWindow({.frame = {60, 60, 120, 90}, .color = 0x00ff00});
  client.sync();
  const Picture without = screen();
  const auto overlay = client.createWindow({.frame = {50, 50, 200, 90}, .color = 0xff0000});
  client.sync();
  settings.excludedWindows = {overlay};
  const auto stream = startAndRead();
  EXPECT_EQ(shown().differences(without), 0U);
}

TEST_F(CaptureStreamTest, ALargeNewWindowIsInNoFrameBeforeItIsAdmitted) {
  settings.holdBack = {.fromArea = 10'000, .admitted = {}};
  const auto stream = startAndRead();
  const auto small = client.createWindow({.frame = {60, 50, 20, 20}, .color = 0x00ff00});
  const auto large = client.createWindow({.frame = {100, 50, 150, 150}, .color = 0xff00ff});
  // Each frame follows a drawing, long after the large window appeared.
  for (int times = 0; times < 3; ++times) {
    reader.read(*frameOfDrawing(small, {0, 0, 10, 10}));
    EXPECT_EQ(shown().count(0xff00ff), 0U);
  }
  stream->admit({large});
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);

  client.unmap(large);
  client.map(large);
  client.sync();
  reader.read(*frameOfDrawing(small, {0, 0, 10, 10}));
  EXPECT_EQ(shown().count(0xff00ff), 0U) << "a window that comes again is judged again";
}

TEST_F(CaptureStreamTest, AWindowThatWasJudgedBeforeIsNotHeldBack) {
  const auto large = client.createWindow({.frame = {100, 50, 150, 150}, .color = 0xff00ff});
  client.sync();
  settings.holdBack = {.fromArea = 10'000, .admitted = {large}};
  startAndRead();
  EXPECT_EQ(shown().differences(screen()), 0U);
  EXPECT_GT(shown().count(0xff00ff), 0U);
}

TEST_F(CaptureStreamTest, AnUnannouncedBackgroundIsShownWhenTheStreamIsTold) {
  const auto stream = startAndRead();
  client.setBackground(client.root(), 0x717273);
  client.sync();
  stream->backgroundChanged();
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

}  // namespace
}  // namespace platform::linux::stream
