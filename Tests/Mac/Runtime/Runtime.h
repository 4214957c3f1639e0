// The Objective-C runtime's own functions, as far as they are used, and what the declarations leave out of the root
// class.
//
// Threads: any.
#pragma once

#import <Foundation/Foundation.h>

extern "C" {
using Method = id (*)(id, SEL, ...);

id objc_constructInstance(Class type, void* bytes);
void* objc_destructInstance(id object);
unsigned long class_getInstanceSize(Class type);
Class class_getSuperclass(Class type);
const char* class_getName(Class type);
bool class_isMetaClass(Class type);
Method class_getMethodImplementation(Class type, SEL selector);
bool class_respondsToSelector(Class type, SEL selector);
bool class_conformsToProtocol(Class type, Protocol* protocol);
Class object_getClass(id object);
const char* sel_getName(SEL selector);
id _objc_rootAutorelease(id object);
void* objc_autoreleasePoolPush(void);
void objc_autoreleasePoolPop(void* pool);
void objc_setForwardHandler(Method handler, Method handlerForStructures);
void objc_exception_throw(id object);
Method objc_msg_lookup(id object, SEL selector);
Method objc_msg_lookup_stret(id object, SEL selector);
}

@interface NSObject (Runtime)
- (BOOL)respondsToSelector:(SEL)selector;
- (BOOL)conformsToProtocol:(Protocol*)protocol;
- (BOOL)isEqual:(id)other;
- (NSUInteger)hash;
- (id)copy;
#if !__has_feature(objc_arc)
- (instancetype)retain;
- (void)release;
- (instancetype)autorelease;
- (void)dealloc;
#endif
@end

namespace fake {

// Objects and blocks that are alive.
[[nodiscard]] long liveObjects();
[[nodiscard]] long liveBlocks();

// Sends a message without arguments but the sender, as controls do.
inline void sendAction(id target, SEL action, id sender) {
  using Action = void (*)(id, SEL, id);
  reinterpret_cast<Action>(reinterpret_cast<void*>(objc_msg_lookup(target, action)))(target, action, sender);
}

}  // namespace fake
