#include "Platform/Mac/Capture/SampleBuffer.h"

#import <Foundation/Foundation.h>
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::capture {
namespace {

static_assert(static_cast<NSInteger>(FrameStatus::complete) == SCFrameStatusComplete);
static_assert(static_cast<NSInteger>(FrameStatus::idle) == SCFrameStatusIdle);
static_assert(static_cast<NSInteger>(FrameStatus::blank) == SCFrameStatusBlank);
static_assert(static_cast<NSInteger>(FrameStatus::suspended) == SCFrameStatusSuspended);
static_assert(static_cast<NSInteger>(FrameStatus::started) == SCFrameStatusStarted);
static_assert(static_cast<NSInteger>(FrameStatus::stopped) == SCFrameStatusStopped);

}  // namespace

SampleBuffer::SampleBuffer(CMSampleBufferRef buffer) : buffer_(buffer) { CFRetain(buffer_); }

SampleBuffer::~SampleBuffer() { CFRelease(buffer_); }

bool SampleBuffer::isValid() const { return CMSampleBufferIsValid(buffer_) != 0; }

std::optional<std::vector<FrameInfo>> SampleBuffer::attachments() const {
  NSArray* array = (__bridge NSArray*)CMSampleBufferGetSampleAttachmentsArray(buffer_, false);
  if (array == nil) return std::nullopt;
  std::vector<FrameInfo> infos;
  for (id element in array) {
    if (![element isKindOfClass:[NSDictionary class]]) return std::nullopt;
    NSDictionary* attachment = element;
    infos.push_back({foundation::integerValue([attachment objectForKey:SCStreamFrameInfoStatus])});
  }
  return infos;
}

}  // namespace platform::mac::capture
