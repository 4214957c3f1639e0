#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::foundation {

NSString* nsString(std::string_view text) {
  NSString* made = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:NSUTF8StringEncoding];
  return made != nil ? made : @"";
}

std::string stdString(NSString* text) {
  const char* utf8 = text.UTF8String;
  return utf8 != nullptr ? utf8 : "";
}

NSData* nsData(std::string_view bytes) { return [NSData dataWithBytes:bytes.data() length:bytes.size()]; }

NSRect nsRect(const Rect& rect) {
  return {.origin = {.x = rect.origin.x, .y = rect.origin.y},
          .size = {.width = rect.size.width, .height = rect.size.height}};
}

Rect fromNSRect(NSRect rect) { return {{rect.origin.x, rect.origin.y}, {rect.size.width, rect.size.height}}; }

NSPoint nsPoint(Point point) { return {.x = point.x, .y = point.y}; }

Point fromNSPoint(NSPoint point) { return {point.x, point.y}; }

Error fromNSError(NSError* error) {
  return {error != nil ? stdString(error.localizedDescription) : std::string{"The system gave no reason."}};
}

std::optional<std::int64_t> integerValue(id object) {
  if (![object isKindOfClass:[NSNumber class]]) return std::nullopt;
  NSNumber* number = object;
  const std::int64_t value = number.longLongValue;
  if (![number isEqualToNumber:[NSNumber numberWithLongLong:value]]) return std::nullopt;
  return value;
}

}  // namespace platform::mac::foundation
