#include "Platform/Linux/Cover/OverlayWindow.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Linux/Posix/Wakeup.h"
#include "Platform/Linux/Stream/FrameLoan.h"
#include "Platform/Linux/Xcb/Region.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::cover {
namespace {

using support::waitUntil;

constexpr xcb::PixelRect place{200, 100, 400, 300};
constexpr xcb::PixelRect inside{0, 0, 400, 300};
constexpr stream::Argb blue = 0xFF0000FF;
constexpr std::uint32_t bluePixel = 0x0000FF;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t greenPixel = 0x00FF00;
constexpr stream::Argb halfWhite = 0x80FFFFFF;

OverlayAppearance mirrorLook() { return {.background = blue, .picture = inside, .label = {}, .border = {}}; }

// Half white over `below`, as RENDER rounds; off by one at most.
bool isHalfWhiteOver(std::uint32_t pixel, std::uint32_t below) {
  for (const unsigned shift : {0U, 8U, 16U}) {
    const int value = static_cast<int>((pixel >> shift) & 0xFFU);
    const int expected = (0x80 * 255 + 0x7F * static_cast<int>((below >> shift) & 0xFFU)) / 255;
    if (std::abs(value - expected) > 1) return false;
  }
  return true;
}

// The stream's side of the frames, with pictures that the test paints.
class Source {
 public:
  Source(const std::string& display, std::int32_t width, std::int32_t height, std::uint64_t serial)
      : connection_(connectTo(display)),
        picture_(connection_->newId()),
        buffer_(stream::FrameLoan::make(connection_, width, height, serial, std::make_shared<posix::Wakeup>())) {
    const xcb_pixmap_t pixels = connection_->newId();
    xcb_create_pixmap(connection_->get(), connection_->rootDepth(), pixels, connection_->root(),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
    xcb_render_create_picture(connection_->get(), picture_, pixels,
                              connection_->formatOfVisual(connection_->rootVisual()), 0, nullptr);
  }

  // Paints the rectangle and lends a frame in which only that has changed; a whole frame if none was read before.
  std::shared_ptr<const stream::Frame> paint(const xcb::PixelRect& rect, std::uint32_t color, bool isWhole = false) {
    isWhole = buffer_->reclaim() == stream::FrameLoan::Reading::never || isWhole;
    const auto wide = [](std::uint32_t value) { return static_cast<std::uint16_t>((value & 0xFFU) * 257); };
    const xcb_render_color_t renderColor{wide(color >> 16U), wide(color >> 8U), wide(color), 0xFFFF};
    const xcb_rectangle_t rectangle = xcb::toRectangle(rect);
    xcb_render_fill_rectangles(connection_->get(), XCB_RENDER_PICT_OP_SRC, picture_, renderColor, 1, &rectangle);
    const xcb::PixelRect everything{0, 0, buffer_->width(), buffer_->height()};
    buffer_->changed().set(isWhole ? everything : rect);
    return buffer_->lend({{.source = picture_,
                           .clip = buffer_->changed().id(),
                           .width = static_cast<std::uint16_t>(everything.width),
                           .height = static_cast<std::uint16_t>(everything.height)}},
                         isWhole);
  }
  // Does what a stream does with a change while its picture is shown: fills that part of the window, if there is one.
  std::optional<stream::LiveTarget> paintLive(const xcb::PixelRect& rect, std::uint32_t color) {
    std::optional<stream::LiveTarget> shownIn;
    buffer_->paintLive([&](const stream::LiveTarget& target) {
      shownIn = target;
      const xcb_gcontext_t context = connection_->newId();
      xcb_create_gc(connection_->get(), context, target.window, XCB_GC_FOREGROUND, &color);
      const xcb_rectangle_t rectangle = xcb::toRectangle(rect);
      xcb_poly_fill_rectangle(connection_->get(), target.window, context, 1, &rectangle);
      xcb_free_gc(connection_->get(), context);
    });
    return shownIn;
  }
  bool takeWholeRequest() { return buffer_->takeWholeRequest(); }
  void end() { buffer_->endStream(); }

 private:
  std::shared_ptr<xcb::Connection> connection_;
  xcb_render_picture_t picture_;
  std::shared_ptr<stream::FrameLoan> buffer_;
};

class OverlayWindowOnX : public testing::Test {
 protected:
  void SetUp() override { (void)qt::application(); }

  void show(const OverlayAppearance& appearance) {
    window_ = std::make_unique<OverlayWindow>(*connection_, place, appearance);
    window_->orderFront(std::nullopt);
    settle();
  }

  // When this returns, everything sent has been carried out, and its consequences have been handled.
  void settle() {
    for (int i = 0; i < 2; ++i) {
      ASSERT_TRUE(connection_->synchronize(5000));
      while (const xcb::Event event = connection_->nextEvent()) window_->handle(*event);
    }
    ASSERT_TRUE(connection_->synchronize(5000));
  }

  support::Picture picture() {
    settle();
    return client_.screenshot(window_->frame());
  }

  static LabelAppearance label(std::string text) {
    return {.text = std::move(text), .font = {.size = 30, .weight = FontWeight::medium}, .color = halfWhite};
  }

