// Opening links.
//
// Threads: main thread only.
#pragma once

#include "Platform/Workspace.h"

namespace platform::mac::session {

class Workspace final : public platform::Workspace {
 public:
  void openURL(const std::string& url) override;
};

}  // namespace platform::mac::session
