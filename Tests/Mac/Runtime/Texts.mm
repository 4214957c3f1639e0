#include <functional>

#include "Platform/Utf8.h"
#import "Tests/Mac/Runtime/Foundation.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Runtime.h"

namespace {

// As the compiler lays out the texts of a program.
struct CompiledText {
  Class type;
  const char* bytes;
  unsigned length;
};

}  // namespace

@implementation NSString {
  std::string _text;
}

+ (NSString*)stringOf:(const std::string&)text {
  NSString* made = [[NSString alloc] init];
  made->_text = text;
  return made;
}

- (instancetype)initWithBytes:(const void*)bytes length:(NSUInteger)length encoding:(NSStringEncoding)encoding {
  if (encoding != NSUTF8StringEncoding) fake::misuse("another encoding than UTF-8");
  self = [super init];
  if (!self) return nil;
  _text.assign(static_cast<const char*>(bytes), length);
  return platform::isValidUtf8(_text) ? self : nil;
}

- (const char*)UTF8String {
  return _text.c_str();
}
- (std::string)text {
  return self.UTF8String;
}
- (BOOL)isEqual:(id)other {
  return [other isKindOfClass:[NSString class]] && self.text == static_cast<NSString*>(other).text;
}
- (NSUInteger)hash {
  return std::hash<std::string>{}(self.text);
}

@end

@interface NSConstantString : NSString
@end

@implementation NSConstantString
- (const char*)UTF8String {
  return reinterpret_cast<const CompiledText*>((__bridge const void*)self)->bytes;
}
@end
