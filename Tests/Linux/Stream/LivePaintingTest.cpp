// A stream and the window that shows it, together: changes on the screen appear there with nobody in between.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <chrono>
#include <thread>

#include "Platform/Linux/Cover/OverlayWindow.h"
#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Stream/CaptureStream.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Stream/FrameArrivals.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/InlineQueue.h"
#include "Tests/Support/ProcessState.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::stream {
namespace {

using namespace std::chrono_literals;
using support::waitUntil;

// The window that shows the copy lies over what it copies: both have this area.
constexpr xcb::PixelRect area{40, 30, 300, 220};
constexpr Argb halfWhite = 0x80FFFFFF;

class LivePainting : public testing::Test {
 protected:
  LivePainting() {
    (void)qt::application();
    scene::redirectSubwindows(*keeper_);
    client_.setBackgroundChecks(client_.root(), 7, 0x204060, 0x305070);
    drawn_ = client_.createWindow({.frame = {60, 50, 200, 150}, .color = 0xff305030});
    client_.sync();
    EXPECT_TRUE(keeper_->synchronize(10'000));
  }

  std::shared_ptr<CaptureStream> start(std::chrono::nanoseconds interval = 5ms) {
    CaptureStreamSettings settings;
    settings.displayName = server_.display();
    settings.source = area;
    settings.minimumFrameInterval = interval;
    settings.ownClients = {connection_->resourceBase()};
    settings.unexpectedError = failOnError;
    settings.serial = ++serial_;
    earlierFrames_ = arrivals_->count();
    auto stream = std::make_shared<CaptureStream>(settings, arrivals_);
    EXPECT_TRUE(
        stream->addOutput(arrivals_, StreamOutputType::screen, std::make_shared<support::InlineQueue>()).has_value());
    stream->startCapture([](const std::expected<void, Error>& result) { EXPECT_TRUE(result.has_value()); });
    return stream;
  }

  void show(cover::OverlayAppearance appearance) {
    window_ = std::make_unique<cover::OverlayWindow>(*connection_, area, appearance);
    window_->orderFront(std::nullopt);
    turn();
  }

  // One turn of the main loop.
  void turn() {
    while (const auto frame = arrivals_->take()) window_->presentFrame(frame);
    connection_->flush();
    while (const xcb::Event event = connection_->nextEvent()) window_->handle(*event);
    connection_->flush();
  }

  // The first frame of the last stream started, which may have come already.
  void presentFirst() {
    ASSERT_TRUE(waitUntil([&] { return arrivals_->count() > earlierFrames_; }));
    turn();
  }

  // Draws in a colour that was never used before.
  std::uint32_t draw(xcb_window_t window, const xcb::PixelRect& part) {
    const std::uint32_t color = ++lastColor_;
    client_.fill(window, part, 0xff000000U | color);
    client_.sync();
    return color;
  }

  // How often threads other than the test's have woken up.
  static std::size_t wakeUps() {
    rusage ours{};
    ::getrusage(RUSAGE_THREAD, &ours);
    return support::wakeUps(::getpid()) - static_cast<std::size_t>(ours.ru_nvcsw);
  }

  // Draws in a new colour in the window below; returns whether the copy comes to show it.
  bool isShownOnceDrawn(bool turning) {
    const std::uint32_t color = draw(drawn_, {10, 10, 30, 20});
    return waitUntil([&] {
      if (turning) turn();
      return client_.screenshot({70, 60, 30, 20}).count(color) == std::size_t{30} * 20;
    });
  }

  support::XServer server_{{.width = 400, .height = 300, .depth = 24, .arguments = {}}};
  support::XClient client_{server_.display()};
  std::unique_ptr<xcb::Connection> keeper_ = connectTo(server_.display());
  std::unique_ptr<xcb::Connection> connection_ = connectTo(server_.display());
  std::shared_ptr<FrameArrivals> arrivals_ = std::make_shared<FrameArrivals>();
  std::unique_ptr<cover::OverlayWindow> window_;
  xcb_window_t drawn_ = XCB_NONE;
  std::uint64_t serial_ = 0;
  int earlierFrames_ = 0;
  std::uint32_t lastColor_ = 0x405060;
};

cover::OverlayAppearance mirrorLook() {
  return {
      .background = 0xFF0000FF, .picture = xcb::PixelRect{0, 0, area.width, area.height}, .label = {}, .border = {}};
}

TEST_F(LivePainting, ChangesShowWithoutTheMainThread) {
  const auto stream = start();
  show(mirrorLook());
  presentFirst();
  const int frames = arrivals_->count();
  for (int change = 0; change < 20; ++change) ASSERT_TRUE(isShownOnceDrawn(false)) << change;
  EXPECT_EQ(arrivals_->count(), frames);
}

// A start that was overtaken shows a frame or two and is stopped; the start after it failed.
TEST_F(LivePainting, AnOlderStreamShowsItsPictureAgainWhenTheNewerHasEnded) {
  const auto older = start();
  show(mirrorLook());
  presentFirst();
  auto newer = start();
  presentFirst();
  ASSERT_TRUE(isShownOnceDrawn(true));
  newer->stopCapture([](const std::expected<void, Error>&) {});
  newer = nullptr;
  EXPECT_TRUE(isShownOnceDrawn(true));
  const int frames = arrivals_->count();
  for (int change = 0; change < 5; ++change) ASSERT_TRUE(isShownOnceDrawn(false)) << change;
  EXPECT_EQ(arrivals_->count(), frames) << "It keeps the picture up to date by itself.";
}

TEST_F(LivePainting, WhatChangesWhileTheNewerStreamEndsIsShownByTheOlder) {
  const auto older = start();
  show(mirrorLook());
  presentFirst();
  for (int round = 0; round < 10; ++round) {
    auto newer = start();
    presentFirst();
    const std::uint32_t color = draw(drawn_, {10, 10, 30, 20});
    newer = nullptr;
    EXPECT_TRUE(waitUntil([&] {
      turn();
      return client_.screenshot({70, 60, 30, 20}).count(color) == std::size_t{30} * 20;
    })) << round;
  }
}

TEST_F(LivePainting, APartThatComesIntoViewIsRequestedFromTheStreamThatStillRuns) {
  const auto older = start();
  show(mirrorLook());
  presentFirst();
  auto newer = start();
  presentFirst();
  newer = nullptr;
  ASSERT_TRUE(isShownOnceDrawn(true));
  newer = start();
  presentFirst();
  newer = nullptr;
  turn();
  const auto menu = client_.createWindow({.frame = {50, 40, 250, 180}, .color = 0xff654321});
  client_.sync();
  client_.destroy(menu);
  client_.sync();
  EXPECT_TRUE(waitUntil([&] {
    turn();
    return client_.screenshot(area).count(0x654321) == 0;
  }));
}

TEST_F(LivePainting, WhileChangesWaitForAFrameFurtherOnesDoNotWakeTheStream) {
  constexpr auto interval = 300ms;
  const auto moving = client_.createWindow({.frame = {270, 60, 40, 40}, .color = 0xff604020});
  client_.sync();
  const auto stream = start(interval);
  show(mirrorLook());
  presentFirst();
  int step = 0;
  const auto movements = [&] {
    const std::size_t before = wakeUps();
    for (int times = 0; times < 20; ++times) {
      client_.move(moving, 250 + ++step % 30, 60);
      client_.sync();
    }
    return wakeUps() - before;
  };
  EXPECT_TRUE(waitUntil([&] {
    if (!isShownOnceDrawn(false)) return false;
    // Just after a frame, with at most one more in reserve: the stream then has to hear of one more change.
    const auto begin = std::chrono::steady_clock::now();
    const bool isQuiet = movements() <= 2;
    return isQuiet && std::chrono::steady_clock::now() - begin < interval / 2;
  }));
  EXPECT_TRUE(isShownOnceDrawn(false));
}

TEST_F(LivePainting, ThirtyChangesASecondWakeTheStreamAtMostTwiceEach) {
  const auto stream = start(std::chrono::nanoseconds(1s) / 30);
  show(mirrorLook());
  presentFirst();
  constexpr std::size_t changes = 150;
  auto next = std::chrono::steady_clock::now();
  const std::size_t before = wakeUps();
  for (std::size_t change = 0; change < changes; ++change) {
    std::this_thread::sleep_until(next += std::chrono::nanoseconds(1s) / 30);
    draw(drawn_, {10, 10, 30, 20});
  }
  EXPECT_TRUE(isShownOnceDrawn(false));
  const std::size_t woken = wakeUps() - before;
  RecordProperty("wakeUps", std::to_string(woken));
  EXPECT_LE(woken, 2 * changes + changes / 4);
}

TEST_F(LivePainting, DrawingInAWindowThatReachesBeyondTheAreaIsShownWithoutAskingWhere) {
  const auto reaching = client_.createWindow({.frame = {200, 150, 190, 140}, .color = 0xff604020});
  client_.sync();
  const auto stream = start(0ms);
  show(mirrorLook());
  presentFirst();
  constexpr std::size_t changes = 20;
  const std::size_t before = wakeUps();
  for (std::size_t change = 0; change < changes; ++change) {
    const std::uint32_t color = draw(reaching, {20, 20, 30, 20});
    ASSERT_TRUE(waitUntil([&] { return client_.screenshot({220, 170, 30, 20}).count(color) == std::size_t{30} * 20; }));
  }
  // Each reply that it waited for would wake it once more.
  EXPECT_LT(wakeUps() - before, changes + changes / 2);
}

TEST_F(LivePainting, ManyEventsThatArriveWhileItRestsDoNotPileUp) {
  const auto moving = client_.createWindow({.frame = {270, 60, 40, 40}, .color = 0xff604020});
  client_.sync();
  const auto stream = start(500ms);
  show(mirrorLook());
  presentFirst();
  for (int step = 0; step < 20'000; ++step) client_.move(moving, 250 + step % 30, 60 + step % 40);
  client_.fill(moving, {0, 0, 40, 40}, 0xff112233);
  client_.move(moving, 280, 120);
  client_.sync();
  const xcb::PixelRect place{280, 120, 40, 40};
  EXPECT_TRUE(waitUntil([&] { return client_.screenshot(place).count(0x112233) == std::size_t{40} * 40; }));
}

TEST_F(LivePainting, TheCopyStaysExactUnderABorderThatDoesNotAddUp) {
  cover::OverlayAppearance appearance = mirrorLook();
  appearance.border = BorderAppearance{.width = 2, .color = halfWhite};
  const auto stream = start();
  show(appearance);
  presentFirst();
  ASSERT_TRUE(isShownOnceDrawn(false));
  const auto before = client_.screenshot(area);
  // A window appears over the corner and the edge, and goes.
  const auto passing = client_.createWindow({.frame = {20, 20, 100, 100}, .color = 0xff806020});
  client_.lower(passing);
  client_.sync();
  ASSERT_TRUE(waitUntil([&] { return client_.screenshot(area).at(15, 15) == 0x806020U; }));
  client_.destroy(passing);
  client_.sync();
  EXPECT_TRUE(waitUntil([&] { return client_.screenshot(area) == before; }));
}

TEST_F(LivePainting, ALabelStopsLivePaintingAndItsRemovalResumesIt) {
  const auto stream = start();
  show(mirrorLook());
  presentFirst();
  cover::OverlayAppearance labelled = mirrorLook();
  labelled.label =
      cover::LabelAppearance{.text = "Waiting", .font = {.size = 12, .weight = FontWeight::medium}, .color = halfWhite};
  window_->setAppearance(labelled);
  turn();
  const int frames = arrivals_->count();
  ASSERT_TRUE(isShownOnceDrawn(true));
  EXPECT_GT(arrivals_->count(), frames) << "under a label, frames come";
  window_->setAppearance(mirrorLook());
  turn();
  ASSERT_TRUE(isShownOnceDrawn(true));
  const int later = arrivals_->count();
  ASSERT_TRUE(isShownOnceDrawn(false));
  EXPECT_EQ(arrivals_->count(), later);
}

TEST_F(LivePainting, StreamsTakeOverFromEachOtherWhileMuchIsDrawn) {
  show(mirrorLook());
  std::shared_ptr<CaptureStream> stream;
  for (int restart = 0; restart < 10; ++restart) {
    const auto next = start();
    const int before = arrivals_->count();
    ASSERT_TRUE(waitUntil([&] {
      client_.fill(drawn_, {50, 50, 60, 60}, 0xff000000U | ++lastColor_);
      client_.sync();
      turn();
      return arrivals_->count() > before;
    }));
    stream = next;
    ASSERT_TRUE(isShownOnceDrawn(true)) << restart;
    ASSERT_TRUE(isShownOnceDrawn(false)) << restart;
  }
}

TEST_F(LivePainting, AWindowThatGoesWhileItIsPaintedDoesNoHarm) {
  const auto stream = start();
  for (int round = 0; round < 10; ++round) {
    show(mirrorLook());
    ASSERT_TRUE(waitUntil([&] {
      client_.fill(drawn_, {50, 50, 60, 60}, 0xff000000U | ++lastColor_);
      client_.sync();
      turn();
      return client_.screenshot({115, 105, 1, 1}).at(0, 0) == lastColor_;
    })) << round;
    ASSERT_TRUE(isShownOnceDrawn(true)) << round;
    window_.reset();
    connection_->flush();
  }
}

}  // namespace
}  // namespace platform::linux::stream
