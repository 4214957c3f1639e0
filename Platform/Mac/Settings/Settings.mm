#include "Platform/Mac/Settings/Settings.h"

#import <Foundation/Foundation.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::settings {
namespace {

// Foundation keeps Booleans as numbers of a type of their own.
bool isBool(id object) { return CFGetTypeID((__bridge CFTypeRef)object) == CFBooleanGetTypeID(); }

}  // namespace

std::optional<SettingValue> Settings::object(const std::string& key) const {
  id stored = [[NSUserDefaults standardUserDefaults] objectForKey:foundation::nsString(key)];
  if (stored == nil) return std::nullopt;
  if ([stored isKindOfClass:[NSString class]]) return foundation::stdString(stored);
  if (isBool(stored)) return foundation::integerValue(stored) == 1;
  if (const auto integer = foundation::integerValue(stored)) return *integer;
  if ([stored isKindOfClass:[NSNumber class]]) return static_cast<NSNumber*>(stored).doubleValue;
  return std::nullopt;
}

void Settings::set(const std::string& key, SettingValue value) {
  NSUserDefaults* defaults = [NSUserDefaults standardUserDefaults];
  NSString* name = foundation::nsString(key);
  if (const auto* boolean = std::get_if<bool>(&value)) {
    [defaults setBool:*boolean forKey:name];
  } else if (const auto* integer = std::get_if<std::int64_t>(&value)) {
    [defaults setInteger:*integer forKey:name];
  } else if (const auto* number = std::get_if<double>(&value)) {
    [defaults setObject:[NSNumber numberWithDouble:*number] forKey:name];
  } else {
    [defaults setObject:foundation::nsString(std::get<std::string>(value)) forKey:name];
  }
}

}  // namespace platform::mac::settings
