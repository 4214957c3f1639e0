// The commands that the menu, the hot keys and the command line share. Those that can show the live cover pass the
// permission gate first.
//
// Threads: main thread only. Lifetime: held by a shared pointer; the platform outlives it.
#pragma once

#include <memory>

#include "Platform/Platform.h"
#include "Quillfade/Application/Alerts.h"
#include "Quillfade/Application/PermissionGate.h"
#include "Quillfade/Basics/Outcome.h"
#include "Quillfade/Cover/OverlayController.h"
#include "Quillfade/Keys/HotKeyTable.h"
#include "Quillfade/Selection/RegionSelector.h"

namespace quillfade {

class Commands {
 public:
  Commands(platform::Platform& platform, std::shared_ptr<OverlayController> overlay,
           std::shared_ptr<RegionSelector> selector);
  Commands(const Commands&) = delete;
  Commands& operator=(const Commands&) = delete;

  void perform(HotKeyCommand command);
  Outcome toggleCover();
  void peek();
  Outcome wholeScreen();
  // Succeeds once the selection is on the screen, without waiting for the user to finish it.
  Outcome selectArea();
  void chooseStyle(const platform::MenuItem& item);
  // From the command line only. Unlike the menu, it can lead back from the solid cover to the live one, with
  // permission.
  Outcome requestStyle(CoverStyle style);
  void toggleOutline();
  void toggleLaunchAtLogin();
  void showAbout();
  void quit();

  [[nodiscard]] PermissionGate& gate() { return gate_; }

 private:
  [[nodiscard]] Outcome switchCover(bool on);

  platform::Platform& platform_;
  std::shared_ptr<OverlayController> overlay_;
  std::shared_ptr<RegionSelector> selector_;
  Alerts alerts_;
  PermissionGate gate_;
};

}  // namespace quillfade
