#include "Platform/Linux/Widgets/WidgetWindow.h"

#include <QGuiApplication>
#include <ranges>
#include <utility>

#include "Platform/Linux/Input/KeyMonitors.h"
#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Toolkit/TextAndColors.h"
#include "Platform/Linux/Toolkit/ToolkitCoordinates.h"
#include "Platform/Linux/Views/Views.h"
#include "Platform/Linux/Widgets/ViewPainter.h"

namespace platform::linux::widgets {

namespace {

bool isComposited() {
  xcb_connection_t* connection = toolkit::qtConnection();
  return !connection || toolkit::selectionOwner(connection, "_NET_WM_CM_S0") != XCB_NONE;
}

// The topmost view under the point; `point` is in the node's parent's space.
const views::ViewNode* viewAt(const views::ViewNode& node, Point point) {
  if (node.isHidden() || !node.frame().contains(point)) return nullptr;
  const Point inside{point.x - node.frame().minX(), point.y - node.frame().minY()};
  for (const auto& subview : std::views::reverse(node.subviews()))
    if (const views::ViewNode* found = viewAt(*subview, inside)) return found;
  return &node;
}

Qt::CursorShape shapeOf(Cursor cursor) { return cursor == Cursor::crosshair ? Qt::CrossCursor : Qt::ArrowCursor; }

}  // namespace

WidgetWindow::WidgetWindow(const WindowAttributes& attributes, const toolkit::DesktopScreens& screens,
                           input::KeyboardFocus& focus, GrabScreen grab)
    : attributes_(attributes),
      screens_(screens),
      focus_(focus),
      grab_(std::move(grab)),
      frame_(attributes.contentRect),
      surface_(new WidgetSurface(*this)) {
  surface_->setWindowFlag(Qt::WindowTransparentForInput, attributes_.ignoresMouseEvents);
  surface_->setAttribute(Qt::WA_ShowWithoutActivating);
}

WidgetWindow::~WidgetWindow() {
  WidgetWindow::orderOut();
  if (content_) content_->leaveWindow();
}

void WidgetWindow::setContentView(std::shared_ptr<View> view) {
  if (content_) content_->leaveWindow();
  contentView_ = std::move(view);
  content_ = views::nodeOf(*contentView_);
  content_->enterWindow(*this, frame_.size);
  const auto responder = content_->responder();
  surface_->setCursor(shapeOf(responder ? responder->cursor() : Cursor::arrow));
}

void WidgetWindow::setFrame(const Rect& frame, bool display) {
  frame_ = frame;
  if (content_) content_->setFrame({{0, 0}, frame.size});
  place();
  if (display) surface_->update();
}

void WidgetWindow::orderFrontRegardless() {
  if (!surface_->isVisible()) {
    place();
    prepareBackdrop();
    surface_->show();
  }
  surface_->raise();
}

void WidgetWindow::makeKeyAndOrderFront() {
  orderFrontRegardless();
  makeKey();
}

void WidgetWindow::makeKey() {
  if (!attributes_.canBecomeKey || !surface_->isVisible()) return;
  loan_ = focus_.borrow();
  focus_.give(*surface_);
}

void WidgetWindow::makeFirstResponder(View& view) {
  const auto responder = views::nodeOf(view)->responder();
  if (responder && responder->acceptsFirstResponder()) firstResponder_ = responder;
}

void WidgetWindow::orderOut() {
  surface_->hide();
  loan_.reset();
  backdrop_ = {};
}

// Live pictures need a click-through window.
bool WidgetWindow::presentSample(std::shared_ptr<const SampleBuffer> /*sample*/) { return false; }

void WidgetWindow::paint(QPainter& painter) {
  painter.setCompositionMode(QPainter::CompositionMode_Source);
  if (backdrop_.isNull())
    painter.fillRect(surface_->rect(), toolkit::toQColor(attributes_.backgroundColor));
  else
    painter.drawImage(QPointF(0, 0), backdrop_);
  painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
  if (content_) paintViews(*content_, painter, {0, frame_.height()});
}

void WidgetWindow::pressed(QPointF position) {
  // A position names the pixel's top-left corner. With y up, that corner of the topmost row lies outside the window.
  const QPointF middle = position + QPointF(0.5, 0.5) / surface_->devicePixelRatioF();
  const views::ViewNode* view = content_ ? viewAt(*content_, toWindow(middle)) : nullptr;
  const auto responder = view ? view->responder() : nullptr;
  pressedResponder_ = responder;
  if (responder) responder->mouseDown(toWindow(position));
}

void WidgetWindow::dragged(QPointF position) {
  if (const auto responder = pressedResponder_.lock()) responder->mouseDragged(toWindow(position));
}

void WidgetWindow::released(QPointF position) {
  if (const auto responder = std::exchange(pressedResponder_, {}).lock()) responder->mouseUp(toWindow(position));
}

bool WidgetWindow::keyPressed(const QKeyEvent& event) {
  const auto responder = firstResponder_.lock();
  if (!responder) return false;
  if (responder->keyDown(input::toKeyEvent(event))) return true;
  if (!event.matches(QKeySequence::Cancel)) return false;
  responder->cancelOperation();
  return true;
}

void WidgetWindow::place() {
  const QRect geometry = toolkit::toToolkit(frame_, screens_.geometries());
  // Qt scales a window by the screen to which it belongs.
  if (QScreen* screen = QGuiApplication::screenAt(geometry.center())) surface_->setScreen(screen);
  surface_->setGeometry(geometry);
}

void WidgetWindow::prepareBackdrop() {
  const bool showsThrough = !attributes_.isOpaque && isComposited();
  surface_->setAttribute(Qt::WA_TranslucentBackground, showsThrough);
  if (attributes_.isOpaque || showsThrough || !grab_) return;
  const xcb::PixelRect pixels = xcb::toPixels(frame_, screens_.geometries());
  backdrop_ = grab_(pixels);
  if (!backdrop_.isNull()) backdrop_.setDevicePixelRatio(pixels.width / frame_.width());
}

}  // namespace platform::linux::widgets
