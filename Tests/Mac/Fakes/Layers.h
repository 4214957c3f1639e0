// Threads: main thread only.
#pragma once

#import <AVFoundation/AVFoundation.h>

#import "Tests/Mac/Fakes/Looks.h"

@interface CALayer (Fake)
// The layer that AppKit makes for a view changes without animation.
- (void)becomeBackingLayer;
@property(readonly) fake::LayerLook look;
@property(readonly) const std::vector<CALayer*>& sublayers;
@property(readonly) std::string backgroundWords;
@property(readonly) std::string borderWords;
@end