  support::XServer server_;
  support::XClient client_{server_.display()};
  std::unique_ptr<xcb::Connection> connection_ = connectTo(server_.display());
  std::unique_ptr<OverlayWindow> window_;
};

TEST_F(OverlayWindowOnX, ShowsItsBackgroundExactlyInItsFrame) {
  show({.background = blue, .picture = {}, .label = {}, .border = {}});
  EXPECT_EQ(client_.screenshot(place).count(bluePixel), std::size_t{400} * 300);
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{400} * 300);
  window_->setFrame({0, 0, 100, 50});
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{100} * 50);
  window_->orderOut();
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), 0U);
  window_->orderFront(std::nullopt);
  settle();
  EXPECT_EQ(client_.screenshot().count(bluePixel), std::size_t{100} * 50);
}

TEST_F(OverlayWindowOnX, TellsManagersWhatTheyNeedToKnow) {
  show(mirrorLook());
  EXPECT_EQ(client_.text(window_->id(), "WM_CLASS"), std::string("quillfade\0Quillfade\0", 20));
  EXPECT_EQ(client_.text(window_->id(), "_NET_WM_NAME"), "Quillfade");
  EXPECT_EQ(client_.numbers(window_->id(), "_NET_WM_BYPASS_COMPOSITOR"), std::vector<std::uint32_t>{2});
  EXPECT_EQ(client_.numbers(window_->id(), "_COMPTON_SHADOW"), std::vector<std::uint32_t>{0});
  EXPECT_EQ(client_.numbers(window_->id(), "_NET_WM_PID"),
            std::vector<std::uint32_t>{static_cast<std::uint32_t>(getpid())});
}

TEST_F(OverlayWindowOnX, AClickReachesTheWindowBeneath) {
  const xcb_window_t beneath = client_.createWindow({.frame = {150, 50, 500, 400}});
  client_.selectInput(beneath, XCB_EVENT_MASK_BUTTON_PRESS);
  client_.sync();
  show(mirrorLook());
  support::Input input(server_.display());
  input.click(400, 250);
  EXPECT_TRUE(client_.waitForEvent(XCB_BUTTON_PRESS, std::chrono::seconds(5)));
}

TEST_F(OverlayWindowOnX, NeverTakesTheFocusFromAManagedWindow) {
  const support::WindowManager manager(server_.display());
  show(mirrorLook());
  EXPECT_TRUE(client_.isViewable(window_->id()));
  EXPECT_EQ(client_.frame(window_->id()), place) << "nobody moved it";
  EXPECT_EQ(std::ranges::count(client_.children(client_.root()), window_->id()), 1) << "or put it into a frame";
}

TEST_F(OverlayWindowOnX, GoesDirectlyBelowALockerWhenItComesToTheFront) {
  const xcb_window_t ordinary = client_.createWindow({});
  const xcb_window_t locker = client_.createWindow({.frame = {0, 0, 1280, 800}, .color = green});
  client_.sync();
  window_ = std::make_unique<OverlayWindow>(*connection_, place, mirrorLook());
  window_->orderFront(locker);
  settle();
  EXPECT_EQ(client_.children(client_.root()), (std::vector{ordinary, window_->id(), locker}));
  EXPECT_EQ(client_.screenshot().count(bluePixel), 0U);
  // A locker that has gone is no error.
  client_.destroy(locker);
  client_.sync();
  window_->orderFront(locker);
  settle();
  EXPECT_EQ(client_.children(client_.root()).back(), window_->id());
}

TEST_F(OverlayWindowOnX, ABorderIsBlendedInsideTheEdgesOnce) {
  OverlayAppearance appearance = mirrorLook();
  appearance.border = {.width = 2, .color = halfWhite};
  show(appearance);
  const support::Picture shown = picture();
  for (const auto& [x, y] : {std::pair{0, 0}, {1, 1}, {399, 299}, {200, 1}, {398, 150}, {0, 299}}) {
    EXPECT_TRUE(isHalfWhiteOver(shown.at(x, y), bluePixel)) << x << "," << y << " " << std::hex << shown.at(x, y);
  }
  EXPECT_EQ(shown.count(bluePixel, {2, 2, 396, 296}), std::size_t{396} * 296);
}

TEST_F(OverlayWindowOnX, ALabelIsBlendedInTheMiddle) {
  OverlayAppearance appearance = mirrorLook();
  appearance.label = label("Waiting for screen capture\u2026");
  show(appearance);
  const support::Picture shown = picture();
  int left = 400, right = 0, top = 300, bottom = 0;
  for (int y = 0; y < 300; ++y) {
    for (int x = 0; x < 400; ++x) {
      if (shown.at(x, y) == bluePixel) continue;
      left = std::min(left, x), right = std::max(right, x), top = std::min(top, y), bottom = std::max(bottom, y);
    }
  }
  ASSERT_LT(left, right) << "nothing is written";
  EXPECT_NEAR((left + right) / 2.0, 199.5, 6);
  EXPECT_NEAR((top + bottom) / 2.0, 149.5, 8);
  int full = 0;
  for (int y = top; y <= bottom; ++y) {
    for (int x = left; x <= right; ++x) full += isHalfWhiteOver(shown.at(x, y), bluePixel) ? 1 : 0;
  }
  EXPECT_GT(full, 50) << "strokes have the label's own alpha";
}

