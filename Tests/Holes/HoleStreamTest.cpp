// Streams that take ink away, against a real X server: what the port promises, and what happens to the windows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <mutex>

#include "Platform/Linux/Holes/HoleEngine.h"
#include "Platform/Linux/Holes/SeeThroughFrame.h"
#include "Tests/Holes/HolesSupport.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::holes {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Result = std::expected<void, Error>;

constexpr xcb::PixelRect area{100, 50, 120, 90};
constexpr xcb::PixelRect screen{0, 0, 400, 300};
constexpr std::size_t areaSize = std::size_t{120} * 90;
constexpr std::uint32_t boardColor = 0x204060;
constexpr std::uint32_t inkColor = 0xffff00ff;

class InlineQueue final : public SerialQueue {
 public:
  void perform(const Job& job) override { job(); }
};

// What came of a stream, in its order.
class Witness final : public StreamOutput, public StreamDelegate {
 public:
  void streamDidOutput(std::shared_ptr<const SampleBuffer> sample, StreamOutputType /*type*/) override {
    const std::lock_guard lock(mutex_);
    const bool isSeenThrough = std::dynamic_pointer_cast<const SeeThroughFrame>(sample) != nullptr;
    heard_.emplace_back(isSeenThrough ? "frame" : "other frame");
    EXPECT_EQ(sample->attachments()->front().status, 0);
  }
  void streamDidStop(const Error& error) override { hear("stopped: " + error.localizedDescription); }
  void hear(const std::string& word) {
    const std::lock_guard lock(mutex_);
    heard_.push_back(word);
  }
  // Frames come on a thread of their own.
  std::vector<std::string> heard(std::size_t words) {
    const auto now = [this] {
      const std::lock_guard lock(mutex_);
      return heard_;
    };
    (void)support::waitUntil([&] { return now().size() >= words; });
    return now();
  }

 private:
  std::mutex mutex_;
  std::vector<std::string> heard_;
};

class HoleStreamTest : public ::testing::Test {
 protected:
  HoleStreamTest() {
    client.setBackground(client.root(), boardColor);
    client.sync();
    settings.source = area;
    ink = makeInk();
    settings.excludedWindows = {ink};
  }

