// Opens links on this desktop.
//
// A link into the system settings opens the desktop's own settings program, and a message that says what the display
// lacks, since that is why the user was sent to the settings.
#pragma once

#include <QMessageBox>
#include <QPointer>
#include <string>
#include <vector>

#include "Platform/Workspace.h"

namespace platform::linux::session {

class DesktopWorkspace : public Workspace {
 public:
  // Takes the names of the X extensions that capturing needs and this display lacks.
  explicit DesktopWorkspace(std::vector<std::string> missingExtensions);
  ~DesktopWorkspace() override;
  DesktopWorkspace(const DesktopWorkspace&) = delete;
  DesktopWorkspace& operator=(const DesktopWorkspace&) = delete;

  void openURL(const std::string& url) override;

 private:
  void openSettings();
  void explain();

  std::vector<std::string> missingExtensions_;
  QPointer<QMessageBox> explanation_;
};

// One sentence on what is missing and one on how to get it.
[[nodiscard]] std::string explanationOf(const std::vector<std::string>& missingExtensions);

}  // namespace platform::linux::session
