#include "Platform/Mac/Capture/CaptureStream.h"

#include <utility>

#include "Platform/Mac/Capture/SampleBuffer.h"
#include "Platform/Mac/Foundation/Bridge.h"
#include "Platform/Mac/Foundation/RunLoop.h"

@interface QLFStreamForwarder : NSObject <SCStreamOutput, SCStreamDelegate>
- (instancetype)initWithDelegate:(std::weak_ptr<platform::StreamDelegate>)delegate;
// Only before the first frame; afterwards the output changes on its own queue.
- (void)open:(std::weak_ptr<platform::StreamOutput>)output;
// On the output's queue: no frame is forwarded from then on.
- (void)close;
@end

@implementation QLFStreamForwarder {
  std::weak_ptr<platform::StreamOutput> _output;
  std::weak_ptr<platform::StreamDelegate> _delegate;
}

- (instancetype)initWithDelegate:(std::weak_ptr<platform::StreamDelegate>)delegate {
  self = [super init];
  if (self) _delegate = std::move(delegate);
  return self;
}

- (void)open:(std::weak_ptr<platform::StreamOutput>)output {
  _output = std::move(output);
}

- (void)close {
  _output.reset();
}

- (void)stream:(SCStream*)stream didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer ofType:(SCStreamOutputType)type {
  if (const auto output = _output.lock()) {
    output->streamDidOutput(std::make_shared<platform::mac::capture::SampleBuffer>(sampleBuffer),
                            static_cast<platform::StreamOutputType>(type));
  }
}

- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error {
  if (const auto delegate = _delegate.lock()) delegate->streamDidStop(platform::mac::foundation::fromNSError(error));
}

@end

namespace platform::mac::capture {
namespace {

static_assert(static_cast<NSInteger>(StreamOutputType::screen) == SCStreamOutputTypeScreen);
static_assert(static_cast<NSInteger>(StreamOutputType::audio) == SCStreamOutputTypeAudio);

std::expected<void, Error> resultOf(NSError* error) {
  if (error == nil) return {};
  return std::unexpected(foundation::fromNSError(error));
}

Error noDisplay() { return {"The display to capture is no longer there."}; }

// Fails later than the call that was given the completion.
void failLater(platform::CaptureStream::Completion completion) {
  foundation::dispatchJob(dispatch_get_main_queue(),
                          [completion = std::move(completion)] { completion(std::unexpected(noDisplay())); });
}

}  // namespace

CaptureStream::CaptureStream(SCContentFilter* filter, SCStreamConfiguration* configuration,
                             std::weak_ptr<StreamDelegate> delegate)
    : forwarder_([[QLFStreamForwarder alloc] initWithDelegate:std::move(delegate)]) {
  if (filter == nil) return;
  stream_ = [[SCStream alloc] initWithFilter:filter configuration:configuration delegate:forwarder_];
}

CaptureStream::~CaptureStream() {
  if (isRunning_) stopCapture([](const std::expected<void, Error>&) {});
}

std::expected<void, Error> CaptureStream::addOutput(std::weak_ptr<StreamOutput> output, StreamOutputType type,
                                                    std::shared_ptr<platform::SerialQueue> queue) {
  if (stream_ == nil) return std::unexpected(noDisplay());
  [forwarder_ open:std::move(output)];
  // Every serial queue of this desktop comes from its run loop.
  queue_ = static_cast<const foundation::SerialQueue&>(*queue).queue();
  NSError* error = nil;
  if ([stream_ addStreamOutput:forwarder_
                          type:static_cast<SCStreamOutputType>(type)
            sampleHandlerQueue:queue_
                         error:&error]) {
    return {};
  }
  return std::unexpected(foundation::fromNSError(error));
}

void CaptureStream::startCapture(Completion completion) {
  if (stream_ == nil) return failLater(std::move(completion));
  isRunning_ = true;
  [stream_ startCaptureWithCompletionHandler:^(NSError* error) {
    completion(resultOf(error));
  }];
}

// The service shows every window that its filter does not name.
void CaptureStream::admit(const std::vector<std::uint32_t>& /*windowIDs*/) {}

void CaptureStream::stopCapture(Completion completion) {
  if (stream_ == nil || queue_ == nil) return failLater(std::move(completion));
  isRunning_ = false;
  QLFStreamForwarder* forwarder = forwarder_;
  SCStream* stream = stream_;
  dispatch_queue_t queue = queue_;
  [stream stopCaptureWithCompletionHandler:^(NSError* error) {
    // After the last frame in flight.
    dispatch_async(queue, ^{
      [forwarder close];
      completion(resultOf(error));
    });
  }];
}

}  // namespace platform::mac::capture
