// The application object.
//
// Threads: main thread only.
// Ownership: AppKit holds its delegate weakly, so the forwarding delegate lives here.
// Lifetime: in practice `run` does not return, since AppKit ends the process when the application terminates.
#pragma once

#import <AppKit/AppKit.h>

#include <memory>

#include "Platform/Application.h"

@class QLFApplicationDelegate;

namespace platform::mac::toolkit {

class Application final : public platform::Application {
 public:
  Application();
  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override;
  void setActivationPolicy(ActivationPolicy policy) override;
  void run() override;
  void activateIgnoringOtherApps() override;
  void terminate() override;

 private:
  NSApplication* application_;
  QLFApplicationDelegate* delegate_ = nil;
};

}  // namespace platform::mac::toolkit
