// Queues and blocks. The objects of this library are Objective-C objects.
#pragma once

#import <objc/objc.h>

#pragma clang assume_nonnull begin

@class NSObject;
@protocol OS_dispatch_queue;
@protocol OS_dispatch_queue_attr;

typedef NSObject<OS_dispatch_queue>* dispatch_queue_t;
typedef NSObject<OS_dispatch_queue_attr>* dispatch_queue_attr_t;
typedef void (^dispatch_block_t)(void);
typedef void (*dispatch_function_t)(void* _Nullable context);
typedef uint64_t dispatch_time_t;

typedef NS_ENUM(unsigned int, qos_class_t) {
  QOS_CLASS_USER_INTERACTIVE = 33,
};

typedef NS_OPTIONS(unsigned long, dispatch_block_flags_t) {
  DISPATCH_BLOCK_BARRIER = 1,
};

#define DISPATCH_QUEUE_SERIAL nullptr
#define DISPATCH_TIME_NOW 0ull
#define NSEC_PER_SEC 1000000000ull

dispatch_queue_t dispatch_get_main_queue(void);
dispatch_queue_t dispatch_queue_create(const char* _Nullable label, dispatch_queue_attr_t _Nullable attr);
dispatch_queue_attr_t dispatch_queue_attr_make_with_qos_class(dispatch_queue_attr_t _Nullable attr,
                                                              qos_class_t qos_class, int relative_priority);
void dispatch_async(dispatch_queue_t queue, dispatch_block_t block);
void dispatch_async_f(dispatch_queue_t queue, void* _Nullable context, dispatch_function_t work);
dispatch_time_t dispatch_time(dispatch_time_t when, int64_t delta);
void dispatch_after(dispatch_time_t when, dispatch_queue_t queue, dispatch_block_t block);
dispatch_block_t dispatch_block_create(dispatch_block_flags_t flags, dispatch_block_t block);
void dispatch_block_cancel(dispatch_block_t block);

#pragma clang assume_nonnull end
