// Alerts and the About panel.
//
// Threads: main thread only. An alert is modal: the call returns when the user answered it; posted work and timers go
// on meanwhile. Texts are UTF-8; paragraphs are separated by an empty line.
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

// What `runModal` answers for the first button; the second gives one more, and so on. A closed alert answers as its
// last button does.
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
