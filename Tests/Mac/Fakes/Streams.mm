// Streams of the capture service.
#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <atomic>
#include <memory>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/Capture.h"
#import "Tests/Mac/Fakes/SampleBuffers.h"
#import "Tests/Mac/Runtime/Dispatch.h"

using fake::StreamPhase;

namespace {

// What is remembered of every stream, also when it is gone.
struct Remembered {
  fake::StreamLook look;
  std::atomic<bool> isRunning{false};  // read on the queue that frames come on
  __weak SCStream* stream;
};
std::vector<std::shared_ptr<Remembered>>& streams() {
  static auto& made = *new std::vector<std::shared_ptr<Remembered>>;
  return made;
}
// The system's own hold on those that capture.
std::vector<SCStream*>& captured() {
  static auto& kept = *new std::vector<SCStream*>;
  return kept;
}
std::atomic<int> alive = 0;

std::string intervalWords(CMTime interval) {
  return std::to_string(interval.value) + '/' + std::to_string(interval.timescale);
}

}  // namespace

@implementation SCStream {
  std::shared_ptr<Remembered> _remembered;
  __weak id<SCStreamDelegate> _weakDelegate;
  id<SCStreamDelegate> _strongDelegate;
  id<SCStreamOutput> _output;
  dispatch_queue_t _queue;
}

- (instancetype)initWithFilter:(SCContentFilter*)filter
                 configuration:(SCStreamConfiguration*)configuration
                      delegate:(id<SCStreamDelegate>)delegate {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (!self) return nil;
  ++alive;
  _remembered = std::make_shared<Remembered>();
  _remembered->stream = self;
  _remembered->look = {.number = static_cast<int>(streams().size()) + 1,
                       .display = filter.displayNumber,
                       .excluded = filter.excludedNumbers,
                       .source = fake::rectOf(configuration.sourceRect),
                       .width = configuration.width,
                       .height = configuration.height,
                       .interval = intervalWords(configuration.minimumFrameInterval),
                       .pixelFormat = configuration.pixelFormat,
                       .showsCursor = static_cast<bool>(configuration.showsCursor),
                       .queueDepth = configuration.queueDepth};
  streams().push_back(_remembered);
  _weakDelegate = delegate;
  if (!fake::world().beliefs.streamHoldsDelegateWeakly) _strongDelegate = delegate;
  return self;
}
- (void)dealloc {
  --alive;
}

- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(dispatch_queue_t)queue
                  error:(NSError**)error {
  EXPECT_MAIN_THREAD();
  if (type != SCStreamOutputTypeScreen || queue == nil) fake::misuse("an output of another type, or without a queue");
  if (![static_cast<NSObject*>(output) conformsToProtocol:@protocol(SCStreamOutput)]) fake::misuse("this is no output");
  if (const auto& failure = fake::world().capture.outputFailure) {
    if (!failure->empty()) *error = [NSError errorOf:*failure];
    return NO;
  }
  _output = output;
  _queue = queue;
  return YES;
}

- (void)startCaptureWithCompletionHandler:(void (^)(NSError*))completion {
  EXPECT_MAIN_THREAD();
  if (_remembered->look.phase != StreamPhase::made) fake::misuse("a stream was started twice");
  if (_output == nil) fake::misuse("a stream was started without an output");
  const fake::Answering answering = fake::world().capture.start;
  _remembered->look.phase = answering.failure ? StreamPhase::failed : StreamPhase::running;
  _remembered->isRunning = !answering.failure;
  if (!answering.failure && fake::world().beliefs.systemKeepsRunningStreams) captured().push_back(self);
  NSError* error = answering.failure ? [NSError errorOf:*answering.failure] : nil;
  fake::answer(answering, [kept = [completion copy], error, stream = self] {
    (void)stream;  // a request keeps what it asks
    static_cast<void (^)(NSError*)>(kept)(error);
  });
}

- (void)stopCaptureWithCompletionHandler:(void (^)(NSError*))completion {
  EXPECT_MAIN_THREAD();
  const fake::Answering answering = fake::world().capture.stop;
  const bool wasRunning = _remembered->look.phase == StreamPhase::running;
  NSError* error = answering.failure ? [NSError errorOf:*answering.failure]
                   : wasRunning      ? nil
                                     : [NSError errorOf:"The stream is not running."];
  _remembered->look.phase = StreamPhase::stopping;
  std::erase(captured(), self);
  const auto remembered = _remembered;
  fake::answer(answering, [kept = [completion copy], error, stream = self, remembered] {
    (void)stream;
    remembered->isRunning = false;
    static_cast<void (^)(NSError*)>(kept)(error);
  });
}

- (void)deliver:(const fake::Frame&)frame evenStopped:(BOOL)evenStopped {
  FakeSampleBuffer* sample = [[FakeSampleBuffer alloc] initWithFrame:frame];
  const auto type = frame.isAudio ? SCStreamOutputTypeAudio : SCStreamOutputTypeScreen;
  const auto remembered = _remembered;
  id<SCStreamOutput> output = _output;
  SCStream* stream = self;
  // A frame that is under way when the stream is stopped still arrives.
  dispatch_async(_queue, ^{
    if (!remembered->isRunning && !evenStopped) return;
    const auto buffer = static_cast<CMSampleBufferRef>((__bridge void*)sample);
    [output stream:stream didOutputSampleBuffer:buffer ofType:type];
  });
}

- (void)endWith:(const std::string&)why {
  _remembered->look.phase = StreamPhase::stopped;
  _remembered->isRunning = false;
  std::erase(captured(), self);
  NSError* error = [NSError errorOf:why];
  id<SCStreamDelegate> delegate = _strongDelegate != nil ? _strongDelegate : _weakDelegate;
  SCStream* stream = self;
  fake::onSystemThread([delegate, error, stream] { [delegate stream:stream didStopWithError:error]; });
}

@end

@interface SCStream (Fake)
- (void)deliver:(const fake::Frame&)frame evenStopped:(BOOL)evenStopped;
- (void)endWith:(const std::string&)why;
@end

namespace fake {
namespace {

SCStream* streamNumbered(int number) {
  SCStream* stream = ::streams().at(static_cast<std::size_t>(number) - 1)->stream;
  if (stream == nil) misuse("stream " + std::to_string(number) + " is gone");
  return stream;
}

}  // namespace

void World::deliver(int stream, const Frame& frame) {
  event([&] {
    if (::streams().at(static_cast<std::size_t>(stream) - 1)->look.phase != StreamPhase::running) {
      misuse("a frame of a stream that does not run");
    }
    [streamNumbered(stream) deliver:frame evenStopped:NO];
  });
}

void World::deliverLate(int stream, const Frame& frame) {
  event([&] { [streamNumbered(stream) deliver:frame evenStopped:YES]; });
}

void World::endStream(int stream, const std::string& why) {
  event([&] { [streamNumbered(stream) endWith:why]; });
}

std::vector<StreamLook> World::streams() const {
  std::vector<StreamLook> looks;
  @autoreleasepool {
    for (const auto& remembered : ::streams()) {
      looks.push_back(remembered->look);
      looks.back().isAlive = remembered->stream != nil;
    }
  }
  return looks;
}

std::vector<int> World::runningStreams() const {
  std::vector<int> running;
  for (const auto& look : streams()) {
    if (look.phase == StreamPhase::running) running.push_back(look.number);
  }
  return running;
}

void forgetStreams() {
  captured().clear();
  ::streams().clear();
}

int liveStreams() { return alive; }

}  // namespace fake
