#pragma once

#import <CoreMedia/CoreMedia.h>
#import <QuartzCore/QuartzCore.h>

#pragma clang assume_nonnull begin

typedef NSString* AVLayerVideoGravity;

extern AVLayerVideoGravity const AVLayerVideoGravityResize;
extern AVLayerVideoGravity const AVLayerVideoGravityResizeAspect;

typedef NS_ENUM(NSInteger, AVQueuedSampleBufferRenderingStatus) {
  AVQueuedSampleBufferRenderingStatusUnknown = 0,
  AVQueuedSampleBufferRenderingStatusRendering = 1,
  AVQueuedSampleBufferRenderingStatusFailed = 2,
};

@interface AVSampleBufferVideoRenderer : NSObject
@property(nonatomic, readonly) AVQueuedSampleBufferRenderingStatus status;
- (void)flush;
- (void)enqueueSampleBuffer:(CMSampleBufferRef)sampleBuffer;
@end

@interface AVSampleBufferDisplayLayer : CALayer
@property(copy) AVLayerVideoGravity videoGravity;
@property(nonatomic, readonly) AVSampleBufferVideoRenderer* sampleBufferRenderer;
@end

#pragma clang assume_nonnull end
