// Captured frames.
//
// Threads: any.
#pragma once

#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>

#import "Tests/Mac/Fakes/World.h"

@interface FakeSampleBuffer : NSObject {
 @public
  fake::Frame frame;
}
- (instancetype)initWithFrame:(const fake::Frame&)carried;
@property(readonly) NSArray* attachments;
@end

[[nodiscard]] inline FakeSampleBuffer* sampleOf(CMSampleBufferRef buffer) {
  return (__bridge FakeSampleBuffer*)static_cast<void*>(buffer);
}
