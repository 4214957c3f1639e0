// The Qt widget of a window that takes input: it turns Qt's events into calls and decides nothing.
//
// Threads: main thread only. Ownership: an event may end the window that it came to, so the owner lets go of the
// widget, which deletes itself from the event loop once Qt has finished with it.
// Units and axes: Qt's, y down from the widget's top-left corner. A drag that leaves the widget is still reported.
#pragma once

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QWidget>
#include <memory>

namespace platform::linux::widgets {

class SurfaceOwner {
 public:
  virtual ~SurfaceOwner() = default;
  virtual void paint(QPainter& painter) = 0;
  // With the main mouse button.
  virtual void pressed(QPointF position) = 0;
  virtual void dragged(QPointF position) = 0;
  virtual void released(QPointF position) = 0;
  // False if the key was not used.
  virtual bool keyPressed(const QKeyEvent& event) = 0;
};

class WidgetSurface : public QWidget {
 public:
  // No window manager decorates, moves or stacks it.
  explicit WidgetSurface(SurfaceOwner& owner);
  // Takes it off the screen; the owner gets no further calls.
  void letGo();

 private:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  SurfaceOwner* owner_;  // null after `letGo`
};

struct LetGo {
  void operator()(WidgetSurface* surface) const { surface->letGo(); }
};
using SurfaceHolder = std::unique_ptr<WidgetSurface, LetGo>;

}  // namespace platform::linux::widgets
