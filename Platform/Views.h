// Views: the rectangles that make up a window's content.
//
// Threads: main thread only; responders are called there.
// Units and axes: points; a view's frame is in its superview's space, its bounds start at (0, 0); y up.
// Ownership: a view shares its subviews and layers and holds its responder weakly.
// Order: later subviews lie above earlier ones, and all subviews above the layers.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "Platform/Canvas.h"
#include "Platform/Capture.h"
#include "Platform/Color.h"
#include "Platform/Geometry.h"

namespace platform {

enum class VideoGravity {
  resizeAspect,
  resize,  // stretched to the layer's bounds, aspect ratio not preserved
};

enum class RendererStatus : int { unknown = 0, rendering = 1, failed = 2 };

// Shows frames in the order they are enqueued, each until the next. A service may keep the frame on show up to date by
// itself, and deliver the next one only when it cannot.
class SampleBufferRenderer {
 public:
  virtual ~SampleBufferRenderer() = default;
  [[nodiscard]] virtual RendererStatus status() const = 0;
  // Drops what was enqueued and leaves the failed state.
  virtual void flush() = 0;
  virtual void enqueue(std::shared_ptr<const SampleBuffer> sample) = 0;
};

class DisplayLayer {
 public:
  virtual ~DisplayLayer() = default;
  virtual void setVideoGravity(VideoGravity gravity) = 0;
  virtual void setFrame(const Rect& frame) = 0;
  [[nodiscard]] virtual SampleBufferRenderer& sampleBufferRenderer() = 0;
};

// Dimensions that follow the superview when it is resized.
namespace resizemask {
inline constexpr unsigned widthSizable = 2;
inline constexpr unsigned heightSizable = 16;
}  // namespace resizemask

class View {
 public:
  virtual ~View() = default;
  virtual void setFrame(const Rect& frame) = 0;
  [[nodiscard]] virtual Rect bounds() const = 0;
  virtual void setResizeMask(unsigned mask) = 0;
  // Gives the view a plain layer of its own with this background.
  virtual void setLayerBackground(const Color& color) = 0;
  // Gives the view a plain layer of its own with a border inside its edges; width in points.
  virtual void setLayerBorder(double width, const Color& color) = 0;
  virtual void addSublayer(std::shared_ptr<DisplayLayer> layer) = 0;
  virtual void addSubview(std::shared_ptr<View> subview) = 0;
  // Keeps the subview, at the size of its content, centred in both directions.
  virtual void centerSubview(View& subview) = 0;
  virtual void setHidden(bool hidden) = 0;
  virtual void setNeedsDisplay() = 0;
  [[nodiscard]] virtual bool isInWindow() const = 0;
  [[nodiscard]] virtual Point convertFromWindow(Point windowPoint) const = 0;
  [[nodiscard]] virtual Rect convertToWindow(const Rect& rect) const = 0;
  // Only while the view is in a window.
  [[nodiscard]] virtual Rect convertWindowRectToScreen(const Rect& windowRect) const = 0;
};

class Label : public View {
 public:
  virtual void setText(const std::string& text) = 0;
  virtual void setStyle(const TextStyle& style) = 0;
};

enum class Cursor { arrow, crosshair };

// The key code of Escape, whatever the keyboard layout.
inline constexpr std::uint16_t escapeKeyCode = 53;

struct KeyEvent {
  std::uint16_t keyCode = 0;  // a virtual key code of the ANSI layout
};

// The application's side of a view. Each call does nothing unless overridden, as in a plain view.
class ViewResponder {
 public:
  virtual ~ViewResponder() = default;
  virtual void layout() {}
  // Whether `draw` draws anything, for life: a view that never does needs no memory for what is drawn. Asked when the
  // view is made, and `draw` is never called after a no.
  [[nodiscard]] virtual bool draws() const { return false; }
  virtual void draw(Canvas& /*canvas*/) {}
  [[nodiscard]] virtual Cursor cursor() const { return Cursor::arrow; }
  [[nodiscard]] virtual bool acceptsFirstResponder() const { return false; }
  virtual void mouseDown(Point /*locationInWindow*/) {}
  virtual void mouseDragged(Point /*locationInWindow*/) {}
  virtual void mouseUp(Point /*locationInWindow*/) {}
  // False passes the key on to whatever would have received it.
  virtual bool keyDown(const KeyEvent& /*event*/) { return false; }
  // The desktop's cancel command (Escape, or another key that means the same).
  virtual void cancelOperation() {}
};

class Views {
 public:
  virtual ~Views() = default;
  virtual std::shared_ptr<View> makeView(const Rect& frame) = 0;
  // A view that draws, lays out and receives events through `responder`.
  virtual std::shared_ptr<View> makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) = 0;
  // A line of text that cannot be edited.
  virtual std::shared_ptr<Label> makeLabel(const std::string& text) = 0;
  virtual std::shared_ptr<DisplayLayer> makeDisplayLayer() = 0;
  // Runs `changes` so that none of them animates.
  virtual void withoutImplicitAnimations(const std::function<void()>& changes) = 0;
};

}  // namespace platform
