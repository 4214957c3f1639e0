// Alerts and the standard About panel.
//
// Threads: main thread only.
#pragma once

#include "Platform/Dialogs.h"

namespace platform::mac::windows {

class Dialogs final : public platform::Dialogs {
 public:
  int runModal(const Alert& alert) override;
  void orderFrontAboutPanel(const AboutPanel& panel) override;
};

}  // namespace platform::mac::windows
