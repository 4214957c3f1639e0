// The running application as the desktop sees it.
//
// Threads: main thread only; the delegate is called there too.
// Ownership: the application does not own its delegate.
#pragma once

#include <memory>

namespace platform {

enum class ActivationPolicy : int {
  regular = 0,
  accessory = 1,  // not listed among the running applications, no menu bar; may still show windows
  prohibited = 2,
};

class ApplicationDelegate {
 public:
  virtual ~ApplicationDelegate() = default;
  // Called once, from inside `run`, when the desktop is ready for windows and status items.
  virtual void applicationDidFinishLaunching() = 0;
};

class Application {
 public:
  virtual ~Application() = default;
  virtual void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) = 0;
  virtual void setActivationPolicy(ActivationPolicy policy) = 0;
  // Returns once the application has been terminated.
  virtual void run() = 0;
  // Brings the application in front of all others, so that its next window or alert gets the keyboard.
  virtual void activateIgnoringOtherApps() = 0;
  virtual void terminate() = 0;
};

}  // namespace platform
