// Opening links with whatever the desktop opens them with.
//
// Threads: main thread only. Returns at once; a link that nothing opens is the adapter's to explain to the user.
#pragma once

#include <string>

namespace platform {

class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual void openURL(const std::string& url) = 0;
};

}  // namespace platform