TEST_F(OverlayWindowOnX, AnotherTextReplacesTheFirstAndNoTextUncoversTheBackground) {
  OverlayAppearance appearance = mirrorLook();
  appearance.label = label("Waiting");
  show(appearance);
  appearance.label = label("Failed");
  window_->setAppearance(appearance);
  const support::Picture replaced = picture();
  appearance.label.reset();
  window_->setAppearance(appearance);
  EXPECT_EQ(picture().count(bluePixel), std::size_t{400} * 300);
  appearance.label = label("Failed");
  window_->setAppearance(appearance);
  EXPECT_EQ(picture(), replaced);
}

TEST_F(OverlayWindowOnX, AFrameIsShownExactlyAndLaterOnesWhereTheyChange) {
  show(mirrorLook());
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
  OverlayAppearance appearance = mirrorLook();
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
  OverlayAppearance appearance = mirrorLook();
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
  show(mirrorLook());
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
  show(mirrorLook());
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
  show(mirrorLook());
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
  show(mirrorLook());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  const auto late = older.paint(inside, 0xFFFFFF);
  EXPECT_TRUE(window_->presentFrame(newer.paint(inside, green)));
  EXPECT_FALSE(window_->presentFrame(late));
  EXPECT_EQ(picture().count(greenPixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, WhenANewerStreamEndsTheOneBeforeItIsAskedForTheWholePicture) {
  show(mirrorLook());
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
  show(mirrorLook());
  Source older(server_.display(), 400, 300, 1);
  Source newer(server_.display(), 400, 300, 2);
  EXPECT_TRUE(window_->presentFrame(older.paint(inside, 0xFFFFFF)));
  const auto late = newer.paint(inside, green, true);
  newer.end();
  EXPECT_TRUE(window_->presentFrame(late));
  EXPECT_TRUE(older.takeWholeRequest());
}

TEST_F(OverlayWindowOnX, OfThreeStreamsTheOldestIsAskedWhenTheOthersHaveEnded) {
  show(mirrorLook());
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
  show(mirrorLook());
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
  show(mirrorLook());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  window_->forgetFrames();
  EXPECT_EQ(picture().count(bluePixel), std::size_t{400} * 300);
}

TEST_F(OverlayWindowOnX, PresentingWaitsForNothing) {
  show(mirrorLook());
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
  OverlayAppearance appearance = mirrorLook();
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
  OverlayAppearance appearance = mirrorLook();
  appearance.label = label("Waiting");
  show(appearance);
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  EXPECT_FALSE(source.paintLive(inside, green));
}

TEST_F(OverlayWindowOnX, AStretchedPictureComesFrameByFrame) {
  show(mirrorLook());
  Source source(server_.display(), 200, 150, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint({0, 0, 200, 150}, green, true)));
  EXPECT_FALSE(source.paintLive({0, 0, 200, 150}, green));
}

TEST_F(OverlayWindowOnX, AnotherLookOrSizeEndsThePaintingOfTheStream) {
  show(mirrorLook());
  Source source(server_.display(), 400, 300, 1);
  EXPECT_TRUE(window_->presentFrame(source.paint(inside, green)));
  OverlayAppearance appearance = mirrorLook();
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
  show(mirrorLook());
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
  show(mirrorLook());
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

TEST(OverlayAppearance, FollowsTheContentInDevicePixels) {
  views::OverlayContent content;
  content.pictureLayer = Rect{{0, 0}, {200, 100}};
  content.label = views::LabelContent{"Text", {{15, FontWeight::medium}, colors::white.withAlpha(0.65)}};
  content.border = views::BorderContent{1, colors::black.withAlpha(0.16)};
  const OverlayAppearance appearance = appearanceOf(content, colors::black, 150, 1.5);
  EXPECT_EQ(appearance.background, 0xFF000000U);
  EXPECT_EQ(appearance.picture, (xcb::PixelRect{0, 0, 300, 150}));
  EXPECT_DOUBLE_EQ(appearance.label->font.size, 22.5);
  EXPECT_EQ(appearance.label->color, 0xA6FFFFFFU);
  EXPECT_EQ(appearance.border, (stream::BorderAppearance{2, 0x29000000}));
}

TEST(OverlayAppearance, APartOfTheWindowKeepsItsPlaceFromTheBottom) {
  views::OverlayContent content;
  content.background = colors::white;
  content.pictureLayer = Rect{{10, 20}, {30, 40}};
  content.border = views::BorderContent{0.1, colors::black};
  const OverlayAppearance appearance = appearanceOf(content, colors::black, 100, 1);
  EXPECT_EQ(appearance.background, 0xFFFFFFFFU);
  EXPECT_EQ(appearance.picture, (xcb::PixelRect{10, 40, 30, 40}));
  EXPECT_EQ(appearance.border->width, 1);
}

}  // namespace
}  // namespace platform::linux::cover
