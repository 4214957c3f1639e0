// Opening links on this desktop.
//
// A link into the system settings becomes the desktop's own settings program, and a message that says what the display
// lacks, since that is what the user was sent to the settings for.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <string>
#include <vector>

#include "Platform/Workspace.h"

namespace platform::linux::session {

class DesktopWorkspace : public Workspace {
 public:
  // The X extensions that capturing needs and that this display does not have, by name; and what else stands in the
  // way of capturing, if anything, which no settings program could change.
  explicit DesktopWorkspace(std::vector<std::string> missingExtensions, std::string obstacle = {});
  ~DesktopWorkspace() override;
  DesktopWorkspace(const DesktopWorkspace&) = delete;
  DesktopWorkspace& operator=(const DesktopWorkspace&) = delete;

  void openURL(const std::string& url) override;

 private:
  void openSettings();
  void explain();

  std::vector<std::string> missingExtensions_;
  std::string obstacle_;
  QPointer<QMessageBox> explanation_;
};

// One sentence on what is missing and one on how to get it.
[[nodiscard]] std::string explanationOf(const std::vector<std::string>& missingExtensions);

}  // namespace platform::linux::session
