// Alerts and the About panel as Qt dialogs, above everything else.
//
// An alert that the end of the process interrupts never answers: no choice is made in the user's name, let alone
// stored. The process then ends at once, with status 0.
#pragma once

#include <QDialog>
#include <QPointer>

#include "Platform/Dialogs.h"

namespace platform::linux::widgets {

class DesktopDialogs : public Dialogs {
 public:
  DesktopDialogs() = default;
  ~DesktopDialogs() override;
  DesktopDialogs(const DesktopDialogs&) = delete;
  DesktopDialogs& operator=(const DesktopDialogs&) = delete;

  int runModal(const Alert& alert) override;
  void orderFrontAboutPanel(const AboutPanel& panel) override;

 private:
  QPointer<QDialog> about_;
};

}  // namespace platform::linux::widgets
