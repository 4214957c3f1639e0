#include "Platform/Linux/Stream/Frame.h"

#include <utility>

#include "Platform/Linux/Stream/FrameLoan.h"

namespace platform::linux::stream {

Frame::Frame(std::shared_ptr<FrameLoan> loan, bool isWhole) : loan_(std::move(loan)), isWhole_(isWhole) {}

Frame::~Frame() {
  if (state_ != State::read) loan_->drop();
}

std::optional<std::vector<FrameInfo>> Frame::attachments() const {
  return std::vector<FrameInfo>{{static_cast<std::int64_t>(FrameStatus::complete)}};
}

std::uint64_t Frame::streamSerial() const { return loan_->streamSerial(); }

std::int32_t Frame::width() const { return loan_->width(); }

std::int32_t Frame::height() const { return loan_->height(); }

xcb_xfixes_region_t Frame::changedRegion() const { return std::as_const(*loan_).changed().id(); }

bool Frame::beginReading(xcb_connection_t* reader) const {
  if (state_ != State::untouched) return false;
  state_ = State::reading;
  loan_->awaitComposed(reader);
  return true;
}

// A window, or the stream itself, may have gone since the frame was planned: that step then paints nothing.
void Frame::paint(xcb_connection_t* reader, xcb_render_picture_t target, std::int32_t x, std::int32_t y) const {
  const auto offset = [](std::int32_t origin, std::int32_t place) { return static_cast<std::int16_t>(origin + place); };
  for (const compositor::PaintStep& step : loan_->steps()) {
    xcb_discard_reply(
        reader,
        xcb_xfixes_set_picture_clip_region_checked(reader, target, step.clip, offset(x, 0), offset(y, 0)).sequence);
    xcb_discard_reply(reader, xcb_render_composite_checked(reader, step.operation, step.source, step.mask, target,
                                                           step.sourceX, step.sourceY, 0, 0, offset(x, step.x),
                                                           offset(y, step.y), step.width, step.height)
                                  .sequence);
  }
}

void Frame::endReading(xcb_connection_t* reader, const std::optional<LiveTarget>& target) const {
  if (state_ != State::reading) return;
  state_ = State::read;
  loan_->finishReading(reader, target);
}

void Frame::endLive(xcb_connection_t* reader) const { loan_->endLive(reader); }

void Frame::requestWhole() const { loan_->requestWhole(); }

bool Frame::isLeftOver() const { return loan_->hasEnded(); }

void Frame::tookOverFrom(const Frame& older) const { loan_->tookOverFrom(older.loan_); }

}  // namespace platform::linux::stream
