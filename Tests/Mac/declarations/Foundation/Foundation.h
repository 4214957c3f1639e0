#pragma once

#import <CoreFoundation/CoreFoundation.h>
#import <dispatch/dispatch.h>

#pragma clang assume_nonnull begin

@class NSArray<__covariant ObjectType>;
@class NSDictionary<__covariant KeyType, __covariant ObjectType>;
@class NSString;

typedef CGPoint NSPoint;
typedef CGSize NSSize;
typedef CGRect NSRect;
typedef double NSTimeInterval;
typedef NSUInteger NSStringEncoding;
typedef NSString* NSNotificationName;
typedef NSString* NSRunLoopMode;
typedef NSString* NSExceptionName;
typedef NSString* NSAttributedStringKey;

typedef struct {
  unsigned long state;
  id _Nullable __unsafe_unretained* _Nullable itemsPtr;
  unsigned long* _Nullable mutationsPtr;
  unsigned long extra[5];
} NSFastEnumerationState;

enum : NSStringEncoding {
  NSUTF8StringEncoding = 4,
};

typedef NS_OPTIONS(NSUInteger, NSDataWritingOptions) {
  NSDataWritingAtomic = 1,
};

extern NSRunLoopMode const NSRunLoopCommonModes;

NSString* NSHomeDirectory(void);

@protocol NSObject
- (BOOL)isKindOfClass:(Class)aClass;
@end

@protocol NSCopying
@end

@protocol NSFastEnumeration
- (NSUInteger)countByEnumeratingWithState:(NSFastEnumerationState*)state
                                  objects:(id _Nullable __unsafe_unretained[])buffer
                                    count:(NSUInteger)len;
@end

__attribute__((objc_root_class))
@interface NSObject<NSObject>
+ (instancetype)alloc;
- (instancetype)init;
+ (Class)class;
@end

@interface NSString : NSObject <NSCopying>
@property(nullable, readonly) const char* UTF8String;
- (nullable instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)len encoding:(NSStringEncoding)encoding;
@end

@interface NSAttributedString : NSObject
- (instancetype)initWithString:(NSString*)str attributes:(nullable NSDictionary<NSAttributedStringKey, id>*)attrs;
@end

@interface NSNumber : NSObject
@property(readonly) long long longLongValue;
@property(readonly) unsigned int unsignedIntValue;
@property(readonly) double doubleValue;
+ (NSNumber*)numberWithLongLong:(long long)value;
+ (NSNumber*)numberWithDouble:(double)value;
- (BOOL)isEqualToNumber:(NSNumber*)number;
@end

@interface NSArray<__covariant ObjectType> : NSObject <NSFastEnumeration>
@property(nullable, nonatomic, readonly) ObjectType firstObject;
+ (instancetype)array;
+ (instancetype)arrayWithObjects:(const ObjectType _Nonnull[])objects count:(NSUInteger)cnt;
@end

@interface NSMutableArray<ObjectType> : NSArray <ObjectType>
- (void)addObject:(ObjectType)anObject;
@end

@interface NSDictionary<__covariant KeyType, __covariant ObjectType> : NSObject
- (nullable ObjectType)objectForKey:(KeyType)aKey;
+ (instancetype)dictionaryWithObjects:(const ObjectType _Nonnull[])objects
                              forKeys:(const KeyType<NSCopying> _Nonnull[])keys
                                count:(NSUInteger)cnt;
@end

@interface NSError : NSObject
@property(readonly, copy) NSString* localizedDescription;
@end

@interface NSException : NSObject
@property(readonly, copy) NSExceptionName name;
@property(nullable, readonly, copy) NSString* reason;
@end

@interface NSURL : NSObject
+ (nullable instancetype)URLWithString:(NSString*)URLString;
+ (NSURL*)fileURLWithPath:(NSString*)path;
@end

@interface NSData : NSObject
@property(readonly) NSUInteger length;
@property(readonly) const void* bytes;
+ (instancetype)dataWithBytes:(nullable const void*)bytes length:(NSUInteger)length;
- (BOOL)writeToURL:(NSURL*)url options:(NSDataWritingOptions)writeOptionsMask error:(NSError**)errorPtr;
@end

@interface NSFileManager : NSObject
@property(class, readonly, strong) NSFileManager* defaultManager;
- (BOOL)fileExistsAtPath:(NSString*)path;
@end

@interface NSFileHandle : NSObject
+ (nullable instancetype)fileHandleForWritingToURL:(NSURL*)url error:(NSError**)error;
- (unsigned long long)seekToEndOfFile;
- (void)writeData:(NSData*)data;
- (BOOL)closeAndReturnError:(NSError**)error;
@end

@interface NSUserDefaults : NSObject
@property(class, readonly, strong) NSUserDefaults* standardUserDefaults;
- (nullable id)objectForKey:(NSString*)defaultName;
- (void)setObject:(nullable id)value forKey:(NSString*)defaultName;
- (void)setInteger:(NSInteger)value forKey:(NSString*)defaultName;
- (void)setBool:(BOOL)value forKey:(NSString*)defaultName;
@end

@interface NSProcessInfo : NSObject
@property(class, readonly, strong) NSProcessInfo* processInfo;
@property(readonly, copy) NSDictionary<NSString*, NSString*>* environment;
@end

@interface NSBundle : NSObject
@property(class, readonly, strong) NSBundle* mainBundle;
@property(nullable, readonly, copy) NSString* bundleIdentifier;
@end

@interface NSNotification : NSObject
@end

@interface NSNotificationCenter : NSObject
@property(class, readonly, strong) NSNotificationCenter* defaultCenter;
- (void)addObserver:(id)observer
           selector:(SEL)aSelector
               name:(nullable NSNotificationName)aName
             object:(nullable id)anObject;
@end

typedef NS_ENUM(NSUInteger, NSNotificationSuspensionBehavior) {
  NSNotificationSuspensionBehaviorDeliverImmediately = 4,
};

@interface NSDistributedNotificationCenter : NSNotificationCenter
+ (NSDistributedNotificationCenter*)defaultCenter;
- (void)addObserver:(id)observer
              selector:(SEL)selector
                  name:(nullable NSNotificationName)name
                object:(nullable NSString*)object
    suspensionBehavior:(NSNotificationSuspensionBehavior)suspensionBehavior;
@end

@interface NSTimer : NSObject
+ (NSTimer*)scheduledTimerWithTimeInterval:(NSTimeInterval)interval
                                   repeats:(BOOL)repeats
                                     block:(void (^)(NSTimer* timer))block;
- (void)invalidate;
@end

@interface NSRunLoop : NSObject
@property(class, readonly, strong) NSRunLoop* mainRunLoop;
- (void)addTimer:(NSTimer*)timer forMode:(NSRunLoopMode)mode;
@end

#pragma clang assume_nonnull end
