#include "Platform/Linux/X11/Frame.h"

#include <utility>

#include "Platform/Linux/X11/FrameBuffer.h"

namespace platform::x11 {

Frame::Frame(std::shared_ptr<FrameBuffer> buffer, bool isWhole) : buffer_(std::move(buffer)), isWhole_(isWhole) {}

Frame::~Frame() {
  if (state_ != State::read) buffer_->drop();
}

std::optional<std::vector<FrameInfo>> Frame::attachments() const {
  return std::vector<FrameInfo>{{static_cast<std::int64_t>(FrameStatus::complete)}};
}

std::uint64_t Frame::streamSerial() const { return buffer_->streamSerial(); }

xcb_pixmap_t Frame::pixmap() const { return buffer_->pixmap(); }

std::uint8_t Frame::depth() const { return buffer_->depth(); }

xcb_render_pictformat_t Frame::format() const { return buffer_->format(); }

std::int32_t Frame::width() const { return buffer_->width(); }

std::int32_t Frame::height() const { return buffer_->height(); }

xcb_xfixes_region_t Frame::changedRegion() const { return buffer_->changed().id(); }

bool Frame::beginReading(xcb_connection_t* reader) const {
  if (state_ != State::untouched) return false;
  state_ = State::reading;
  buffer_->awaitComposed(reader);
  return true;
}

void Frame::endReading(xcb_connection_t* reader) const {
  if (state_ != State::reading) return;
  state_ = State::read;
  buffer_->finishReading(reader);
}

void Frame::requestWhole() const { buffer_->requestWhole(); }

}  // namespace platform::x11
