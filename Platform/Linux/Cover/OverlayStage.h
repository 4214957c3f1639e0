// Our windows that lie over everything else, as a group: their events, and their place on top.
//
// Threads: main thread only. Ownership: keeps references to everything that it is given; the windows' owners add and
// remove them.
#pragma once

#include <xcb/xcb.h>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <vector>

#include "Platform/Linux/Cover/ManagerEcho.h"
#include "Platform/Linux/Cover/OverlayWindow.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/StackKeeper.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/RunLoop.h"

namespace platform::linux::cover {

class OverlayStage {
 public:
  OverlayStage(xcb::Connection& connection, const scene::Scene& scene, scene::WindowList& windows, RunLoop& runLoop);
  ~OverlayStage();
  OverlayStage(const OverlayStage&) = delete;
  OverlayStage& operator=(const OverlayStage&) = delete;

  void add(OverlayWindow& window);
  void remove(OverlayWindow& window);
  // Shows the window on top of everything that it may lie above.
  void orderFront(OverlayWindow& window);

  // `mayOverlap` says which windows that could be lock screens ours may lie above. `reconsider` asks it again.
  void setMayOverlap(std::function<bool(const CaptureWindow&)> mayOverlap);
  void reconsider();

  // Whether the scene still lacks a window that was ordered to the front, or such a window is not painted yet.
  [[nodiscard]] bool awaitsWindows() const { return !awaited_.empty() || !heldBack_.empty(); }

  // Call it after the scene and the window list have seen the event.
  void handle(const xcb_generic_event_t& event);
  // Call it after each batch of events.
  void settle();

 private:
  void keepOnTop();
  [[nodiscard]] bool managerMissesFirstPictures();
  void releaseOnceKnown(OverlayWindow& window);

  xcb::Connection& connection_;
  const scene::Scene& scene_;
  scene::WindowList& windowList_;
  RunLoop& runLoop_;
  scene::StackKeeper keeper_;
  std::vector<OverlayWindow*> windows_;
  std::set<xcb_window_t> awaited_;
  std::optional<bool> managerMissesFirstPictures_;  // absent while nobody says
  ManagerEcho echo_;
  // The windows that are held back, and the number of the question whose answer releases each.
  std::map<xcb_window_t, std::uint64_t> heldBack_;
  std::uint64_t questions_ = 0;
  bool mayHaveChanged_ = false;
  std::shared_ptr<DelayedTask> again_;
};

}  // namespace platform::linux::cover
