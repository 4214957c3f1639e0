#include "Platform/Mac/Session/Workspace.h"

#import <AppKit/AppKit.h>

#include <cstdlib>

#include "Platform/Mac/Foundation/Bridge.h"

namespace platform::mac::session {

void Workspace::openURL(const std::string& url) {
  NSURL* link = [NSURL URLWithString:foundation::nsString(url)];
  // The application's links are fixed texts: one that is not a URL is a bug in it.
  if (link == nil) std::abort();
  [[NSWorkspace sharedWorkspace] openURL:link];
}

}  // namespace platform::mac::session
