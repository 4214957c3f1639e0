// Opens links with whatever the desktop uses for them.
//
// Threads: main thread only. Returns at once. When nothing opens a link, the adapter tells the user.
#pragma once

#include <string>

namespace platform {

class Workspace {
 public:
  virtual ~Workspace() = default;
  virtual void openURL(const std::string& url) = 0;
};

}  // namespace platform
