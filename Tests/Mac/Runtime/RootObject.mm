// The root class, counted by hand, and texts that the compiler made.
#import "Tests/Mac/Runtime/Runtime.h"

#include <atomic>
#include <cstdio>
#include <cstdlib>

namespace {

std::atomic<long> objects;

// A message that no fake answers is a hole in the fakes, or a mistake in the adapter.
id unanswered(id object, SEL selector, ...) {
  std::fprintf(stderr, "%s does not answer %s\n", class_getName(object_getClass(object)), sel_getName(selector));
  std::abort();
}

}  // namespace

long fake::liveObjects() { return objects; }

// What the runtime asks of a class whose objects are referred to weakly.
@interface NSObject (WeakReferences)
- (BOOL)allowsWeakReference;
- (BOOL)retainWeakReference;
@end

@implementation NSObject {
  int _moreOwners;  // beyond the first; below zero once the object goes
}

+ (void)load {
  objc_setForwardHandler(unanswered, unanswered);
}
+ (instancetype)alloc {
  ++objects;
  return objc_constructInstance(self, std::calloc(1, class_getInstanceSize(self)));
}
+ (Class)class {
  return self;
}
+ (id)retain {
  return self;
}
+ (void)release {
}
+ (id)autorelease {
  return self;
}

- (instancetype)init {
  return self;
}
- (instancetype)retain {
  if (__atomic_fetch_add(&_moreOwners, 1, __ATOMIC_RELAXED) < 0) {
    std::fprintf(stderr, "%s was retained after it went\n", class_getName(object_getClass(self)));
    std::abort();
  }
  return self;
}
- (void)release {
  if (__atomic_fetch_sub(&_moreOwners, 1, __ATOMIC_ACQ_REL) == 0) [self dealloc];
}
- (instancetype)autorelease {
  return _objc_rootAutorelease(self);
}
- (BOOL)allowsWeakReference {
  return YES;
}
- (BOOL)retainWeakReference {
  int owners = __atomic_load_n(&_moreOwners, __ATOMIC_RELAXED);
  while (owners >= 0) {
    if (__atomic_compare_exchange_n(&_moreOwners, &owners, owners + 1, true, __ATOMIC_ACQ_REL, __ATOMIC_RELAXED)) {
      return YES;
    }
  }
  return NO;
}
- (void)dealloc {
  --objects;
  std::free(objc_destructInstance(self));
}

- (BOOL)isKindOfClass:(Class)wanted {
  for (Class type = object_getClass(self); type != nil; type = class_getSuperclass(type)) {
    if (type == wanted) return YES;
  }
  return NO;
}
- (BOOL)respondsToSelector:(SEL)selector {
  return class_respondsToSelector(object_getClass(self), selector);
}
- (BOOL)conformsToProtocol:(Protocol*)protocol {
  for (Class type = object_getClass(self); type != nil; type = class_getSuperclass(type)) {
    if (class_conformsToProtocol(type, protocol)) return YES;
  }
  return NO;
}
- (BOOL)isEqual:(id)other {
  return self == other;
}
- (NSUInteger)hash {
  return reinterpret_cast<NSUInteger>(self);
}
- (id)copy {
  return [self retain];
}

@end

// A text that the compiler made has no owner and never goes.
@interface NSConstantString : NSString
@end

@implementation NSConstantString (WithoutOwner)
- (instancetype)retain {
  return self;
}
- (void)release {
}
- (instancetype)autorelease {
  return self;
}
- (BOOL)retainWeakReference {
  return YES;
}
@end
