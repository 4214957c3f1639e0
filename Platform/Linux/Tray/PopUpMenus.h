// Sees from the windows on screen when other programs' menus have closed: many a tray's host never reports it.
//
// Threads: main thread, on the main connection. Ownership: keeps references to the scene and the window list, which
// must outlive it. Costs nothing while nobody waits for a menu.
#pragma once

#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowList.h"
#include "Platform/Linux/Tray/HostMenus.h"

namespace platform::linux::tray {

class PopUpMenus final : public HostMenus {
 public:
  PopUpMenus(const scene::Scene& scene, scene::WindowList& windows) : scene_(scene), windows_(windows) {}

  void whenClosed(std::function<void()> callback) override;
  [[nodiscard]] bool isSeen() const override { return closed_ && wasOpen_; }

  // To be called after each batch of events.
  void settle();

 private:
  [[nodiscard]] bool isMenu(const scene::SceneWindow& window) const;

  const scene::Scene& scene_;
  scene::WindowList& windows_;
  std::function<void()> closed_;
  bool wasOpen_ = false;
};

}  // namespace platform::linux::tray
