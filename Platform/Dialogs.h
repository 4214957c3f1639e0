// Alerts and the About panel.
//
// Threads: main thread only. An alert is modal: the call returns once the user has answered. Posted work and timers go
// on meanwhile.
// Texts: UTF-8, with an empty line between paragraphs.
#pragma once

#include <string>
#include <vector>

#include "Platform/Color.h"

namespace platform {

struct Alert {
  std::string messageText;
  std::string informativeText;
  std::vector<std::string> buttons;  // the first is the default
};

// `runModal` returns this for the first button, one more for the second, and so on. A closed alert returns what its
// last button would.
inline constexpr int alertFirstButtonReturn = 1000;

struct AboutPanel {
  std::string applicationName;
  std::string applicationVersion;
  std::string version;
  std::string credits;
  double creditsFontSize = 0;  // points, system font
  Color creditsColor;
};

class Dialogs {
 public:
  virtual ~Dialogs() = default;
  virtual int runModal(const Alert& alert) = 0;
  // Shows the one About panel, or brings it to the front. Returns at once.
  virtual void orderFrontAboutPanel(const AboutPanel& panel) = 0;
};

}  // namespace platform
