#include "Platform/Mac/Foundation/Process.h"

#import <Foundation/Foundation.h>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::foundation {
namespace {

std::optional<std::string> optionalString(NSString* text) {
  if (text == nil) return std::nullopt;
  return stdString(text);
}

}  // namespace

std::optional<std::string> Process::environmentVariable(const std::string& name) const {
  return optionalString([[[NSProcessInfo processInfo] environment] objectForKey:nsString(name)]);
}

std::optional<std::string> Process::bundleIdentifier() const {
  return optionalString([NSBundle mainBundle].bundleIdentifier);
}

std::string Process::homeDirectory() const { return stdString(NSHomeDirectory()); }

}  // namespace platform::mac::foundation
