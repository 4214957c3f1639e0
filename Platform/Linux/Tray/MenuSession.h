// One opening of a menu, from beginning to end, whatever the program that shows it reports.
//
// A tray's host shows the menu in another process. It may ask for the content without opening anything, report an
// opening twice, never report the end, or go away in between. Even so, each beginning has exactly one end.
// Threads: main thread only; both callbacks come there, from inside the calls below or from the run loop.
#pragma once

#include <functional>
#include <memory>

#include "Platform/Linux/Tray/HostMenus.h"
#include "Platform/RunLoop.h"

namespace platform::linux::tray {

class MenuSession {
 public:
  // For hosts whose menu neither reports its closing nor can be seen on screen: long enough for anyone to read a dozen
  // lines and choose, short enough that whatever waits for the closing is not given up for lost.
  static constexpr double longestUnreportedOpening = 60;

  // Much longer than a message takes from one program to another, yet no long wait for the cover.
  static constexpr double longestWaitForChoice = 0.1;

  // GNOME's host announces openings while it loads the menu of an icon that is new to it. That takes less, even on a
  // busy machine, and hardly anybody opens the menu so soon.
  static constexpr double longestLoading = 3;

  // `isShownHere`: whether this process has the menu on screen, whichever program asked for it.
  MenuSession(RunLoop& runLoop, HostMenus& hostMenus, std::function<bool()> isShownHere, std::function<void()> willOpen,
              std::function<void()> didClose);
  // Ends the current opening.
  ~MenuSession();
  MenuSession(const MenuSession&) = delete;
  MenuSession& operator=(const MenuSession&) = delete;

  // A visible menu, here or on the screen, may stay open as long as the user likes: its end is noticed. A new opening
  // ends the current one first, whose closing was not reported: the new one needs fresh content.
  enum class Closing { reported, perhapsUnreported };
  // False if this is none, but a host that loads the menu.
  bool open(Closing closing);
  // Call it when a host that announces openings while it loads a menu gets to know this one.
  void hostLoads();
  // Harmless when nothing is open.
  void close();
  // The menu has left the screen. Hosts report that before or after the choice; a choice that is on its way ends the
  // opening itself.
  void closeUnlessChosen();
  [[nodiscard]] bool isOpen() const { return isOpen_; }

 private:
  RunLoop& runLoop_;
  HostMenus& hostMenus_;
  std::function<bool()> isShownHere_;
  std::function<void()> willOpen_;
  std::function<void()> didClose_;
  std::shared_ptr<DelayedTask> loading_;
  std::shared_ptr<DelayedTask> limit_;
  std::shared_ptr<DelayedTask> ending_;
  bool isOpen_ = false;
};

}  // namespace platform::linux::tray
