// One frame that a stream lends to whoever shows it: not pixels, but how to paint what has changed since the last one,
// from the windows' own pixels straight to the screen. So each pixel is copied once, inside the X server.
//
// A stream lends to one reader at a time: it plans the next frame after this one was read or dropped. Fences inside the
// server order the reading; neither process waits:
//   if (frame.beginReading(connection)) { frame.paint(connection, picture, x, y); frame.endReading(connection); }
// Windows may draw while a frame is read. What is painted is never older than the frame, and what is newer comes again.
//
// Threads: a frame may travel between threads; read it on the thread of the reader's connection. `requestWhole` may be
// called on any.
// Units and axes: device pixels, origin at the frame's top-left corner, y down.
// Ownership: shared. Reading a frame of a stream that has ended does no harm, and paints what can still be painted.
// Releasing the last frame of such a stream may wait for the server, at most a second, until the reader's requests have
// been carried out.
// Lifetime: requests may name `changedRegion` between `beginReading` and `endReading` only.
// Failure: a frame that was never read, or not to its end, counts as dropped: the next one carries its changes.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Linux/Stream/LiveTarget.h"

namespace platform::linux::stream {

class FrameLoan;

class Frame final : public SampleBuffer {
 public:
  Frame(std::shared_ptr<FrameLoan> loan, bool isWhole);
  ~Frame() override;
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override;

  // Grows from stream to stream, so that a late frame of an older stream can be recognised.
  [[nodiscard]] std::uint64_t streamSerial() const;
  [[nodiscard]] std::int32_t width() const;
  [[nodiscard]] std::int32_t height() const;
  // What differs from the last frame of this stream that was read; everything when `isWhole`.
  [[nodiscard]] xcb_xfixes_region_t changedRegion() const;
  [[nodiscard]] bool isWhole() const { return isWhole_; }

  // Later requests on this connection see the finished picture. Returns false, and sends nothing, if the frame was read
  // before.
  [[nodiscard]] bool beginReading(xcb_connection_t* reader) const;
  // Paints what has changed, with the frame's corner at (x, y). Replaces the picture's clip. Call it between the other
  // two.
  void paint(xcb_connection_t* reader, xcb_render_picture_t target, std::int32_t x, std::int32_t y) const;
  // Sends everything off and returns the loan to the stream. Only after `beginReading` on the same connection. With a
  // target, the stream itself paints later changes there and lends no more frames.
  void endReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target = std::nullopt) const;
  // The stream stops painting to a target and lends frames again. Later requests on this connection, the one that reads
  // frames, are carried out after everything that the stream has painted.
  void endLive(xcb_connection_t* reader) const;
  // Asks the stream for another frame, in which everything counts as changed; if the stream has ended, asks the one
  // that it took over from.
  void requestWhole() const;
  // Whether its stream has ended.
  [[nodiscard]] bool isLeftOver() const;
  // This stream is now shown where that of the older frame was, which still runs. When this stream ends, the older one
  // is asked for a whole frame.
  void tookOverFrom(const Frame& older) const;

 private:
  enum class State : std::uint8_t { untouched, reading, read };

  std::shared_ptr<FrameLoan> loan_;
  bool isWhole_;
  mutable State state_ = State::untouched;
};

}  // namespace platform::linux::stream
