#include "Platform/Linux/Widgets/WidgetSurface.h"

namespace platform::linux::widgets {

namespace {

// The position in the window, which the widget fills. The widget's own is rounded to whole points, and on a scaled
// screen the last pixel would then lie outside.
QPointF positionOf(const QMouseEvent& event) { return event.scenePosition(); }

}  // namespace

WidgetSurface::WidgetSurface(SurfaceOwner& owner)
    : QWidget(nullptr, Qt::Window | Qt::FramelessWindowHint | Qt::X11BypassWindowManagerHint |
                           Qt::WindowStaysOnTopHint | Qt::NoDropShadowWindowHint),
      owner_(&owner) {
  setFocusPolicy(Qt::StrongFocus);
}

void WidgetSurface::letGo() {
  owner_ = nullptr;
  hide();
  deleteLater();
}

void WidgetSurface::paintEvent(QPaintEvent* /*event*/) {
  if (!owner_) return;
  QPainter painter(this);
  owner_->paint(painter);
}

void WidgetSurface::mousePressEvent(QMouseEvent* event) {
  if (owner_ && event->button() == Qt::LeftButton) owner_->pressed(positionOf(*event));
}

// The second press of a double click is a press like any other.
void WidgetSurface::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void WidgetSurface::mouseMoveEvent(QMouseEvent* event) {
  if (owner_ && (event->buttons() & Qt::LeftButton)) owner_->dragged(positionOf(*event));
}

void WidgetSurface::mouseReleaseEvent(QMouseEvent* event) {
  if (owner_ && event->button() == Qt::LeftButton) owner_->released(positionOf(*event));
}

void WidgetSurface::keyPressEvent(QKeyEvent* event) { event->setAccepted(owner_ && owner_->keyPressed(*event)); }

}  // namespace platform::linux::widgets
