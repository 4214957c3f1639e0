// One complete picture that a stream lends to whoever shows it. The pixels stay in the X server.
//
// A stream has one picture and lends it to one reader at a time: it composes the next frame after this one was read or
// dropped. Reading is ordered by fences inside the server, without waiting in either process:
//   if (frame.beginReading(connection)) { copy from pixmap() clipped to changedRegion(); frame.endReading(connection);
//   }
//
// Threads: a frame may travel between threads; read it on the thread of the reader's connection. `requestWhole` is
// free. Units and axes: device pixels, origin at the frame's top-left corner, y down. Ownership: shared. A frame keeps
// the stream's picture alive, also beyond the end of its stream: reading it then copies the last picture that was
// composed. Releasing the last frame of a stream that has ended may wait for the server, a second at most, until what
// was sent to read it has been carried out. Lifetime: `pixmap` and `changedRegion` may be named in requests between
// `beginReading` and `endReading` only. Failure: a frame that was never read, or not to its end, counts as dropped: the
// next one carries its changes.
#pragma once

#include <xcb/render.h>
#include <xcb/xcb.h>
#include <xcb/xfixes.h>

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

#include "Platform/Capture.h"

namespace platform::x11 {

class FrameBuffer;

class Frame final : public SampleBuffer {
 public:
  Frame(std::shared_ptr<FrameBuffer> buffer, bool isWhole);
  ~Frame() override;
  Frame(const Frame&) = delete;
  Frame& operator=(const Frame&) = delete;

  [[nodiscard]] bool isValid() const override { return true; }
  [[nodiscard]] std::optional<std::vector<FrameInfo>> attachments() const override;

  // Grows from stream to stream, so that a late frame of an older stream can be told.
  [[nodiscard]] std::uint64_t streamSerial() const;
  [[nodiscard]] xcb_pixmap_t pixmap() const;
  [[nodiscard]] std::uint8_t depth() const;
  [[nodiscard]] xcb_render_pictformat_t format() const;
  [[nodiscard]] std::int32_t width() const;
  [[nodiscard]] std::int32_t height() const;
  // What differs from the last frame of this stream that was read; everything when `isWhole`.
  [[nodiscard]] xcb_xfixes_region_t changedRegion() const;
  [[nodiscard]] bool isWhole() const { return isWhole_; }

  // The requests that follow on this connection see the finished picture. False, and nothing was sent, when the frame
  // was read before.
  [[nodiscard]] bool beginReading(xcb_connection_t* reader) const;
  // Sends everything off and gives the picture back to the stream. Only after `beginReading` on the same connection.
  void endReading(xcb_connection_t* reader) const;
  // Asks the stream, if it still runs, for a further frame in which everything counts as changed.
  void requestWhole() const;

 private:
  enum class State : std::uint8_t { untouched, reading, read };

  std::shared_ptr<FrameBuffer> buffer_;
  bool isWhole_;
  mutable State state_ = State::untouched;
};

}  // namespace platform::x11
