// Alerts that a script answers at once, and the About panel.
//
// Threads: main thread only.
#pragma once

#include <deque>
#include <functional>
#include <vector>

#include "Platform/Dialogs.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Simulated/RunLoop.h"

namespace platform::simulated {

class Dialogs final : public platform::Dialogs {
 public:
  Dialogs(Record& record, const RunLoop& runLoop) : record_(record), runLoop_(runLoop) {}

  int runModal(const Alert& alert) override;
  void orderFrontAboutPanel(const AboutPanel& panel) override;

  // Queues an answer. An alert without one is closed.
  void answerWith(int response) { answers_.push_back(response); }
  // What happens while an alert is up; called once for each.
  void setDuringAlert(std::function<void()> work) { duringAlert_ = std::move(work); }

  [[nodiscard]] const std::vector<Alert>& alerts() const { return alerts_; }
  [[nodiscard]] const std::vector<AboutPanel>& aboutPanels() const { return aboutPanels_; }

 private:
  Record& record_;
  const RunLoop& runLoop_;
  std::deque<int> answers_;
  std::function<void()> duringAlert_;
  std::vector<Alert> alerts_;
  std::vector<AboutPanel> aboutPanels_;
};

}  // namespace platform::simulated
