// An overlay window on a private screen, and streams whose pictures the test paints.
#pragma once

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

using support::waitUntil;

constexpr xcb::PixelRect place{200, 100, 400, 300};
constexpr xcb::PixelRect inside{0, 0, 400, 300};
constexpr stream::Argb blue = 0xFF0000FF;
constexpr std::uint32_t bluePixel = 0x0000FF;
constexpr std::uint32_t green = 0xFF00FF00;
constexpr std::uint32_t greenPixel = 0x00FF00;
constexpr stream::Argb halfWhite = 0x80FFFFFF;

inline OverlayAppearance mirrorAppearance() {
  return {.background = blue, .picture = inside, .label = {}, .border = {}};
}

// Half white over `below`, as RENDER rounds; off by one at most.
inline bool isHalfWhiteOver(std::uint32_t pixel, std::uint32_t below) {
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
        loan_(stream::FrameLoan::make(connection_, width, height, serial, std::make_shared<posix::Wakeup>())) {
    const xcb_pixmap_t pixels = connection_->newId();
    xcb_create_pixmap(connection_->get(), connection_->rootDepth(), pixels, connection_->root(),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
    xcb_render_create_picture(connection_->get(), picture_, pixels,
                              connection_->formatOfVisual(connection_->rootVisual()), 0, nullptr);
  }

  // Paints the rectangle and lends a frame in which only that has changed; a whole frame if none was read before.
  std::shared_ptr<const stream::Frame> paint(const xcb::PixelRect& rect, std::uint32_t color, bool isWhole = false) {
    isWhole = loan_->reclaim() == stream::FrameLoan::Reading::never || isWhole;
    const auto wide = [](std::uint32_t value) { return static_cast<std::uint16_t>((value & 0xFFU) * 257); };
    const xcb_render_color_t renderColor{wide(color >> 16U), wide(color >> 8U), wide(color), 0xFFFF};
    const xcb_rectangle_t rectangle = xcb::toRectangle(rect);
    xcb_render_fill_rectangles(connection_->get(), XCB_RENDER_PICT_OP_SRC, picture_, renderColor, 1, &rectangle);
    const xcb::PixelRect everything{0, 0, loan_->width(), loan_->height()};
    loan_->changed().set(isWhole ? everything : rect);
    return loan_->lend({{.source = picture_,
                         .clip = loan_->changed().id(),
                         .width = static_cast<std::uint16_t>(everything.width),
                         .height = static_cast<std::uint16_t>(everything.height)}},
                       isWhole);
  }
  // Does what a stream does with a change while its picture is shown: fills that part of the window, if there is one.
  std::optional<stream::LiveTarget> paintLive(const xcb::PixelRect& rect, std::uint32_t color) {
    std::optional<stream::LiveTarget> shownIn;
    loan_->paintLive([&](const stream::LiveTarget& target) {
      shownIn = target;
      const xcb_gcontext_t context = connection_->newId();
      xcb_create_gc(connection_->get(), context, target.window, XCB_GC_FOREGROUND, &color);
      const xcb_rectangle_t rectangle = xcb::toRectangle(rect);
      xcb_poly_fill_rectangle(connection_->get(), target.window, context, 1, &rectangle);
      xcb_free_gc(connection_->get(), context);
    });
    return shownIn;
  }
  bool takeWholeRequest() { return loan_->takeWholeRequest(); }
  void end() { loan_->endStream(); }

 private:
  std::shared_ptr<xcb::Connection> connection_;
  xcb_render_picture_t picture_;
  std::shared_ptr<stream::FrameLoan> loan_;
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

}  // namespace platform::linux::cover
