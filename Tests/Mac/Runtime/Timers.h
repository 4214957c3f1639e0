// Threads: main thread only.
#pragma once

#ifdef __OBJC__
#import <Foundation/Foundation.h>

@interface NSTimer (Fake)
- (void)joinCommonModes;
@end
#endif

namespace fake {

// That are still to fire.
[[nodiscard]] int liveTimers();

}  // namespace fake
