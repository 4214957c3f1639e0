// One frame that a stream lends to whoever shows it: not pixels, but how to paint what has changed since the last one,
// straight from the windows' own pixels to where it is seen. So each pixel is copied once, inside the X server.
//
// A stream lends to one reader at a time: it plans the next frame after this one was read or dropped. Reading is
// ordered by fences inside the server, without waiting in either process:
//   if (frame.beginReading(connection)) { frame.paint(connection, picture, x, y); frame.endReading(connection); }
// Windows draw on while a frame is read: what is painted is never older than the frame, and what is newer comes again.
//
// Threads: a frame may travel between threads; read it on the thread of the reader's connection. `requestWhole` is
// free. Units and axes: device pixels, origin at the frame's top-left corner, y down. Ownership: shared. Reading a
// frame of a stream that has ended does no harm, and paints what is still there to be painted. Releasing the last frame
// of a stream that has ended may wait for the server, a second at most, until what was sent to read it has been carried
// out. Lifetime: `changedRegion` may be named in requests between `beginReading` and `endReading` only. Failure: a
// frame that was never read, or not to its end, counts as dropped: the next one carries its changes.
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

  // Grows from stream to stream, so that a late frame of an older stream can be told.
  [[nodiscard]] std::uint64_t streamSerial() const;
  [[nodiscard]] std::int32_t width() const;
  [[nodiscard]] std::int32_t height() const;
  // What differs from the last frame of this stream that was read; everything when `isWhole`.
  [[nodiscard]] xcb_xfixes_region_t changedRegion() const;
  [[nodiscard]] bool isWhole() const { return isWhole_; }

  // The requests that follow on this connection see the finished picture. False, and nothing was sent, when the frame
  // was read before.
  [[nodiscard]] bool beginReading(xcb_connection_t* reader) const;
  // Paints what has changed, the frame's corner at (x, y). Leaves the picture with another clip. Between the two
  // others.
  void paint(xcb_connection_t* reader, xcb_render_picture_t target, std::int32_t x, std::int32_t y) const;
  // Sends everything off and gives the loan back to the stream. Only after `beginReading` on the same connection. With
  // a target, the stream itself paints there what changes from now on, and lends no more frames.
  void endReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target = std::nullopt) const;
  // The stream paints to no target any more, and lends frames again. Requests that follow on this connection, the one
  // that frames are read on, are carried out after all that the stream has painted.
  void endLive(xcb_connection_t* reader) const;
  // Asks the stream for a further frame in which everything counts as changed; if it has ended, the one that it took
  // over from.
  void requestWhole() const;
  // Whether its stream has ended.
  [[nodiscard]] bool isLeftOver() const;
  // Its stream is shown where that of the other frame was, which is older and still runs. When it ends, the older one
  // is asked for a whole frame.
  void tookOverFrom(const Frame& older) const;

 private:
  enum class State : std::uint8_t { untouched, reading, read };

  std::shared_ptr<FrameLoan> loan_;
  bool isWhole_;
  mutable State state_ = State::untouched;
};

}  // namespace platform::linux::stream
