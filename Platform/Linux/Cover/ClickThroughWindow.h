// A window of the application that the pointer passes through: a mirror or the solid cover, on an overlay window of X.
//
// It appears at the end of the turn of the main loop in which it was ordered to the front; one that is ordered out in
// the same turn is never seen.
// Threads, units and axes: as the port says.
// Ownership: keeps a reference to its surroundings, which must outlive it. It shares its content view and detaches from
// it when destroyed.
#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "Platform/Linux/Cover/OverlayStage.h"
#include "Platform/Linux/Toolkit/DesktopScreens.h"
#include "Platform/Linux/Toolkit/PaletteWatch.h"
#include "Platform/Linux/Views/ViewHost.h"
#include "Platform/Linux/Views/ViewNode.h"
#include "Platform/Windows.h"

namespace platform::linux::cover {

class ClickThroughWindow final : public Window, private views::ViewHost {
 public:
  struct Surroundings {
    xcb::Connection& connection;
    OverlayStage& stage;
    const toolkit::DesktopScreens& screens;
    RunLoop& runLoop;
    std::optional<xcb_visualid_t> seeThroughVisual = std::nullopt;  // where frames may be without pixels
  };

  ClickThroughWindow(const Surroundings& surroundings, const WindowAttributes& attributes);
  ~ClickThroughWindow() override;
  ClickThroughWindow(const ClickThroughWindow&) = delete;
  ClickThroughWindow& operator=(const ClickThroughWindow&) = delete;

  void setContentView(std::shared_ptr<View> view) override;
  void setFrame(const Rect& frame, bool display) override;
  [[nodiscard]] Rect frame() const override { return frame_; }
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override { orderFrontRegardless(); }
  // A window that clicks pass through cannot have the keyboard.
  void makeKey() override {}
  void makeFirstResponder(View& /*view*/) override {}
  void orderOut() override;

 private:
  void viewsChanged() override;
  bool presentSample(std::shared_ptr<const SampleBuffer> sample) override;
  void forgetSamples() override;
  [[nodiscard]] Rect windowFrame() const override { return frame_; }

  [[nodiscard]] OverlayAppearance appearance() const;
  void leaveContent();
  void updateLater();
  void update();

  Surroundings surroundings_;
  Color backgroundColor_;
  Rect frame_;
  OverlayWindow window_;
  std::shared_ptr<views::ViewNode> content_;
  // Guards posted work, which does nothing once the window is gone.
  std::shared_ptr<bool> updateIsPosted_ = std::make_shared<bool>(false);
  bool isOrderedFront_ = false;
  // Frames that came while a text was shown or about to go: text and picture change places in one step.
  std::vector<std::shared_ptr<const stream::Frame>> waitingFrames_;
  // Colours given as roles follow the desktop's light or dark appearance.
  toolkit::PaletteWatch palette_;
};

}  // namespace platform::linux::cover
