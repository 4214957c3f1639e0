// Threads: main thread only.
#pragma once

#import <ScreenCaptureKit/ScreenCaptureKit.h>

#include <functional>

#import "Tests/Mac/Fakes/World.h"

@interface SCContentFilter (Fake)
@property(readonly) std::uint32_t displayNumber;
@property(readonly) std::vector<std::uint32_t> excludedNumbers;
@end

namespace fake {

// Answers on a thread of the system's, now or when the test lets it.
void answer(const Answering& answering, std::function<void()> work);
void forgetStreams();
// That are there still.
[[nodiscard]] int liveStreams();

}  // namespace fake
