// Streams against a real X server, read as the mirror window reads them: on a connection of the reader's own, clipped
// to what each frame says has changed.
#include "Platform/Linux/Stream/CaptureStream.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <future>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Stream/Frame.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Scene/WindowStorm.h"
#include "Tests/Support/InlineQueue.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::stream {
namespace {

using namespace std::chrono_literals;
using support::Picture;
using support::waitUntil;
using ::testing::HasSubstr;
using Result = std::expected<void, Error>;

constexpr xcb::PixelRect area{40, 30, 300, 220};

// Keeps the frames that arrive until the test takes them.
class Receiver final : public StreamOutput, public StreamDelegate {
 public:
  void streamDidOutput(std::shared_ptr<const SampleBuffer> sample, StreamOutputType type) override {
    EXPECT_EQ(type, StreamOutputType::screen);
    const std::lock_guard lock(mutex_);
    frames_.push_back(std::dynamic_pointer_cast<const Frame>(std::move(sample)));
    arrivals_.push_back(std::chrono::steady_clock::now());
  }
  void streamDidStop(const Error& error) override {
    const std::lock_guard lock(mutex_);
    stopped_ = error.localizedDescription;
  }

  // The next frame, or null at the deadline.
  std::shared_ptr<const Frame> take(std::chrono::milliseconds deadline = support::defaultDeadline) {
    std::shared_ptr<const Frame> frame;
    (void)waitUntil(
        [&] {
          const std::lock_guard lock(mutex_);
          if (frames_.empty()) return false;
          frame = std::move(frames_.front());
          frames_.erase(frames_.begin());
          return true;
        },
        deadline);
    return frame;
  }
  std::vector<std::chrono::steady_clock::time_point> arrivals() {
    const std::lock_guard lock(mutex_);
    return arrivals_;
  }
  std::optional<std::string> stopped() {
    const std::lock_guard lock(mutex_);
    return stopped_;
  }

 private:
  std::mutex mutex_;
  std::vector<std::shared_ptr<const Frame>> frames_;
  std::vector<std::chrono::steady_clock::time_point> arrivals_;
  std::optional<std::string> stopped_;
};

// Paints frames into a pixmap of its own, as a window that shows them would.
class Reader {
 public:
  explicit Reader(const std::string& display)
      : connection_(connectTo(display)), shown_(connection_->newId()), picture_(connection_->newId()) {
    xcb_connection_t* c = connection_->get();
    xcb_create_pixmap(c, connection_->rootDepth(), shown_, connection_->root(), area.width, area.height);
    xcb_render_create_picture(c, picture_, shown_, connection_->formatOfVisual(connection_->rootVisual()), 0, nullptr);
  }

  void read(const Frame& frame) {
    xcb_connection_t* c = connection_->get();
    ASSERT_TRUE(frame.beginReading(c));
    frame.paint(c, picture_, 0, 0);
    frame.endReading(c);
  }

  // False when the connection hangs.
  bool synchronize() {
    const bool isAlive = connection_->synchronize(5'000);
    while (connection_->nextEvent()) {
    }
    return isAlive;
  }

  xcb::Connection& connection() { return *connection_; }
  [[nodiscard]] xcb_pixmap_t shown() const { return shown_; }

 private:
  std::unique_ptr<xcb::Connection> connection_;
  xcb_pixmap_t shown_;
  xcb_render_picture_t picture_;
};

class CaptureStreamTest : public ::testing::Test {
 protected:
  CaptureStreamTest() {
    scene::redirectSubwindows(*keeper);
    client.setBackgroundChecks(client.root(), 7, 0x204060, 0x305070);
    client.sync();
    EXPECT_TRUE(keeper->synchronize(10'000));
    settings.displayName = server.display();
    settings.source = area;
    settings.minimumFrameInterval = 33'333'333ns;
    settings.ownClients = {reader.connection().resourceBase()};
    settings.unexpectedError = failOnError;
  }

  std::shared_ptr<CaptureStream> makeStream() {
    ++settings.serial;
    auto stream = std::make_shared<CaptureStream>(settings, receiver);
    EXPECT_TRUE(stream->addOutput(receiver, StreamOutputType::screen, queue).has_value());
    return stream;
  }

  template <typename Call>
  static Result wait(Call call) {
    std::promise<Result> promise;
    auto future = promise.get_future();
    call([&](Result result) { promise.set_value(std::move(result)); });
    if (future.wait_for(10s) != std::future_status::ready) throw std::runtime_error("There was no completion.");
    return future.get();
  }
  static Result start(CaptureStream& stream) {
    return wait([&](const CaptureStream::Completion& done) { stream.startCapture(done); });
  }
  static Result stop(CaptureStream& stream) {
    return wait([&](const CaptureStream::Completion& done) { stream.stopCapture(done); });
  }

  // A stream whose first frame was read.
  std::shared_ptr<CaptureStream> startAndRead() {
    auto stream = makeStream();
    EXPECT_TRUE(start(*stream).has_value());
    const auto first = receiver->take();
    EXPECT_NE(first, nullptr);
    reader.read(*first);
    // By now the server has carried out all that the stream sent.
    EXPECT_TRUE(reader.synchronize());
    return stream;
  }

  // Draws until there is a frame: anything drawn before the server has finished the last frame is part of that one.
  std::shared_ptr<const Frame> frameOfDrawing(xcb_window_t window, const xcb::PixelRect& part) {
    std::shared_ptr<const Frame> frame;
    EXPECT_TRUE(waitUntil([&] {
      client.fill(window, part, ++lastColor);
      client.sync();
      frame = receiver->take(50ms);
      return frame != nullptr;
    }));
    return frame;
  }

  Picture screen() { return client.screenshot(area); }
  Picture shown() {
    EXPECT_TRUE(reader.synchronize());
    return client.contents(reader.shown(), {0, 0, area.width, area.height});
  }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  std::unique_ptr<xcb::Connection> keeper = connectTo(server.display());
  Reader reader{server.display()};
  CaptureStreamSettings settings;
  std::uint32_t lastColor = 0x405060;
  std::shared_ptr<Receiver> receiver = std::make_shared<Receiver>();
  std::shared_ptr<support::InlineQueue> queue = std::make_shared<support::InlineQueue>();
};

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

TEST(CaptureStreamSettings, TheSourceIsPlacedByScaleAndSizedByTheConfiguration) {
  StreamConfiguration configuration;
  configuration.sourceRect = {100, 400, 100.25, 50.25};
  configuration.width = 201;
  configuration.height = 101;
  configuration.minimumFrameInterval = {1, 30};
  const xcb::ScreenGeometry display{.pixels = {-2880, 50, 2880, 1800}, .scale = 2, .points = {}};
  const CaptureStreamSettings settings = captureStreamSettings(configuration, display);
  EXPECT_EQ(settings.source, (xcb::PixelRect{-2680, 850, 201, 101}));
  EXPECT_EQ(settings.minimumFrameInterval, 33'333'333ns);
}

TEST(CaptureStreamSettings, NonsenseIsKeptWithinBounds) {
  StreamConfiguration configuration;
  configuration.sourceRect = {1e300, -1e300, 1, 1};
  configuration.width = -5;
  configuration.height = std::int64_t{1} << 62;
  configuration.minimumFrameInterval = {1, 0};
  const CaptureStreamSettings settings = captureStreamSettings(configuration, {});
  EXPECT_EQ(settings.source, (xcb::PixelRect{1 << 29, -(1 << 29), 0, 1 << 29}));
  EXPECT_EQ(settings.minimumFrameInterval, 0ns);
}

}  // namespace
}  // namespace platform::linux::stream
