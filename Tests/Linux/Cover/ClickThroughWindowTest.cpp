// A mirror's window as the application fills it: its text, its picture, and when each is seen.
#include "Platform/Linux/Cover/ClickThroughWindow.h"

#include <gtest/gtest.h>

#include <memory>
#include <utility>
#include <vector>

#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Stream/CaptureStream.h"
#include "Platform/Linux/Views/Views.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Stream/FrameArrivals.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/InlineQueue.h"
#include "Tests/Support/ManualRunLoop.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"

namespace platform::linux::cover {
namespace {

constexpr Rect windowPlace{{200, 300}, {400, 300}};
constexpr xcb::PixelRect pixels{200, 200, 400, 300};
constexpr std::uint32_t beneath = 0x205030;

class ClickThroughWindowTest : public qt::Test {
 protected:
  ClickThroughWindowTest() {
    scene::redirectSubwindows(*keeper_);
    drawn_ = client_.createWindow({.frame = {0, 0, 1280, 800}, .color = 0xff000000 | beneath});
    client_.sync();
    EXPECT_TRUE(keeper_->synchronize(10'000));
    view_->setLayerBackground(colors::black);
    view_->addSublayer(layer_);
    layer_->setFrame({{0, 0}, windowPlace.size});
    label_->setStyle({{15, FontWeight::medium}, colors::white.withAlpha(0.65)});
    view_->addSubview(label_);
    view_->centerSubview(*label_);
    window_ =
        std::make_unique<ClickThroughWindow>(ClickThroughWindow::Surroundings{*connection_, stage_, screens_, runLoop_},
                                             WindowAttributes{.backgroundColor = colors::black});
    window_->setContentView(view_);
    window_->setFrame(windowPlace, true);
  }
  ~ClickThroughWindowTest() override {
    window_ = nullptr;
    settle();
  }

  // One turn of the main loop.
  void settle() {
    runLoop_.run();
    ASSERT_TRUE(connection_->synchronize(5000));
    while (const xcb::Event event = connection_->nextEvent()) {
      scene_.handle(*event);
      windowList_.handle(*event);
      stage_.handle(*event);
    }
    scene_.collectReplies();
  }
  support::Picture picture() {
    settle();
    return client_.screenshot(pixels);
  }
  [[nodiscard]] static std::size_t letters(const support::Picture& picture) {
    return picture.count(0xa6a6a6, {0, 0, pixels.width, pixels.height}, 60);
  }

  std::shared_ptr<stream::CaptureStream> startStream() {
    stream::CaptureStreamSettings settings;
    settings.displayName = qt::display();
    settings.source = pixels;
    settings.ownClients = {connection_->resourceBase()};
    settings.unexpectedError = failOnError;
    settings.serial = 1;
    auto stream = std::make_shared<stream::CaptureStream>(settings, arrivals_);
    EXPECT_TRUE(
        stream->addOutput(arrivals_, StreamOutputType::screen, std::make_shared<support::InlineQueue>()).has_value());
    stream->startCapture([](const std::expected<void, Error>& result) { EXPECT_TRUE(result.has_value()); });
    return stream;
  }

  support::XClient client_{qt::display()};
  std::unique_ptr<xcb::Connection> keeper_ = connectTo(qt::display());
  std::unique_ptr<xcb::Connection> connection_ = connectTo(qt::display());
  scene::Scene scene_{*connection_};
  scene::WindowList windowList_{*connection_, scene_, {connection_->resourceBase()}};
  support::ManualRunLoop runLoop_;
  OverlayStage stage_{*connection_, scene_, windowList_, runLoop_};
  toolkit::DesktopScreens screens_;
  views::DesktopViews views_;
  std::shared_ptr<View> view_ = views_.makeView({});
  std::shared_ptr<DisplayLayer> layer_ = views_.makeDisplayLayer();
  std::shared_ptr<Label> label_ = views_.makeLabel("Waiting for screen capture\u2026");
  std::shared_ptr<stream::FrameArrivals> arrivals_ = std::make_shared<stream::FrameArrivals>();
  xcb_window_t drawn_ = XCB_NONE;
  std::unique_ptr<ClickThroughWindow> window_;
};

TEST_F(ClickThroughWindowTest, ItsTextIsThereFromTheStart) {
  window_->orderFrontRegardless();
  const support::Picture shown = picture();
  EXPECT_EQ(shown.count(beneath), 0U);
  EXPECT_GT(letters(shown), 200U);
}

TEST_F(ClickThroughWindowTest, TheFirstFrameTakesTheTextAwayInOneStep) {
  window_->orderFrontRegardless();
  ASSERT_GT(letters(picture()), 200U);
  const auto stream = startStream();
  std::shared_ptr<const stream::Frame> frame;
  ASSERT_TRUE(support::waitUntil([&] { return (frame = arrivals_->take()) != nullptr; }));
  layer_->sampleBufferRenderer().enqueue(frame);
  label_->setHidden(true);
  EXPECT_EQ(picture().count(beneath), std::size_t{400} * 300) << "without waiting for another frame";
  client_.fill(drawn_, pixels, 0xff00ff00);
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] { return client_.screenshot(pixels).count(0x00ff00) == std::size_t{400} * 300; }))
      << "The stream keeps the picture up to date by itself.";
  EXPECT_EQ(arrivals_->take(), nullptr);
}

TEST_F(ClickThroughWindowTest, ATextOverAPictureGoesWithTheNextFrame) {
  label_->setHidden(true);
  window_->orderFrontRegardless();
  const auto stream = startStream();
  // As the application does with every frame.
  const auto showFrames = [&] {
    while (const auto frame = arrivals_->take()) {
      layer_->sampleBufferRenderer().enqueue(frame);
      label_->setHidden(true);
    }
  };
  const auto showsOnly = [&](std::uint32_t color) {
    return support::waitUntil([&] {
      showFrames();
      return picture().count(color) == std::size_t{400} * 300;
    });
  };
  ASSERT_TRUE(showsOnly(beneath));
  label_->setText("Screen capture failed.");
  label_->setHidden(false);
  EXPECT_GT(letters(picture()), 100U);
  client_.fill(drawn_, pixels, 0xff00ff00);
  client_.sync();
  EXPECT_TRUE(showsOnly(0x00ff00));
}

TEST_F(ClickThroughWindowTest, OrderedOutInTheSameTurnItNeverAppears) {
  client_.selectInput(client_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  client_.sync();
  window_->orderFrontRegardless();
  window_->orderOut();
  settle();
  client_.sync();
  EXPECT_FALSE(client_.waitForEvent(XCB_MAP_NOTIFY, std::chrono::milliseconds(0)));
  EXPECT_FALSE(stage_.awaitsWindows());
  window_->orderFrontRegardless();
  settle();
  EXPECT_TRUE(client_.waitForEvent(XCB_MAP_NOTIFY, support::defaultDeadline));
}

TEST_F(ClickThroughWindowTest, DestroyedInTheSameTurnItNeverAppears) {
  client_.selectInput(client_.root(), XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY);
  client_.sync();
  window_->orderFrontRegardless();
  window_ = nullptr;
  settle();
  client_.sync();
  EXPECT_FALSE(client_.waitForEvent(XCB_MAP_NOTIFY, std::chrono::milliseconds(0)));
}

}  // namespace
}  // namespace platform::linux::cover
