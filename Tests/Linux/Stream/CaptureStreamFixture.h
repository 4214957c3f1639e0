// Streams against a real X server, read as the mirror window reads them: on a connection of the reader's own, clipped
// to what each frame says has changed.
#pragma once

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

}  // namespace platform::linux::stream
