#pragma once

#import <CoreFoundation/CoreFoundation.h>

enum : OSType {
  kCVPixelFormatType_32BGRA = 0x42475241,
};
