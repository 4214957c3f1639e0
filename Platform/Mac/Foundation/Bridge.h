// Converts plain values between the ports and Foundation.
//
// Threads: any.
// Ownership: results are autoreleased or plain values.
// Failure: text that is not UTF-8 becomes the empty text, since AppKit accepts no null titles.
#pragma once

#import <Foundation/Foundation.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "Platform/Error.h"
#include "Platform/Geometry.h"

namespace platform::mac::foundation {

[[nodiscard]] NSString* nsString(std::string_view text);
[[nodiscard]] std::string stdString(NSString* text);
[[nodiscard]] NSData* nsData(std::string_view bytes);
[[nodiscard]] NSRect nsRect(const Rect& rect);
[[nodiscard]] Rect fromNSRect(NSRect rect);
[[nodiscard]] NSPoint nsPoint(Point point);
[[nodiscard]] Point fromNSPoint(NSPoint point);
[[nodiscard]] Error fromNSError(NSError* error);
// Absent unless the object is a number without a fraction.
[[nodiscard]] std::optional<std::int64_t> integerValue(id object);

}  // namespace platform::mac::foundation
