// Numbers, errors, exceptions, links.
#include <variant>

#import "Tests/Mac/Runtime/Foundation.h"
#import "Tests/Mac/Runtime/Recorder.h"
#import "Tests/Mac/Runtime/Runtime.h"

@implementation NSNumber {
  std::variant<bool, long long, double> _value;
}

+ (NSNumber*)numberWithLongLong:(long long)value {
  NSNumber* made = [[NSNumber alloc] init];
  made->_value = value;
  return made;
}
+ (NSNumber*)numberWithDouble:(double)value {
  NSNumber* made = [[NSNumber alloc] init];
  made->_value = value;
  return made;
}
+ (NSNumber*)numberOfTruth:(BOOL)value {
  NSNumber* made = [[NSNumber alloc] init];
  made->_value = static_cast<bool>(value);
  return made;
}

- (double)doubleValue {
  return std::visit([](auto value) { return static_cast<double>(value); }, _value);
}
- (long long)longLongValue {
  if (const auto* number = std::get_if<double>(&_value)) {
    // As the processor converts what does not fit.
    constexpr double limit = 9.2e18;
    return *number > limit || *number < -limit || *number != *number ? static_cast<long long>(1ULL << 63U)
                                                                     : static_cast<long long>(*number);
  }
  return std::visit([](auto value) { return static_cast<long long>(value); }, _value);
}
- (unsigned int)unsignedIntValue {
  return static_cast<unsigned int>(self.longLongValue);
}
- (BOOL)isEqualToNumber:(NSNumber*)number {
  const auto* mine = std::get_if<double>(&_value);
  const auto* other = std::get_if<double>(&number->_value);
  if (mine != nullptr || other != nullptr) return self.doubleValue == number.doubleValue;
  return self.longLongValue == number.longLongValue;
}
- (BOOL)isTruth {
  return std::holds_alternative<bool>(_value);
}

@end

namespace {
constexpr CFTypeID truthType = 21;
constexpr CFTypeID otherType = 1;
}  // namespace

CFTypeID CFGetTypeID(CFTypeRef reference) {
  id object = (__bridge id)reference;
  return [object isKindOfClass:[NSNumber class]] && static_cast<NSNumber*>(object).isTruth ? truthType : otherType;
}
CFTypeID CFBooleanGetTypeID(void) { return truthType; }
CFTypeRef CFRetain(CFTypeRef reference) { return (__bridge_retained CFTypeRef)(__bridge id)reference; }
void CFRelease(CFTypeRef reference) { (void)(__bridge_transfer id) const_cast<void*>(reference); }

@implementation NSError {
  NSString* _description;
}
+ (NSError*)errorOf:(const std::string&)description {
  NSError* made = [[NSError alloc] init];
  made->_description = [NSString stringOf:description];
  return made;
}
- (NSString*)localizedDescription {
  return _description;
}
@end

@implementation NSException {
  NSString* _name;
  NSString* _reason;
}
+ (NSException*)exceptionNamed:(const std::string&)name reason:(const std::string&)reason {
  NSException* made = [[NSException alloc] init];
  made->_name = [NSString stringOf:name];
  if (!reason.empty()) made->_reason = [NSString stringOf:reason];
  return made;
}
- (NSExceptionName)name {
  return _name;
}
- (NSString*)reason {
  return _reason;
}
@end

@implementation NSURL {
  std::string _path;
}
+ (instancetype)URLWithString:(NSString*)text {
  // As much of the grammar as the application's links need: a scheme comes first.
  const std::string link = text.text;
  if (link.find(':') == std::string::npos || link.find(' ') != std::string::npos) return nil;
  NSURL* made = [[self alloc] init];
  made->_path = link;
  return made;
}
+ (NSURL*)fileURLWithPath:(NSString*)path {
  NSURL* made = [[self alloc] init];
  made->_path = path.text;
  return made;
}
- (std::string)path {
  return _path;
}
@end
