// Layers, the transaction that keeps them from animating, and the layer of captured frames.
#import "Tests/Mac/Fakes/Layers.h"

#include <vector>

#import "Tests/Mac/Fakes/Bridge.h"
#import "Tests/Mac/Fakes/SampleBuffers.h"
#import "Tests/Mac/Fakes/World.h"

AVLayerVideoGravity const AVLayerVideoGravityResize = @"resize";
AVLayerVideoGravity const AVLayerVideoGravityResizeAspect = @"resize aspect";

namespace {
// One for each transaction that is open: whether it lets changes animate.
std::vector<bool> transactions;
bool nextFrameFails = false;
}  // namespace

void fake::World::failRenderer() { nextFrameFails = true; }

@implementation CATransaction
+ (void)begin {
  EXPECT_MAIN_THREAD();
  transactions.push_back(transactions.empty() || transactions.back());
}
+ (void)commit {
  EXPECT_MAIN_THREAD();
  if (transactions.empty()) fake::misuse("a commit without a transaction");
  transactions.pop_back();
}
+ (void)setDisableActions:(BOOL)disabled {
  EXPECT_MAIN_THREAD();
  if (transactions.empty()) fake::misuse("actions disabled outside of a transaction");
  transactions.back() = !disabled;
}
@end

@implementation CALayer {
  std::vector<CALayer*> _sublayers;
  id _background;  // kept, as the system keeps it
  id _border;
  CGRect _frame;
  CGFloat _borderWidth;
  BOOL _isBackingLayer;
 @protected
  BOOL _didAnimate;
}

+ (instancetype)layer {
  EXPECT_MAIN_THREAD();
  return [[self alloc] init];
}
- (void)dealloc {
  EXPECT_MAIN_THREAD();
}
- (void)becomeBackingLayer {
  _isBackingLayer = YES;
}
- (void)noteChange {
  _didAnimate |= !_isBackingLayer && (transactions.empty() || transactions.back());
}

- (void)addSublayer:(CALayer*)layer {
  EXPECT_MAIN_THREAD();
  if (layer == nil) fake::misuse("addSublayer: of nothing");
  _sublayers.push_back(layer);
}
- (const std::vector<CALayer*>&)sublayers {
  return _sublayers;
}
- (CGRect)frame {
  return _frame;
}
- (void)setFrame:(CGRect)frame {
  EXPECT_MAIN_THREAD();
  _frame = frame;
  [self noteChange];
}
- (CGFloat)borderWidth {
  return _borderWidth;
}
- (void)setBorderWidth:(CGFloat)width {
  EXPECT_MAIN_THREAD();
  _borderWidth = width;
}
- (CGColorRef)backgroundColor {
  return static_cast<CGColorRef>((__bridge void*)_background);
}
- (void)setBackgroundColor:(CGColorRef)color {
  EXPECT_MAIN_THREAD();
  _background = (__bridge id) static_cast<void*>(color);
}
- (CGColorRef)borderColor {
  return static_cast<CGColorRef>((__bridge void*)_border);
}
- (void)setBorderColor:(CGColorRef)color {
  EXPECT_MAIN_THREAD();
  _border = (__bridge id) static_cast<void*>(color);
}
- (std::string)backgroundWords {
  return wordsOf(self.backgroundColor);
}
- (std::string)borderWords {
  return wordsOf(self.borderColor);
}
- (fake::LayerLook)look {
  return {.frame = fake::rectOf(_frame), .didAnimate = static_cast<bool>(_didAnimate)};
}

@end

@interface AVSampleBufferVideoRenderer () {
 @public
  std::vector<int> frames;
  int flushes;
}
@end

@implementation AVSampleBufferVideoRenderer {
  AVQueuedSampleBufferRenderingStatus _status;
  id _shown;  // the last frame stays on the screen, and so in memory
}
- (void)dealloc {
  EXPECT_MAIN_THREAD();
}
- (AVQueuedSampleBufferRenderingStatus)status {
  EXPECT_MAIN_THREAD();
  return _status;
}
- (void)flush {
  EXPECT_MAIN_THREAD();
  frames.clear();
  ++flushes;
  _shown = nil;
  _status = AVQueuedSampleBufferRenderingStatusUnknown;
}
- (void)enqueueSampleBuffer:(CMSampleBufferRef)sampleBuffer {
  EXPECT_MAIN_THREAD();
  if (_status == AVQueuedSampleBufferRenderingStatusFailed) return;  // nothing is shown until a flush
  FakeSampleBuffer* sample = sampleOf(sampleBuffer);
  frames.push_back(sample->frame.number);
  _shown = sample;
  _status = std::exchange(nextFrameFails, false) ? AVQueuedSampleBufferRenderingStatusFailed
                                                 : AVQueuedSampleBufferRenderingStatusRendering;
}
@end

@implementation AVSampleBufferDisplayLayer {
  AVLayerVideoGravity _gravity;
  AVSampleBufferVideoRenderer* _renderer;
}
- (instancetype)init {
  EXPECT_MAIN_THREAD();
  self = [super init];
  if (self) {
    _gravity = AVLayerVideoGravityResizeAspect;
    _renderer = [[AVSampleBufferVideoRenderer alloc] init];
  }
  return self;
}
- (AVLayerVideoGravity)videoGravity {
  return _gravity;
}
- (void)setVideoGravity:(AVLayerVideoGravity)gravity {
  EXPECT_MAIN_THREAD();
  _gravity = gravity;
}
- (AVSampleBufferVideoRenderer*)sampleBufferRenderer {
  EXPECT_MAIN_THREAD();
  return _renderer;
}
- (fake::LayerLook)look {
  fake::LayerLook look = [super look];
  look.gravity = _gravity.text;
  look.frames = _renderer->frames;
  look.flushes = _renderer->flushes;
  return look;
}
@end
