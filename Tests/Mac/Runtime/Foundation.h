// Foundation's plain values, and their way from and to those of the language.
//
// Threads: any.
#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

@interface NSString (Fake)
+ (NSString*)stringOf:(const std::string&)text;
@property(readonly) std::string text;
@end

@interface NSNumber (Fake)
+ (NSNumber*)numberOfTruth:(BOOL)value;
@property(readonly) BOOL isTruth;
@end

@interface NSArray (Fake)
+ (NSArray*)arrayOf:(const std::vector<id>&)items;
@property(readonly) const std::vector<id>& items;
@end

@interface NSDictionary (Fake)
@property(readonly) NSUInteger size;
@end

@interface NSError (Fake)
+ (NSError*)errorOf:(const std::string&)description;
@end

@interface NSException (Fake)
// Without a reason when the text is empty.
+ (NSException*)exceptionNamed:(const std::string&)name reason:(const std::string&)reason;
@end

@interface NSURL (Fake)
@property(readonly) std::string path;  // of a file; of any other, the whole link
@end

@interface NSData (Fake)
@property(readonly) const std::string& content;
@end
