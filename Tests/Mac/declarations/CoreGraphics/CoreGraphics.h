#pragma once

#import <CoreFoundation/CoreFoundation.h>

typedef struct CGColor* CGColorRef;
typedef SInt32 CGWindowLevel;
typedef UInt32 CGWindowID;
typedef UInt32 CGDirectDisplayID;

CGWindowLevel CGShieldingWindowLevel(void);
bool CGPreflightScreenCaptureAccess(void);
bool CGRequestScreenCaptureAccess(void);
CFDictionaryRef _Nullable CGSessionCopyCurrentDictionary(void);
