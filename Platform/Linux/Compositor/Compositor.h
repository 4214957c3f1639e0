// Paints a part of the screen, without some of its windows, into a picture, and later only what has changed in it.
//
// It paints the windows' own off-screen pixels, bottom to top, and never reads the screen, so a window that shows the
// result can never see itself. The pointer is not part of any window's pixels, so it is never painted.
//
// Threads: that of its connection. Pass it every event after the scene has seen it.
// Units and axes: `source` in root pixels; the picture and the regions have their origin at the source's top-left
// corner.
// Ownership: keeps references to the connection and the scene, which must outlive it, and listens to the scene.
// Preconditions: all extensions are there; somebody keeps the screen's windows redirected.
// Failure: windows may vanish at any time; what is painted then is corrected when the event arrives. Painting never
// waits for the server, except under a compositing manager: for its wallpaper and for the effects on windows, when one
// of them has changed.
#pragma once

#include <xcb/render.h>

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <optional>
#include <span>
#include <vector>

#include "Platform/Linux/Compositor/PaintStep.h"
#include "Platform/Linux/Compositor/Wallpaper.h"
#include "Platform/Linux/Compositor/WindowContent.h"
#include "Platform/Linux/Compositor/WindowEffects.h"
#include "Platform/Linux/Scene/Scene.h"
#include "Platform/Linux/Scene/WindowFilter.h"
#include "Platform/Linux/Xcb/Connection.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::compositor {

class Compositor final : private scene::SceneListener {
 public:
  // The whole picture is painted first.
  Compositor(xcb::Connection& connection, scene::Scene& scene, const xcb::PixelRect& source,
             scene::WindowFilter filter);
  ~Compositor() override;
  Compositor(const Compositor&) = delete;
  Compositor& operator=(const Compositor&) = delete;

  void handle(const xcb_generic_event_t& event);

  enum class Changes : std::uint8_t {
    none,
    // A window that reaches beyond the source was drawn to, perhaps outside the source: `examine` finds out.
    possible,
    certain,
  };
  [[nodiscard]] Changes changes() const;
  // Asks the server whether the possible changes are visible. `collectReplies`, which never blocks, says whether the
  // reply has come.
  void examine();
  bool collectReplies();
  [[nodiscard]] bool isExamining() const { return examination_.has_value(); }

  // The picture has the root visual's format. (x, y) is the place of the source's top-left corner in it.
  struct Target {
    xcb_render_picture_t picture = XCB_NONE;
    std::int32_t x = 0;
    std::int32_t y = 0;
    // A part of the source's picture. Within it, nobody needs to know exactly what was painted.
    xcb::PixelRect clear;
  };
  // Brings the picture up to date. Returns a rectangle of it that contains everything that may differ now. Unless that
  // lies within the target's clear part, `painted` holds exactly what was painted. A target that is gone is no failure.
  xcb::PixelRect paintTo(const Target& target, xcb::Region& painted);
  // Leaves in `changed` what to paint and returns the steps for somebody else to carry out. The steps' resources stay
  // as they are until the next plan, except for windows that go or get other pixels: the next plan puts that right.
  [[nodiscard]] std::vector<PaintStep> plan(xcb::Region& changed);
  // Paints this part again, together with what comes next.
  void repaint(const xcb::Region& part);
  // Starts over, as if the picture had never been painted.
  void invalidate();
  // Call it when the root window's background has changed, which no event announces.
  void forgetWallpaper();
  // Shows these windows, unless they are left out for another reason than being held back.
  void admit(std::span<const xcb_window_t> windows);
  // Whether any window on the screen is held back.
  [[nodiscard]] bool isHoldingBack() const;

 private:
  // The request with this number took the damage, together with all reports that precede it.
  struct Taking {
    xcb_damage_damage_t damage;
    std::uint32_t sequence;
  };
  struct Layer {
    const scene::SceneWindow* window;
    WindowContent* content;
  };

  void windowAdded(const scene::SceneWindow& window) override;
  void windowRemoved(const scene::SceneWindow& window, scene::Departure departure) override;
  void windowChanged(const scene::SceneWindow& before, const scene::SceneWindow& after) override;
  void windowReshaped(const scene::SceneWindow& window) override;
  void windowRestacked(const scene::SceneWindow& window) override;
  void compositingManagerChanged(bool isRunning) override;

  [[nodiscard]] bool isVisible(const scene::SceneWindow& window) const;
  [[nodiscard]] bool isTranslucent(const scene::SceneWindow& window) const;
  [[nodiscard]] bool isRectangle(const scene::SceneWindow& window) const;
  [[nodiscard]] std::span<const scene::SceneWindow> windowsAbove(const scene::SceneWindow& window) const;
  [[nodiscard]] bool isCovered(const scene::SceneWindow& window) const;
  [[nodiscard]] WindowContent* contentOf(xcb_window_t window) const;
  void watch(const scene::SceneWindow& window);
  void abandon(xcb_window_t window);
  void readLooks();
  void soil(const scene::SceneWindow& window);
  void soil(const xcb::PixelRect& rect);
  void noteDamage(const xcb_damage_notify_event_t& event);
  void noteTaking(const WindowContent& content);
  void gatherDamage();
  void gatherSoil();
  void addPending(xcb::Region& part, const xcb::PixelRect& bounds);
  void forgetPending();
  [[nodiscard]] std::vector<Layer> layersToPaint(bool& reachesWallpaper) const;
  [[nodiscard]] std::optional<Layer> loneLayer() const;
  xcb::PixelRect paintLone(const Layer& layer, xcb::Region& scratch);
  void paintLayers(const xcb::Region& changed);
  void paintOpaque(const Layer& layer, const xcb::Region& rest);
  void paintTranslucent(const Layer& layer, xcb::Region& visible);
  void paintWallpaper(const xcb::Region& rest);
  [[nodiscard]] PaintStep paintStep(const Layer& layer, std::uint8_t operation) const;
  // Carries out the step, or records it while a plan is made.
  void perform(PaintStep step, const xcb::Region& clip);
  void carryOut(const PaintStep& step, const xcb::Region& clip, std::int32_t clipX, std::int32_t clipY);
  [[nodiscard]] const xcb::Region& keptCopy(const xcb::Region& clip);
  void gather();

  xcb::Connection& connection_;
  scene::Scene& scene_;
  const xcb::PixelRect source_;
  scene::WindowFilter filter_;
  Wallpaper wallpaper_;
  WindowEffects effects_;
  std::map<xcb_window_t, std::unique_ptr<WindowContent>> contents_;
  std::deque<Taking> takings_;
  // Windows whose damage is not taken yet: there may be a thousand windows of which few change.
  std::vector<xcb_window_t> damaged_;
  // Known until some window changes.
  mutable std::optional<bool> isHoldingBack_;

  // What to paint: rectangles in root pixels, damage of windows not taken yet, and `pending_` in the server, which is
  // valid only while it has bounds.
  std::vector<xcb::PixelRect> soiled_;
  xcb::Region pending_;
  std::vector<xcb::PixelRect> pendingBounds_;
  bool isPendingCertain_ = false;
  std::optional<std::uint32_t> examination_;

  // Scratch space in the server.
  xcb::Region parts_;
  xcb::Region remaining_;
  xcb::Region clip_;

  Target target_;  // while painting to it
  // The plan being made, and the clips that the last one uses.
  std::vector<PaintStep>* plan_ = nullptr;
  std::vector<std::unique_ptr<xcb::Region>> clips_;
  std::size_t clipsInUse_ = 0;
};

}  // namespace platform::linux::compositor
