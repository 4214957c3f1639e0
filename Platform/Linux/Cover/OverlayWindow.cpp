#include "Platform/Linux/Cover/OverlayWindow.h"

#include <xcb/shape.h>

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

#include "Platform/Linux/Posix/HostName.h"
#include "Platform/Linux/Xcb/Region.h"

namespace platform::linux::cover {

namespace {

xcb::PixelRect atLeastOnePixel(xcb::PixelRect frame) {
  frame.width = std::max(1, frame.width);
  frame.height = std::max(1, frame.height);
  return frame;
}

}  // namespace

OverlayWindow::OverlayWindow(xcb::Connection& connection, const xcb::PixelRect& frame,
                             const OverlayAppearance& appearance, std::optional<xcb_visualid_t> seeThrough)
    : connection_(connection),
      window_(connection.newId()),
      frame_(atLeastOnePixel(frame)),
      canBeSeenThrough_(seeThrough && connection.has(xcb::Extension::shape)) {
  const xcb_visualid_t visual = seeThrough.value_or(connection_.rootVisual());
  create(visual);
  if (connection_.has(xcb::Extension::shape)) {
    xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_INPUT, XCB_CLIP_ORDERING_UNSORTED, window_,
                         0, 0, 0, nullptr);
  }
  setProperties();
  painter_.emplace(connection_, window_, visual, frame_.width, frame_.height);
  painter_->setAppearance(appearance);
}

void OverlayWindow::create(xcb_visualid_t visual) {
  xcb_create_window_value_list_t values{};
  values.override_redirect = 1;
  values.event_mask = XCB_EVENT_MASK_EXPOSURE;
  std::uint32_t mask = XCB_CW_OVERRIDE_REDIRECT | XCB_CW_EVENT_MASK;
  std::uint8_t depth = connection_.rootDepth();
  if (visual != connection_.rootVisual()) {
    // Such a window needs colours of its own. It keeps them: programs that read windows ask for them.
    colors_ = connection_.newId();
    xcb_create_colormap(connection_.get(), XCB_COLORMAP_ALLOC_NONE, colors_, connection_.root(), visual);
    values.border_pixel = 0;
    values.colormap = colors_;
    mask |= XCB_CW_BORDER_PIXEL | XCB_CW_COLORMAP;
    depth = 32;
  }
  xcb_create_window_aux(connection_.get(), depth, window_, connection_.root(), static_cast<std::int16_t>(frame_.x),
                        static_cast<std::int16_t>(frame_.y), static_cast<std::uint16_t>(frame_.width),
                        static_cast<std::uint16_t>(frame_.height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, visual, mask,
                        &values);
}

OverlayWindow::~OverlayWindow() {
  endLive();
  painter_.reset();
  xcb_destroy_window(connection_.get(), window_);
  if (colors_ != XCB_NONE) xcb_free_colormap(connection_.get(), colors_);
  connection_.flush();
}

void OverlayWindow::setProperties() {
  using namespace std::string_view_literals;
  connection_.internAtoms({"WM_CLASS", "WM_NAME", "_NET_WM_NAME", "UTF8_STRING", "WM_CLIENT_MACHINE", "_NET_WM_PID",
                           "_NET_WM_WINDOW_TYPE", "_NET_WM_WINDOW_TYPE_DOCK", "_NET_WM_WINDOW_TYPE_NOTIFICATION",
                           "_COMPTON_SHADOW", "_NET_WM_BYPASS_COMPOSITOR"});
  setText("WM_CLASS", "STRING", "quillfade\0Quillfade\0"sv);
  setText("WM_NAME", "STRING", "Quillfade");
  setText("_NET_WM_NAME", "UTF8_STRING", "Quillfade");
  setText("WM_CLIENT_MACHINE", "STRING", posix::hostName());
  setNumbers("_NET_WM_PID", XCB_ATOM_CARDINAL, {static_cast<std::uint32_t>(getpid())});
  // As a rule, compositing managers keep their decorations (shadows, round corners, dimming, blur) off docks.
  std::vector<std::uint32_t> types{connection_.atom("_NET_WM_WINDOW_TYPE_DOCK")};
  // Sway and labwc give the keyboard even to docks, but not to what is a notification, too.
  if (canBeSeenThrough_) types.push_back(connection_.atom("_NET_WM_WINDOW_TYPE_NOTIFICATION"));
  setNumbers("_NET_WM_WINDOW_TYPE", XCB_ATOM_ATOM, types);
  setNumbers("_COMPTON_SHADOW", XCB_ATOM_CARDINAL, {0});
  constexpr std::uint32_t neverBypass = 2;
  setNumbers("_NET_WM_BYPASS_COMPOSITOR", XCB_ATOM_CARDINAL, {neverBypass});
}

void OverlayWindow::setText(const char* property, const char* type, std::string_view text) {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, connection_.atom(property),
                      connection_.atom(type), 8, static_cast<std::uint32_t>(text.size()), text.data());
}