  xcb_window_t makeInk(const xcb::PixelRect& frame = screen) {
    const xcb_window_t window = client.createWindow({.frame = frame, .color = inkColor, .depth = 32});
    client.sync();
    return window;
  }
  // Takes in everything that has happened.
  void catchUp() {
    client.sync();
    do {
      EXPECT_TRUE(connection->synchronize(10'000));
      while (const auto event = connection->nextEvent()) scene.handle(*event);
      scene.collectReplies();
      engine->settle();
      EXPECT_TRUE(connection->synchronize(10'000));
    } while (hasEvents());
    client.sync();
  }
  bool hasEvents() {
    bool isAny = false;
    while (const auto event = connection->nextEvent()) {
      scene.handle(*event);
      isAny = true;
    }
    return isAny;
  }

  std::shared_ptr<platform::CaptureStream> makeStream() {
    catchUp();
    ++settings.serial;
    auto stream = engine->makeStream(settings, witness);
    EXPECT_TRUE(stream->addOutput(witness, StreamOutputType::screen, queue).has_value());
    return stream;
  }
  void start(platform::CaptureStream& stream) {
    stream.startCapture([this](const Result& result) {
      witness->hear(result ? "started" : "failed: " + result.error().localizedDescription);
    });
  }
  std::shared_ptr<platform::CaptureStream> startStream() {
    auto stream = makeStream();
    start(*stream);
    runLoop.run();
    catchUp();
    return stream;
  }
  void stop(platform::CaptureStream& stream) {
    stream.stopCapture([this](const Result& result) { witness->hear(result ? "ended" : "not ended"); });
    runLoop.run();
    catchUp();
  }
  std::size_t inkPixels(const xcb::PixelRect& part = screen) { return client.screenshot().count(0xff00ff, part); }
  bool isShaped(xcb_window_t window) { return shapeOf(client.connection(), window).has_value(); }

  support::XServer server{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  std::unique_ptr<xcb::Connection> connection = connectTo(server.display());
  scene::Scene scene{*connection};
  support::ManualRunLoop runLoop;
  std::shared_ptr<HoleEngine> engine =
      std::make_shared<HoleEngine>(*connection, scene, runLoop, std::vector{connection->resourceBase()}, 4711);
  std::shared_ptr<Witness> witness = std::make_shared<Witness>();
  std::shared_ptr<InlineQueue> queue = std::make_shared<InlineQueue>();
  stream::CaptureStreamSettings settings;
  xcb_window_t ink = XCB_NONE;
};

TEST_F(HoleStreamTest, TheHoleStandsBeforeTheStartCompletesAndTheFrameComesAfterIt) {
  const auto stream = makeStream();
  start(*stream);
  EXPECT_THAT(witness->heard(0), IsEmpty()) << "inside the call";
  EXPECT_EQ(inkPixels(area), 0U);
  runLoop.run();
  EXPECT_THAT(witness->heard(2), ElementsAre("started", "frame"));
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - areaSize);
}

TEST_F(HoleStreamTest, TheInkComesBackWithTheStop) {
  const auto stream = startStream();
  EXPECT_THAT(witness->heard(2), ElementsAre("started", "frame"));
  stop(*stream);
  EXPECT_THAT(witness->heard(3), ElementsAre("started", "frame", "ended"));
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
  runLoop.advance();
  catchUp();
  EXPECT_FALSE(isShaped(ink));
}

TEST_F(HoleStreamTest, NoFrameComesAfterAStopThatCameFirst) {
  const auto stream = makeStream();
  start(*stream);
  stop(*stream);
  EXPECT_THAT(witness->heard(2), ElementsAre("started", "ended"));
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, ADestroyedStreamIsAStoppedOne) {
  startStream().reset();
  catchUp();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, AStreamThatOutlivesTheEngineDoesNothing) {
  const auto stream = startStream();
  engine.reset();
  client.sync();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
  EXPECT_FALSE(isShaped(ink));
  stream->admit({ink});
  stream->stopCapture([](const Result&) { ADD_FAILURE() << "There is nobody left to say it."; });
  runLoop.run();
}

TEST_F(HoleStreamTest, ARestartOpensTheNewBeforeTheOldIsClosed) {
  const auto other = makeInk({0, 200, 400, 100});
  settings.source = {100, 150, 120, 90};
  const auto first = startStream();
  settings.excludedWindows = {ink, other};
  const auto second = startStream();
  EXPECT_EQ(inkPixels(settings.source), 0U);
  stop(*first);
  EXPECT_EQ(inkPixels(settings.source), 0U);
  stop(*second);
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, TwoAreasThatOverlapAreMissedTogetherAndGivenBackOneByOne) {
  const auto first = startStream();
  settings.source = {150, 100, 120, 90};
  const auto second = startStream();
  const std::size_t overlap = std::size_t{70} * 40;
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - 2 * areaSize + overlap);
  stop(*first);
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300 - areaSize);
  EXPECT_EQ(inkPixels(settings.source), 0U);
}

TEST_F(HoleStreamTest, InkThatMovesAndGrowsIsMissedInTheAreaAllTheTime) {
  client.setFrame(ink, {20, 20, 100, 100});
  const auto stream = startStream();
  for (const xcb::PixelRect& frame :
       {xcb::PixelRect{90, 40, 100, 100}, xcb::PixelRect{-50, -50, 300, 300}, xcb::PixelRect{0, 0, 400, 300}}) {
    client.setFrame(ink, frame);
    catchUp();
    EXPECT_EQ(inkPixels(area), 0U);
    const xcb::PixelRect onScreen = intersection(frame, screen);
    const xcb::PixelRect missed = intersection(frame, area);
    EXPECT_EQ(inkPixels(), sizeOf(onScreen) - sizeOf(missed));
  }
  client.setFrame(ink, {250, 0, 100, 300});
  catchUp();
  runLoop.advance();
  EXPECT_FALSE(isShaped(ink)) << "out of the area, it has what was its own";
}

TEST_F(HoleStreamTest, InkThatItsOwnerReshapesIsFollowed) {
  const auto stream = startStream();
  std::vector<xcb_rectangle_t> strokes;
  for (std::int16_t stroke = 0; stroke < 5; ++stroke) {
    strokes.push_back({0, static_cast<std::int16_t>(60 + 10 * stroke), 400, 4});
    client.setBoundingShape(ink, strokes);
    catchUp();
    EXPECT_EQ(inkPixels(area), 0U);
    EXPECT_EQ(inkPixels(), strokes.size() * 4 * (400 - 120));
  }
  stop(*stream);
  EXPECT_EQ(inkPixels(), strokes.size() * 4 * 400);
  EXPECT_EQ(shapeOf(client.connection(), ink)->size(), 5U);
}

TEST_F(HoleStreamTest, AWindowIsTakenForShapedOnlyWhenItsOwnerShapedIt) {
  EXPECT_EQ(engine->isShapedByOwner(ink), std::nullopt);
  const auto stream = startStream();
  EXPECT_EQ(engine->isShapedByOwner(ink), false);
  const xcb_rectangle_t stroke{0, 60, 400, 4};
  client.setBoundingShape(ink, {&stroke, 1});
  catchUp();
  EXPECT_EQ(engine->isShapedByOwner(ink), true);
}

TEST_F(HoleStreamTest, AWindowThatComesIsNotSeenInTheAreaBeforeItIsAdmitted) {
  settings.holdBack = {.fromArea = 10'000, .admitted = {ink}};
  const auto stream = startStream();
  const auto pane = client.createWindow({.frame = screen, .color = 0xff00ff00, .depth = 32, .mapped = false});
  catchUp();
  client.map(pane);
  catchUp();
  EXPECT_EQ(client.screenshot().count(0x00ff00, area), 0U);
  EXPECT_EQ(client.screenshot().count(0x00ff00), std::size_t{400} * 300 - areaSize);
  stream->admit({pane});
  catchUp();
  EXPECT_EQ(client.screenshot().count(0x00ff00), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, InkThatGoesAndComesAgainIsJustAnotherWindow) {
  const auto stream = startStream();
  client.destroy(ink);
  catchUp();
  const auto again = makeInk();
  catchUp();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300) << "nobody has named it";
  settings.excludedWindows = {again};
  const auto next = startStream();
  EXPECT_EQ(inkPixels(area), 0U);
}

TEST_F(HoleStreamTest, InkThatGoesIntoAnotherWindowIsGivenBack) {
  const auto stream = startStream();
  const auto frame = client.createWindow({.frame = screen, .color = boardColor});
  xcb_reparent_window(client.connection(), ink, frame, 0, 0);
  catchUp();
  runLoop.advance();
  catchUp();
  EXPECT_FALSE(isShaped(ink));
}

TEST_F(HoleStreamTest, OneThatIsCoveredAgainBeforeItWasQuiteGivenBackIsGivenBackLater) {
  for (int times = 0; times < 20; ++times) {
    const auto stream = startStream();
    EXPECT_EQ(inkPixels(area), 0U);
    stop(*stream);
    EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
    if (times % 3 == 0) runLoop.advance();
  }
  runLoop.advance();
  catchUp();
  EXPECT_FALSE(isShaped(ink));
  EXPECT_THAT(client.numbers(ink, holeProperty), IsEmpty());
}

TEST_F(HoleStreamTest, OneThatGrowsBeforeItWasQuiteGivenBackIsSeenWhole) {
  client.setFrame(ink, {0, 0, 200, 200});
  const auto stream = startStream();
  stop(*stream);
  client.setFrame(ink, screen);
  catchUp();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, WhatAnEarlierProcessLeftOpenIsClosedAtTheStart) {
  startStream();
  const auto left = engine->makeStream(settings, witness);
  {
    const auto killed = connectTo(server.display());
    const auto hole = HoleCutter(*killed, 4712).cut({}, {.window = ink, .areas = {area}, .clears = true});
    ASSERT_TRUE(hole.has_value());
    EXPECT_TRUE(killed->synchronize(10'000));
  }
  ASSERT_EQ(inkPixels(area), 0U);
  const HoleEngine next(*connection, scene, runLoop, {connection->resourceBase()}, 4713);
  client.sync();
  EXPECT_EQ(inkPixels(), std::size_t{400} * 300);
}

TEST_F(HoleStreamTest, WithoutRenderTheStartFailsWithASentence) {
  const support::XServer poor{{.width = 400, .height = 300, .depth = 24, .arguments = {"-extension", "RENDER"}}};
  const auto other = connectTo(poor.display());
  scene::Scene otherScene(*other);
  engine = std::make_shared<HoleEngine>(*other, otherScene, runLoop, std::vector<std::uint32_t>{}, 1);
  const auto stream = engine->makeStream(settings, witness);
  start(*stream);
  runLoop.run();
  EXPECT_THAT(witness->heard(1),
              ElementsAre("failed: This display lacks the X extension RENDER, without which nothing can "
                          "be captured."));
  engine.reset();
}

TEST_F(HoleStreamTest, AnEmptyOrEndlessAreaIsASentence) {
  settings.source.width = 0;
  start(*makeStream());
  settings.source.width = 1 << 20;
  start(*makeStream());
  runLoop.run();
  EXPECT_THAT(witness->heard(1), ElementsAre("failed: The area to show is empty.",
                                             "failed: The area to show is larger than the display server can handle."));
}

TEST_F(HoleStreamTest, SoundCannotBeCaptured) {
  const auto stream = makeStream();
  EXPECT_FALSE(stream->addOutput(witness, StreamOutputType::audio, queue).has_value());
}

}  // namespace
}  // namespace platform::linux::holes
