#pragma once

#import <CoreGraphics/CoreGraphics.h>
#import <CoreMedia/CoreMedia.h>
#import <Foundation/Foundation.h>

#pragma clang assume_nonnull begin

@class SCStream;

typedef NSString* SCStreamFrameInfo;

extern SCStreamFrameInfo const SCStreamFrameInfoStatus;

typedef NS_ENUM(NSInteger, SCStreamOutputType) {
  SCStreamOutputTypeScreen = 0,
  SCStreamOutputTypeAudio = 1,
};

typedef NS_ENUM(NSInteger, SCFrameStatus) {
  SCFrameStatusComplete = 0,
  SCFrameStatusIdle = 1,
  SCFrameStatusBlank = 2,
  SCFrameStatusSuspended = 3,
  SCFrameStatusStarted = 4,
  SCFrameStatusStopped = 5,
};

@interface SCRunningApplication : NSObject
@property(readonly) NSString* bundleIdentifier;
@end

@interface SCWindow : NSObject
@property(readonly) CGWindowID windowID;
@property(readonly) CGRect frame;
@property(readonly) NSInteger windowLayer;
@property(nullable, readonly) SCRunningApplication* owningApplication;
@property(readonly, getter=isOnScreen) BOOL onScreen;
@end

@interface SCDisplay : NSObject
@property(readonly) CGDirectDisplayID displayID;
@end

@interface SCShareableContent : NSObject
@property(readonly) NSArray<SCWindow*>* windows;
@property(readonly) NSArray<SCDisplay*>* displays;
+ (void)getShareableContentExcludingDesktopWindows:(BOOL)excludeDesktopWindows
                               onScreenWindowsOnly:(BOOL)onScreenWindowsOnly
                                 completionHandler:(void (^)(SCShareableContent* _Nullable shareableContent,
                                                             NSError* _Nullable error))completionHandler;
@end

@interface SCContentFilter : NSObject
- (instancetype)initWithDisplay:(SCDisplay*)display excludingWindows:(NSArray<SCWindow*>*)excluded;
@end

@interface SCStreamConfiguration : NSObject
@property(nonatomic, assign) size_t width;
@property(nonatomic, assign) size_t height;
@property(nonatomic, assign) CMTime minimumFrameInterval;
@property(nonatomic, assign) OSType pixelFormat;
@property(nonatomic, assign) BOOL showsCursor;
@property(nonatomic, assign) CGRect sourceRect;
@property(nonatomic, assign) NSInteger queueDepth;
@end

// Optional in the system's own headers. Required here, so that a class which forgets one fails the check.
@protocol SCStreamOutput <NSObject>
- (void)stream:(SCStream*)stream didOutputSampleBuffer:(CMSampleBufferRef)sampleBuffer ofType:(SCStreamOutputType)type;
@end

@protocol SCStreamDelegate <NSObject>
- (void)stream:(SCStream*)stream didStopWithError:(NSError*)error;
@end

@interface SCStream : NSObject
- (instancetype)initWithFilter:(SCContentFilter*)contentFilter
                 configuration:(SCStreamConfiguration*)streamConfig
                      delegate:(nullable id<SCStreamDelegate>)delegate;
- (BOOL)addStreamOutput:(id<SCStreamOutput>)output
                   type:(SCStreamOutputType)type
     sampleHandlerQueue:(nullable dispatch_queue_t)sampleHandlerQueue
                  error:(NSError**)error;
- (void)startCaptureWithCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
- (void)stopCaptureWithCompletionHandler:(nullable void (^)(NSError* _Nullable error))completionHandler;
@end

#pragma clang assume_nonnull end