void OverlayWindow::setNumbers(const char* property, xcb_atom_t type, const std::vector<std::uint32_t>& values) {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, window_, connection_.atom(property), type, 32,
                      static_cast<std::uint32_t>(values.size()), values.data());
}

void OverlayWindow::setFrame(const xcb::PixelRect& frame) {
  const xcb::PixelRect wanted = atLeastOnePixel(frame);
  if (wanted == frame_) return;
  const bool isResized = wanted.width != frame_.width || wanted.height != frame_.height;
  if (isResized) endLive();
  frame_ = wanted;
  const std::array<std::uint32_t, 4> values{static_cast<std::uint32_t>(wanted.x), static_cast<std::uint32_t>(wanted.y),
                                            static_cast<std::uint32_t>(wanted.width),
                                            static_cast<std::uint32_t>(wanted.height)};
  xcb_configure_window(connection_.get(), window_,
                       XCB_CONFIG_WINDOW_X | XCB_CONFIG_WINDOW_Y | XCB_CONFIG_WINDOW_WIDTH | XCB_CONFIG_WINDOW_HEIGHT,
                       values.data());
  painter_->setSize(wanted.width, wanted.height);
  if (isResized) restore();
}

void OverlayWindow::setAppearance(const OverlayAppearance& appearance) {
  const OverlayAppearance before = painter_->appearance();
  if (appearance == before) return;
  const xcb::PixelRect oldLabel = painter_->labelRect();
  endLive();
  painter_->setAppearance(appearance);
  if (isSeenThrough_) return paintSeenThrough();

  OverlayAppearance withOldLabel = appearance;
  withOldLabel.label = before.label;
  const bool onlyLabelDiffers = withOldLabel == before;
  if (onlyLabelDiffers && !before.label) return painter_->blendLabel();
  // A new text must be readable even if no frame ever comes again.
  if (onlyLabelDiffers && appearance.label) {
    painter_->paint(oldLabel);
    painter_->paint(painter_->labelRect());
  }
  restore();
}

// What is painted here next follows everything that the stream has painted.
void OverlayWindow::endLive() {
  if (lastFrame_) lastFrame_->endLive(connection_.get());
}

// Only its stream can paint the picture again. Until then the window stays as it is.
void OverlayWindow::restore() {
  if (isSeenThrough_) {
    paintSeenThrough();
  } else if (lastFrame_) {
    lastFrame_->requestWhole();
  } else {
    painter_->paintAll();
  }
}

void OverlayWindow::orderFront(std::optional<xcb_window_t> below) {
  const std::uint32_t above = XCB_STACK_MODE_ABOVE;
  xcb_configure_window(connection_.get(), window_, XCB_CONFIG_WINDOW_STACK_MODE, &above);
  if (below) {
    const std::array<std::uint32_t, 2> values{*below, XCB_STACK_MODE_BELOW};
    connection_.ignoreErrors(xcb_configure_window(
        connection_.get(), window_, XCB_CONFIG_WINDOW_SIBLING | XCB_CONFIG_WINDOW_STACK_MODE, values.data()));
  }
  if (std::exchange(isShown_, true)) return;
  xcb_map_window(connection_.get(), window_);
  restore();
}

