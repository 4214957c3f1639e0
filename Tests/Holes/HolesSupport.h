// What the tests of holes share.
#pragma once

#include <gtest/gtest.h>
#include <xcb/shape.h>

#include <deque>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Replies.h"
#include "Platform/RunLoop.h"
#include "Tests/Support/Picture.h"

namespace platform::linux::holes {

// A connection on which every error that nobody expected fails the test.
inline std::unique_ptr<xcb::Connection> connectTo(const std::string& display) {
  auto connection = xcb::Connection::open(display);
  if (!connection) throw std::runtime_error(connection.error().localizedDescription);
  (*connection)->setUnexpectedErrorHandler([](const xcb_generic_error_t& error) {
    ADD_FAILURE() << "X error " << int{error.error_code} << " of request " << int{error.major_code} << "."
                  << error.minor_code << ", resource " << error.resource_id;
  });
  return std::move(*connection);
}

// A window's bounding shape as the server tells it; absent when it has none.
inline std::optional<std::vector<support::PixelRect>> shapeOf(xcb_connection_t* connection, xcb_window_t window) {
  const auto extents =
      xcb::awaitReply(connection, xcb_shape_query_extents_reply, xcb_shape_query_extents(connection, window));
  if (!extents || extents->bounding_shaped == 0) return std::nullopt;
  const auto reply = xcb::awaitReply(connection, xcb_shape_get_rectangles_reply,
                                     xcb_shape_get_rectangles(connection, window, XCB_SHAPE_SK_BOUNDING));
  std::vector<support::PixelRect> rectangles;
  for (int i = 0; i < xcb_shape_get_rectangles_rectangles_length(reply.get()); ++i) {
    const xcb_rectangle_t& rect = xcb_shape_get_rectangles_rectangles(reply.get())[i];
    rectangles.push_back({rect.x, rect.y, rect.width, rect.height});
  }
  return rectangles;
}

inline std::size_t sizeOf(const support::PixelRect& rect) {
  return std::size_t{static_cast<unsigned>(rect.width)} * static_cast<unsigned>(rect.height);
}

// Does what it is given when the test says so.
class ManualRunLoop final : public RunLoop {
 public:
  void post(Job job) override { posted_.push_back(std::move(job)); }
  std::shared_ptr<DelayedTask> after(double /*seconds*/, Job job) override {
    delayed_.push_back(std::move(job));
    return std::make_shared<Task>();
  }
  std::shared_ptr<Timer> every(double /*seconds*/, Job /*job*/) override { throw std::logic_error("Nobody repeats."); }
  void addToCommonModes(Timer& /*timer*/) override {}
  std::shared_ptr<SerialQueue> makeSerialQueue(const std::string& /*label*/, QualityOfService /*quality*/) override {
    throw std::logic_error("Nobody needs a queue.");
  }

  void run() {
    while (!posted_.empty()) {
      const Job job = std::move(posted_.front());
      posted_.pop_front();
      job();
    }
  }
  // What was delayed is due.
  void advance() {
    for (const Job& job : std::exchange(delayed_, {})) job();
    run();
  }

 private:
  class Task final : public DelayedTask {
   public:
    void cancel() override { throw std::logic_error("Nobody cancels."); }
  };

  std::deque<Job> posted_;
  std::vector<Job> delayed_;
};

}  // namespace platform::linux::holes
