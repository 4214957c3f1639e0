// A window that takes mouse and keyboard, such as one for selecting an area: a Qt widget that shows a tree of views.
//
// It lies above all windows, panels and full-screen programs, on every desktop, and no window manager manages it. Where
// it is clear it shows the screen beneath: live if a compositing manager runs when the window opens, otherwise as a
// picture of that part of the screen, taken just before, so that both look alike.
#pragma once

#include <QImage>
#include <functional>
#include <memory>

#include "Platform/Linux/Input/KeyboardFocus.h"
#include "Platform/Linux/Toolkit/DesktopScreens.h"
#include "Platform/Linux/Views/ViewHost.h"
#include "Platform/Linux/Views/ViewNode.h"
#include "Platform/Linux/Widgets/WidgetSurface.h"
#include "Platform/Windows.h"

namespace platform::linux::widgets {

// A picture of a part of the screen as it is now, in device pixels; a null image when none can be had.
using GrabScreen = std::function<QImage(xcb::PixelRect)>;

class WidgetWindow : public Window, private views::ViewHost, private SurfaceOwner {
 public:
  WidgetWindow(const WindowAttributes& attributes, const toolkit::DesktopScreens& screens, input::KeyboardFocus& focus,
               GrabScreen grab);
  ~WidgetWindow() override;
  WidgetWindow(const WidgetWindow&) = delete;
  WidgetWindow& operator=(const WidgetWindow&) = delete;

  void setContentView(std::shared_ptr<View> view) override;
  void setFrame(const Rect& frame, bool display) override;
  [[nodiscard]] Rect frame() const override { return frame_; }
  void orderFrontRegardless() override;
  void makeKeyAndOrderFront() override;
  void makeKey() override;
  void makeFirstResponder(View& view) override;
  void orderOut() override;

  // For code that must know the application's own windows.
  [[nodiscard]] WId windowId() const { return surface_->winId(); }

 private:
  void viewsChanged() override { surface_->update(); }
  bool presentSample(std::shared_ptr<const SampleBuffer> sample) override;
  void forgetSamples() override {}
  [[nodiscard]] Rect windowFrame() const override { return frame_; }

  void paint(QPainter& painter) override;
  void pressed(QPointF position) override;
  void dragged(QPointF position) override;
  void released(QPointF position) override;
  bool keyPressed(const QKeyEvent& event) override;

  void place();
  void prepareBackdrop();
  [[nodiscard]] Point toWindow(QPointF position) const { return {position.x(), frame_.height() - position.y()}; }

  WindowAttributes attributes_;
  const toolkit::DesktopScreens& screens_;
  input::KeyboardFocus& focus_;
  GrabScreen grab_;
  Rect frame_;
  SurfaceHolder surface_;
  QImage backdrop_;  // null while the screen beneath shows through by itself
  std::shared_ptr<View> contentView_;
  std::shared_ptr<views::ViewNode> content_;
  std::weak_ptr<ViewResponder> firstResponder_;
  std::weak_ptr<ViewResponder> pressedResponder_;
  std::shared_ptr<input::FocusLoan> loan_;
};

}  // namespace platform::linux::widgets
