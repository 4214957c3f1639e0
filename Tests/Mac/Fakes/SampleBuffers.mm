#import "Tests/Mac/Fakes/SampleBuffers.h"

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#import "Tests/Mac/Fakes/Bridge.h"

SCStreamFrameInfo const SCStreamFrameInfoStatus = @"SCStreamUpdateFrameStatus";

namespace {

NSDictionary* attachmentOf(const fake::Frame& frame) {
  id status = nil;
  if (const auto* number = std::get_if<std::int64_t>(&frame.status)) status = [NSNumber numberWithLongLong:*number];
  if (const auto* number = std::get_if<double>(&frame.status)) status = [NSNumber numberWithDouble:*number];
  if (const auto* text = std::get_if<std::string>(&frame.status)) status = [NSString stringOf:*text];
  return status != nil ? @{SCStreamFrameInfoStatus : status} : @{};
}

}  // namespace

@implementation FakeSampleBuffer {
  NSArray* _attachments;
}
- (instancetype)initWithFrame:(const fake::Frame&)carried {
  self = [super init];
  if (!self) return nil;
  frame = carried;
  if (carried.isForeign) {
    _attachments = @[ @"foreign" ];
  } else if (carried.hasAttachments) {
    _attachments = carried.isEmpty ? @[] : @[ attachmentOf(carried) ];
  }
  return self;
}
- (NSArray*)attachments {
  return _attachments;
}
@end

Boolean CMSampleBufferIsValid(CMSampleBufferRef buffer) { return sampleOf(buffer)->frame.isValid ? 1 : 0; }

CFArrayRef CMSampleBufferGetSampleAttachmentsArray(CMSampleBufferRef buffer, Boolean createIfNecessary) {
  if (createIfNecessary != 0) fake::misuse("attachments made for a frame that has none");
  return (__bridge CFArrayRef)sampleOf(buffer).attachments;
}

CMTime CMTimeMake(int64_t value, int32_t timescale) {
  return {.value = value, .timescale = timescale, .flags = kCMTimeFlags_Valid, .epoch = 0};
}
