#include "Platform/Simulated/Dialogs.h"

namespace platform::simulated {

int Dialogs::runModal(const Alert& alert) {
  record_.call("dialogs: alert " + alert.messageText);
  if (runLoop_.isHeldUp()) misuse("an alert was shown by a posted job, which holds back all others");
  if (alert.buttons.empty()) misuse("Dialogs::runModal was given an alert without a button");
  alerts_.push_back(alert);
  if (duringAlert_) duringAlert_();
  const int last = alertFirstButtonReturn + static_cast<int>(alert.buttons.size()) - 1;
  if (answers_.empty()) return last;
  const int answer = answers_.front();
  answers_.pop_front();
  if (answer < alertFirstButtonReturn || answer > last) misuse("an alert was answered with a button that it lacks");
  return answer;
}

void Dialogs::orderFrontAboutPanel(const AboutPanel& panel) {
  record_.call("dialogs: about panel");
  aboutPanels_.push_back(panel);
}

}  // namespace platform::simulated
