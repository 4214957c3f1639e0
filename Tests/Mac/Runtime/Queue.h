// What stands for the queues of dispatch.
//
// Threads: any.
#pragma once

#import <Foundation/Foundation.h>

#import "Tests/Mac/Runtime/Dispatch.h"

@protocol OS_dispatch_queue
@end
@protocol OS_dispatch_queue_attr
@end

@interface FakeQueueAttributes : NSObject <OS_dispatch_queue_attr>
@end

@interface FakeQueue : NSObject <OS_dispatch_queue>
+ (FakeQueue*)mainQueue;
- (instancetype)initWithLabel:(const char*)label;
// The work keeps the queue until it has run.
- (void)push:(fake::Work)work;
@end
