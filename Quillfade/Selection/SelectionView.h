// The content of a selection window: a dimmed screen on which a rectangle is dragged.
//
// Threads: main thread only.
// Units and axes: `startPoint` and `currentRect` are in view coordinates (points, origin bottom-left, y up); `onFinish`
// gets a rectangle in the global space.
// Lifetime: shared; the platform's view holds it weakly.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "Platform/Texts.h"
#include "Platform/Views.h"

namespace quillfade {

class SelectionView final : public platform::ViewResponder {
 public:
  using Finish = std::function<void(std::optional<platform::Rect>)>;

  static std::shared_ptr<SelectionView> make(platform::Views& views, const platform::Rect& frame,
                                             const platform::Texts& texts);

  // Called at every mouse-up and every cancel, with nothing when no usable rectangle was dragged.
  void setOnFinish(Finish onFinish) { onFinish_ = std::move(onFinish); }

  [[nodiscard]] const std::shared_ptr<platform::View>& view() const { return view_; }
  [[nodiscard]] const std::optional<platform::Point>& startPoint() const { return startPoint_; }
  [[nodiscard]] const std::optional<platform::Rect>& currentRect() const { return currentRect_; }

  [[nodiscard]] bool draws() const override { return true; }
  void draw(platform::Canvas& canvas) override;
  [[nodiscard]] platform::Cursor cursor() const override { return platform::Cursor::crosshair; }
  [[nodiscard]] bool acceptsFirstResponder() const override { return true; }
  void mouseDown(platform::Point locationInWindow) override;
  void mouseDragged(platform::Point locationInWindow) override;
  void mouseUp(platform::Point locationInWindow) override;
  bool keyDown(const platform::KeyEvent& event) override;
  void cancelOperation() override;

 private:
  SelectionView() = default;

  void finish(const std::optional<platform::Rect>& rect) const;
  [[nodiscard]] std::optional<platform::Rect> acceptedRect() const;

  std::string instruction_;
  Finish onFinish_;
  std::optional<platform::Point> startPoint_;
  std::optional<platform::Rect> currentRect_;
  std::shared_ptr<platform::View> view_;
};

}  // namespace quillfade
