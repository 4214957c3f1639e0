// The order between the stream that paints a frame and the reader that copies it, when either is late. A fence of the
// test's own holds one of them back inside the server.
#include <gtest/gtest.h>
#include <xcb/sync.h>

#include <chrono>
#include <future>
#include <memory>

#include "Platform/Linux/Stream/Frame.h"
#include "Platform/Linux/Stream/FrameLoan.h"
#include "Tests/Linux/EngineSupport.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace platform::linux::stream {
namespace {

using namespace std::chrono_literals;

constexpr std::uint32_t red = 0xff0000;
constexpr std::uint32_t green = 0x00ff00;
constexpr std::uint16_t side = 20;

class CaptureStreamFramesTest : public ::testing::Test {
 protected:
  CaptureStreamFramesTest() {
    xcb_create_pixmap(reader->get(), 24, shown, reader->root(), side, side);
    xcb_sync_create_fence(holder->get(), holder->root(), fence, 0);
    EXPECT_TRUE(holder->synchronize(10'000));
    EXPECT_TRUE(reader->synchronize(10'000));
    xcb_create_pixmap(stream->get(), 24, pixels, stream->root(), side, side);
    xcb_render_create_picture(stream->get(), picture, pixels, stream->formatOfVisual(stream->rootVisual()), 0, nullptr);
    xcb_render_create_picture(reader->get(), target, shown, reader->formatOfVisual(reader->rootVisual()), 0, nullptr);
    loan = FrameLoan::make(stream, side, side, 1, wakeup);
  }

  // What this connection sends from now on is carried out after `release`.
  void hold(xcb::Connection& connection) { xcb_sync_await_fence(connection.get(), 1, &fence); }
  void release() {
    xcb_sync_trigger_fence(holder->get(), fence);
    EXPECT_TRUE(holder->synchronize(10'000));
  }

  std::shared_ptr<const Frame> paint(std::uint32_t color) {
    loan->reclaim();
    const xcb_rectangle_t everything{0, 0, side, side};
    const xcb_render_color_t value{static_cast<std::uint16_t>((color >> 16U) * 0x101U),
                                   static_cast<std::uint16_t>(((color >> 8U) & 0xffU) * 0x101U), 0, 0xffff};
    xcb_render_fill_rectangles(stream->get(), XCB_RENDER_PICT_OP_SRC, picture, value, 1, &everything);
    loan->changed().set(xcb::PixelRect{0, 0, side, side});
    return loan->lend({{.source = picture, .clip = loan->changed().id(), .width = side, .height = side}}, true);
  }

  void read(const Frame& frame) {
    ASSERT_TRUE(frame.beginReading(reader->get()));
    frame.paint(reader->get(), target, 0, 0);
    frame.endReading(reader->get());
  }

  std::size_t shownPixels(std::uint32_t color) {
    EXPECT_TRUE(reader->synchronize(10'000));
    while (reader->nextEvent()) {
    }
    return client.contents(shown, {0, 0, side, side}).count(color);
  }

  support::XServer server{{.width = 100, .height = 100, .depth = 24, .arguments = {}}};
  support::XClient client{server.display()};
  std::shared_ptr<xcb::Connection> stream = connectTo(server.display());
  std::unique_ptr<xcb::Connection> reader = connectTo(server.display());
  std::unique_ptr<xcb::Connection> holder = connectTo(server.display());
  std::shared_ptr<posix::Wakeup> wakeup = std::make_shared<posix::Wakeup>();
  std::shared_ptr<FrameLoan> loan;
  const xcb_sync_fence_t fence = holder->newId();
  const xcb_pixmap_t shown = reader->newId();
  const xcb_render_picture_t target = reader->newId();
  // Stands in for the one window of the stream.
  const xcb_pixmap_t pixels = stream->newId();
  const xcb_render_picture_t picture = stream->newId();
};

TEST_F(CaptureStreamFramesTest, AReaderGetsTheFinishedPictureOfALateStream) {
  hold(*stream);
  const auto frame = paint(red);
  read(*frame);
  // Gives the reader time to go wrong.
  EXPECT_FALSE(support::waitReadable(reader->fileDescriptor(), 50ms));
  release();
  EXPECT_EQ(shownPixels(red), std::size_t{side} * side);
}

TEST_F(CaptureStreamFramesTest, AStreamDoesNotPaintOverWhatALateReaderStillReads) {
  hold(*reader);
  read(*paint(red));
  const auto next = paint(green);
  EXPECT_FALSE(stream->synchronize(50)) << "the stream does not wait for the reader";
  release();
  EXPECT_EQ(shownPixels(red), std::size_t{side} * side);
  read(*next);
  EXPECT_EQ(shownPixels(green), std::size_t{side} * side);
}

TEST_F(CaptureStreamFramesTest, ThePictureStaysUntilALateReaderHasReadIt) {
  hold(*reader);
  read(*paint(red));
  stream.reset();
  auto closing = std::async(std::launch::async, [held = std::move(loan)]() mutable { held.reset(); });
  EXPECT_EQ(closing.wait_for(50ms), std::future_status::timeout);
  release();
  closing.get();
  EXPECT_EQ(shownPixels(red), std::size_t{side} * side);
}

TEST_F(CaptureStreamFramesTest, AReaderThatNeverReadsDelaysTheEndBySecondsAtMost) {
  hold(*reader);
  read(*paint(red));
  stream.reset();
  const auto begin = std::chrono::steady_clock::now();
  loan.reset();
  EXPECT_LT(std::chrono::steady_clock::now() - begin, 5s);
  // By then the picture is gone, so nothing is painted.
  release();
  EXPECT_TRUE(reader->synchronize(10'000)) << "the reader hangs";
}

TEST_F(CaptureStreamFramesTest, TheEndOfALoanIsNotified) {
  auto frame = paint(red);
  EXPECT_TRUE(loan->isLent());
  EXPECT_FALSE(support::waitReadable(wakeup->descriptor(), 0ms));
  frame.reset();
  EXPECT_FALSE(loan->isLent());
  EXPECT_TRUE(support::waitReadable(wakeup->descriptor(), 0ms));
}

}  // namespace
}  // namespace platform::linux::stream
