#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <CoreVideo/CoreVideo.h>

typedef struct opaqueCMSampleBuffer* CMSampleBufferRef;

typedef NS_OPTIONS(uint32_t, CMTimeFlags) {
  kCMTimeFlags_Valid = 1,
};

typedef struct {
  int64_t value;
  int32_t timescale;
  CMTimeFlags flags;
  int64_t epoch;
} CMTime;

CMTime CMTimeMake(int64_t value, int32_t timescale);
Boolean CMSampleBufferIsValid(CMSampleBufferRef _Nonnull sbuf);
CFArrayRef _Nullable CMSampleBufferGetSampleAttachmentsArray(CMSampleBufferRef _Nonnull sbuf,
                                                             Boolean createIfNecessary);
