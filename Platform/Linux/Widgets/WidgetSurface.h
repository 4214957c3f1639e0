// The Qt widget of a window that takes input: it turns Qt's events into calls and decides nothing.
//
// Threads: main thread only.
// Ownership: an event may well end the window that it came to, so the widget is let go of and deletes itself from the
// event loop, when Qt is no longer busy with it.
// Units and axes: Qt's, y down from the widget's top-left corner. A drag that leaves the widget goes on being reported.
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
  // Of the main mouse button.
  virtual void pressed(QPointF position) = 0;
  virtual void dragged(QPointF position) = 0;
  virtual void released(QPointF position) = 0;
  // False when nothing was done with the key.
  virtual bool keyPressed(const QKeyEvent& event) = 0;
};

class WidgetSurface : public QWidget {
 public:
  // No window manager decorates, moves or stacks it.
  explicit WidgetSurface(SurfaceOwner& owner);
  // Off the screen, and no further calls to the owner.
  void letGo();

 private:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

  SurfaceOwner* owner_;  // null once let go of
};

struct LetGo {
  void operator()(WidgetSurface* surface) const { surface->letGo(); }
};
using SurfaceHolder = std::unique_ptr<WidgetSurface, LetGo>;

}  // namespace platform::linux::widgets
