// The one picture of a stream, in the X server, and the loan of it to one frame at a time.
//
// Threads: the stream's thread paints, lends and reclaims; the frame that has the loan may live on another thread. Only
// the state of the loan is shared, under a lock.
// Units and axes: device pixels, origin at the picture's top-left corner.
// Ownership: shared by the stream and its frames; it keeps the connection, and so the picture, alive. Destroying it
// waits for the server, a second at most, if a reader's last requests may still be on their way there. Failure: `make`
// says why there is no picture.
#pragma once

#include <xcb/render.h>
#include <xcb/sync.h>
#include <xcb/xcb.h>

#include <cstdint>
#include <expected>
#include <memory>
#include <mutex>

#include "Platform/Error.h"
#include "Platform/Linux/X11/Connection.h"
#include "Platform/Linux/X11/Region.h"
#include "Platform/Linux/X11/Wakeup.h"

namespace platform::x11 {

class Frame;

class FrameBuffer : public std::enable_shared_from_this<FrameBuffer> {
 public:
  // `wakeup` is notified when a loan ends and when a whole frame is asked for.
  static std::expected<std::shared_ptr<FrameBuffer>, Error> make(std::shared_ptr<Connection> connection,
                                                                 std::int32_t width, std::int32_t height,
                                                                 std::uint64_t streamSerial,
                                                                 std::shared_ptr<Wakeup> wakeup);
  ~FrameBuffer();
  FrameBuffer(const FrameBuffer&) = delete;
  FrameBuffer& operator=(const FrameBuffer&) = delete;

  [[nodiscard]] std::uint64_t streamSerial() const { return streamSerial_; }
  [[nodiscard]] std::int32_t width() const { return width_; }
  [[nodiscard]] std::int32_t height() const { return height_; }
  [[nodiscard]] std::uint8_t depth() const { return connection_->rootDepth(); }
  [[nodiscard]] xcb_render_pictformat_t format() const {
    return connection_->formatOfVisual(connection_->rootVisual());
  }
  [[nodiscard]] xcb_pixmap_t pixmap() const { return pixmap_; }
  [[nodiscard]] const Region& changed() const { return changed_; }

  // The stream's side.
  [[nodiscard]] xcb_render_picture_t picture() const { return picture_; }
  [[nodiscard]] bool isLent() const;
  // Once for each time that frames asked for a whole one.
  [[nodiscard]] bool takeWholeRequest();
  // Before painting, while nothing is lent: puts what follows behind all that the last reader sent.
  void reclaim();
  // After painting: what `painted` holds is added to the changes that no reader has seen yet.
  [[nodiscard]] std::shared_ptr<const Frame> lend(const Region& painted, bool isWhole);

  // The side of the frame that has the loan.
  void awaitComposed(xcb_connection_t* reader) const;
  void finishReading(xcb_connection_t* reader);
  void drop();
  void requestWhole();

 private:
  enum class Loan : std::uint8_t { none, lent, read, dropped };

  FrameBuffer(std::shared_ptr<Connection> connection, std::int32_t width, std::int32_t height,
              std::uint64_t streamSerial, std::shared_ptr<Wakeup> wakeup);
  void createFences();
  void destroyFences();
  void awaitRead();
  void endLoan(Loan outcome);

  std::shared_ptr<Connection> connection_;
  const std::int32_t width_;
  const std::int32_t height_;
  const std::uint64_t streamSerial_;
  std::shared_ptr<Wakeup> wakeup_;
  xcb_pixmap_t pixmap_;
  xcb_render_picture_t picture_;
  xcb_sync_fence_t composed_ = 0;
  xcb_sync_fence_t consumed_ = 0;
  Region changed_;
  bool isEverythingChanged_ = true;

  mutable std::mutex mutex_;
  Loan loan_ = Loan::none;
  bool isWholeRequested_ = false;
};

}  // namespace platform::x11