void OverlayWindow::orderOut() {
  if (!std::exchange(isShown_, false)) return;
  xcb_unmap_window(connection_.get(), window_);
}

void OverlayWindow::holdBack() {
  if (!connection_.has(xcb::Extension::shape)) return;
  isHeldBack_ = true;
  shape({});
}

void OverlayWindow::release() {
  if (!std::exchange(isHeldBack_, false)) return;
  unshape();
  restore();
}

bool OverlayWindow::presentFrame(std::shared_ptr<const stream::Frame> frame) {
  if (!mayShow(*frame)) return false;
  if (!lastFrame_ || lastFrame_->streamSerial() != frame->streamSerial()) {
    if (!frame->isWhole()) {
      frame->requestWhole();
      return false;
    }
    endLive();
  }
  if (!painter_->paintFrame(*frame)) return false;
  remember(frame);
  lastFrame_ = std::move(frame);
  return true;
}

// During a restart two streams run, and the older one would show again what the newer one leaves out. The older one
// gets the window back when the newer one has ended: that one's start was overtaken, and the start after it may fail.
bool OverlayWindow::mayShow(const stream::Frame& frame) const {
  const auto newer = [&](const auto& other) { return other->streamSerial() > frame.streamSerial(); };
  if (std::ranges::none_of(streams_, newer)) return true;
  return !frame.isLeftOver() &&
         std::ranges::none_of(streams_, [&](const auto& other) { return newer(other) && !other->isLeftOver(); });
}

void OverlayWindow::remember(const std::shared_ptr<const stream::Frame>& frame) {
  std::erase_if(streams_, [&](const auto& other) {
    return other->isLeftOver() || other->streamSerial() == frame->streamSerial();
  });
  if (!streams_.empty()) frame->tookOverFrom(*streams_.back());
  streams_.push_back(frame);
}

bool OverlayWindow::showThrough() {
  if (!canBeSeenThrough_) return false;
  if (std::exchange(isSeenThrough_, true)) return true;
  painter_->setSeenThrough(true);
  paintSeenThrough();
  return true;
}

// Some compositors look at the window's pixels alone, and some at its shape; nothing can be painted outside of that.
void OverlayWindow::paintSeenThrough() {
  if (isHeldBack_) return;
  unshape();
  painter_->paintAll();
  std::vector<xcb_rectangle_t> parts;
  for (const xcb::PixelRect& part : painter_->shownParts()) parts.push_back(xcb::toRectangle(part));
  shape(parts);
}

void OverlayWindow::shape(const std::vector<xcb_rectangle_t>& parts) {
  xcb_shape_rectangles(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, XCB_CLIP_ORDERING_UNSORTED, window_,
                       0, 0, static_cast<std::uint32_t>(parts.size()), parts.data());
}

void OverlayWindow::unshape() {
  if (isHeldBack_) return;
  xcb_shape_mask(connection_.get(), XCB_SHAPE_SO_SET, XCB_SHAPE_SK_BOUNDING, window_, 0, 0, XCB_PIXMAP_NONE);
}

void OverlayWindow::forgetFrames() {
  if (std::exchange(isSeenThrough_, false)) {
    painter_->setSeenThrough(false);
    unshape();
    painter_->paintAll();
  }
  if (!lastFrame_) return;
  endLive();
  lastFrame_ = nullptr;
  painter_->restoreBackground();
  painter_->paintAll();
}

void OverlayWindow::handle(const xcb_generic_event_t& event) {
  if (xcb::eventType(event) != XCB_EXPOSE) return;
  const auto& expose = xcb::eventAs<xcb_expose_event_t>(event);
  if (expose.window != window_) return;
  exposed({expose.x, expose.y, expose.width, expose.height});
}

// Without a picture the part is painted from the background up: the event may come late, after the part was painted.
void OverlayWindow::exposed(const xcb::PixelRect& part) {
  if (lastFrame_)
    lastFrame_->requestWhole();
  else
    painter_->paint(part);
}

}  // namespace platform::linux::cover
