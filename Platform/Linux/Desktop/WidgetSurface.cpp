#include "Platform/Linux/Desktop/WidgetSurface.h"

namespace platform::x11 {

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
  if (owner_ && event->button() == Qt::LeftButton) owner_->pressed(event->position());
}

// The second press of a double click is a press like any other.
void WidgetSurface::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void WidgetSurface::mouseMoveEvent(QMouseEvent* event) {
  if (owner_ && (event->buttons() & Qt::LeftButton)) owner_->dragged(event->position());
}

void WidgetSurface::mouseReleaseEvent(QMouseEvent* event) {
  if (owner_ && event->button() == Qt::LeftButton) owner_->released(event->position());
}

void WidgetSurface::keyPressEvent(QKeyEvent* event) { event->setAccepted(owner_ && owner_->keyPressed(*event)); }

}  // namespace platform::x11
