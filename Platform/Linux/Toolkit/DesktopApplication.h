// The application object: Qt's, as an accessory that lives in the tray and owns no main window.
//
// Threads: main thread only. Create it before anything else of Qt, and destroy it last. SIGTERM, SIGINT and SIGHUP end
// `run` as `terminate` does.
#pragma once

#include <QApplication>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Application.h"
#include "Platform/Linux/Toolkit/OffTaskLists.h"
#include "Platform/Linux/Toolkit/TerminationSignals.h"

namespace platform::linux::toolkit {

class DesktopApplication : public Application {
 public:
  // Without a desktop that Qt can reach, this ends the process with Qt's own explanation.
  explicit DesktopApplication(std::span<char* const> arguments);

  void setDelegate(std::weak_ptr<ApplicationDelegate> delegate) override { delegate_ = std::move(delegate); }
  // It only shows dialogs. Those of an accessory are on no task list, starting with the next one that opens.
  void setActivationPolicy(ActivationPolicy policy) override;
  void run() override;
  // Brings its dialogs to the front. Windows that open later come to the front by themselves.
  void activateIgnoringOtherApps() override;
  void terminate() override;

 private:
  std::vector<char*> arguments_;  // Qt keeps a reference to both
  int argumentCount_;
  std::optional<QApplication> application_;
  std::optional<TerminationSignals> signals_;
  std::optional<OffTaskLists> offTaskLists_;
  std::weak_ptr<ApplicationDelegate> delegate_;
};

}  // namespace platform::linux::toolkit
