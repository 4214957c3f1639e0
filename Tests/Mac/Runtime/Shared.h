// The one object of a class that everybody shares: made when it is first asked for, gone with the world of a test.
//
// Threads: any.
#pragma once

#ifdef __OBJC__
#import <Foundation/Foundation.h>

namespace fake {
[[nodiscard]] id sharedObject(Class type);
}  // namespace fake
#endif

namespace fake {
void dropSharedObjects();
}  // namespace fake
