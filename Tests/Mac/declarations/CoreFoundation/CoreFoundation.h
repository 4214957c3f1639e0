#pragma once

#import <objc/objc.h>

typedef const void* CFTypeRef;
typedef const struct __CFArray* CFArrayRef;
typedef unsigned long CFTypeID;
typedef unsigned char Boolean;
typedef unsigned int UInt32;
typedef int SInt32;
typedef unsigned int OSType;
typedef int OSStatus;
typedef double CGFloat;

struct CGPoint {
  CGFloat x;
  CGFloat y;
};
typedef struct CGPoint CGPoint;

struct CGSize {
  CGFloat width;
  CGFloat height;
};
typedef struct CGSize CGSize;

struct CGRect {
  CGPoint origin;
  CGSize size;
};
typedef struct CGRect CGRect;

CFTypeID CFGetTypeID(CFTypeRef cf);
CFTypeID CFBooleanGetTypeID(void);
CFTypeRef CFRetain(CFTypeRef cf);
void CFRelease(CFTypeRef cf);
