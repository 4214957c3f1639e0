// How streams begin, end and fail.

#include "Tests/Linux/Stream/CaptureStreamFixture.h"

namespace platform::linux::stream {
namespace {

TEST_F(CaptureStreamTest, FramesFollowAStormOfChanges) {
  const auto stream = startAndRead();
  std::atomic<bool> isEnough = false;
  std::thread other([&] {
    scene::WindowStorm storm(client, 31);
    for (int change = 0; !isEnough; ++change) {
      storm.change();
      if (change % 8 == 0) client.sync();
    }
    client.sync();
  });
  for (int frames = 0; frames < 40; ++frames) {
    const auto frame = receiver->take();
    if (frame != nullptr) reader.read(*frame);
  }
  isEnough = true;
  other.join();
  EXPECT_TRUE(waitUntil([&] {
    if (const auto frame = receiver->take(50ms)) reader.read(*frame);
    return shown() == screen();
  })) << shown().differences(screen())
      << " pixels differ";
}

TEST_F(CaptureStreamTest, NoFrameArrivesAfterTheCompletionOfTheStop) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto stream = startAndRead();
  ASSERT_TRUE(stop(*stream).has_value());
  const std::size_t before = receiver->arrivals().size();
  client.fill(window, {0, 0, 20, 20}, 0xff0000);
  client.sync();
  EXPECT_FALSE(waitUntil([&] { return receiver->arrivals().size() > before; }, 200ms));
}

TEST_F(CaptureStreamTest, AFrameThatIsReadAfterTheStopDoesNoHarm) {
  client.createWindow({.frame = {100, 50, 120, 90}, .color = 0x3355aa});
  client.sync();
  auto stream = startAndRead();
  const Picture then = shown();
  auto frame = frameOfDrawing(client.createWindow({.frame = {100, 50, 120, 90}}), {0, 0, 20, 20});
  ASSERT_NE(frame, nullptr);
  ASSERT_TRUE(stop(*stream).has_value());
  stream.reset();
  reader.read(*frame);
  frame->requestWhole();
  // The stream's connection goes with the frame, while the reader's requests may still be on their way.
  frame.reset();
  EXPECT_EQ(shown().differences(then), 0U) << "the windows' pixels went with the stream";
}

TEST_F(CaptureStreamTest, AFrameThatIsKeptAfterTheStopReceivesNothingMoreFromTheServer) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto eventsSelected = [&] {
    const auto attributes = xcb::awaitReply(keeper->get(), xcb_get_window_attributes_reply,
                                            xcb_get_window_attributes(keeper->get(), keeper->root()));
    return attributes->all_event_masks;
  };
  auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  EXPECT_TRUE(waitUntil([&] { return eventsSelected() != 0; }));
  stream.reset();
  EXPECT_TRUE(waitUntil([&] { return eventsSelected() == 0; }));
  client.fill(window, {0, 0, 20, 20}, 0xff0000);
  client.sync();
  reader.read(*frame);
  EXPECT_TRUE(reader.synchronize());
}

TEST_F(CaptureStreamTest, AStreamMayBeDestroyedWithoutBeingStopped) {
  for (int round = 0; round < 10; ++round) {
    auto stream = makeStream();
    std::atomic<bool> isStarted = false;
    stream->startCapture([&](const Result&) { isStarted = true; });
    if (round % 2 == 0) {
      EXPECT_TRUE(waitUntil([&] { return isStarted.load(); }));
    }
    // Destroying it waits for the completion, if that has not come yet.
    stream.reset();
  }
}

TEST_F(CaptureStreamTest, AStreamMayBeDestroyedOnItsOwnThread) {
  auto stream = makeStream();
  CaptureStream& object = *stream;
  std::promise<void> hasReturned;
  std::promise<void> isGone;
  object.startCapture([held = std::move(stream), &hasReturned, &isGone](const Result& result) mutable {
    EXPECT_TRUE(result.has_value());
    hasReturned.get_future().wait();
    held.reset();
    isGone.set_value();
  });
  hasReturned.set_value();
  EXPECT_EQ(isGone.get_future().wait_for(10s), std::future_status::ready);
}

TEST_F(CaptureStreamTest, AStreamThatNeverStartedCanBeStopped) {
  const auto stream = makeStream();
  EXPECT_TRUE(stop(*stream).has_value());
  EXPECT_TRUE(stop(*stream).has_value());
}

TEST_F(CaptureStreamTest, TwoStreamsOfTheSameAreaCoexist) {
  const auto window = client.createWindow({.frame = {100, 50, 120, 90}});
  client.sync();
  const auto older = startAndRead();
  const auto newer = startAndRead();
  ASSERT_TRUE(stop(*older).has_value());
  // The older one may have noticed that the newer one examined the wallpaper, but that shows nothing new.
  while (const auto late = receiver->take(100ms)) EXPECT_LE(late->streamSerial(), settings.serial);
  client.fill(window, {0, 0, 20, 20}, 0xff0000);
  client.sync();
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  EXPECT_EQ(frame->streamSerial(), settings.serial);
  reader.read(*frame);
  EXPECT_EQ(shown().differences(screen()), 0U);
}

TEST_F(CaptureStreamTest, ALostServerIsReported) {
  const auto stream = startAndRead();
  server.kill();
  ASSERT_TRUE(waitUntil([&] { return receiver->stopped().has_value(); }));
  EXPECT_EQ(*receiver->stopped(), "The connection to the display server was lost.");
  EXPECT_TRUE(stop(*stream).has_value());
}

TEST_F(CaptureStreamTest, AFrameMayOutliveTheServer) {
  const auto stream = makeStream();
  ASSERT_TRUE(start(*stream).has_value());
  const auto frame = receiver->take();
  ASSERT_NE(frame, nullptr);
  server.kill();
  ASSERT_TRUE(waitUntil([&] { return receiver->stopped().has_value(); }));
  EXPECT_TRUE(frame->beginReading(reader.connection().get()));
  frame->endReading(reader.connection().get());
}

TEST_F(CaptureStreamTest, AnUnreachableServerIsReportedInASentence) {
  settings.displayName = ":4711";
  const auto stream = makeStream();
  const Result result = start(*stream);
  ASSERT_FALSE(result.has_value());
  EXPECT_THAT(result.error().localizedDescription, HasSubstr(":4711"));
  EXPECT_TRUE(stop(*stream).has_value());
}

TEST_F(CaptureStreamTest, AMissingExtensionIsReportedInASentence) {
  const support::XServer poor{{.width = 400, .height = 300, .depth = 24, .arguments = {"-extension", "Composite"}}};
  settings.displayName = poor.display();
  const auto stream = makeStream();
  const Result result = start(*stream);
  ASSERT_FALSE(result.has_value());
  EXPECT_EQ(result.error().localizedDescription,
            "This display lacks the X extension Composite, without which nothing can be captured.");
}

TEST_F(CaptureStreamTest, AnEmptyOrOversizedAreaIsReportedInASentence) {
  settings.source.width = 0;
  EXPECT_EQ(start(*makeStream()).error().localizedDescription, "The area to show is empty.");
  settings.source.width = 1 << 20;
  EXPECT_EQ(start(*makeStream()).error().localizedDescription,
            "The area to show is larger than the display server can handle.");
}

TEST_F(CaptureStreamTest, SoundCannotBeCaptured) {
  const auto stream = makeStream();
  EXPECT_FALSE(stream->addOutput(receiver, StreamOutputType::audio, queue).has_value());
}

}  // namespace
}  // namespace platform::linux::stream
