// Views whose tree tests can inspect.
//
// Threads: main thread only.
// Layout: a view lays out at once when its size changes and when it enters a window.
// Ownership: as in the port; a view knows its superview and its window without owning them.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Simulated/Canvas.h"
#include "Platform/Simulated/DisplayLayer.h"
#include "Platform/Simulated/Record.h"
#include "Platform/Views.h"

namespace platform::simulated {

struct LayerBorder {
  double width = 0;
  Color color;
  friend bool operator==(const LayerBorder&, const LayerBorder&) = default;
};

// A plain view and a label in one: a label is a view with text.
class View final : public Label {
 public:
  View(Record& record, const bool& withoutAnimations) : record_(record), withoutAnimations_(withoutAnimations) {}
  ~View() override;
  View(const View&) = delete;
  View& operator=(const View&) = delete;

  void setFrame(const Rect& frame) override;
  [[nodiscard]] Rect bounds() const override;
  void setResizeMask(unsigned mask) override;
  void setLayerBackground(const Color& color) override;
  void setLayerBorder(double width, const Color& color) override;
  void addSublayer(std::shared_ptr<platform::DisplayLayer> layer) override;
  void addSubview(std::shared_ptr<platform::View> subview) override;
  void centerSubview(platform::View& subview) override;
  void setHidden(bool hidden) override;
  void setNeedsDisplay() override;
  [[nodiscard]] bool isInWindow() const override;
  [[nodiscard]] Point convertFromWindow(Point windowPoint) const override;
  [[nodiscard]] Rect convertToWindow(const Rect& rect) const override;
  [[nodiscard]] Rect convertWindowRectToScreen(const Rect& windowRect) const override;
  void setText(const std::string& text) override;
  void setStyle(const TextStyle& style) override;

  // Called by the window that shows the view: where its content lies on the screen, or null when it leaves the window.
  void setWindowFrame(const Rect* frame);
  void setResponder(std::weak_ptr<ViewResponder> responder) { responder_ = std::move(responder); }
  [[nodiscard]] std::shared_ptr<ViewResponder> responder() const { return responder_.lock(); }
  // What the view draws now.
  [[nodiscard]] std::vector<DrawingStep> render() const;

  [[nodiscard]] const Rect& frame() const { return frame_; }
  [[nodiscard]] unsigned resizeMask() const { return resizeMask_; }
  [[nodiscard]] const std::optional<Color>& background() const { return background_; }
  [[nodiscard]] const std::optional<LayerBorder>& border() const { return border_; }
  [[nodiscard]] const std::vector<std::shared_ptr<DisplayLayer>>& sublayers() const { return sublayers_; }
  [[nodiscard]] const std::vector<std::shared_ptr<View>>& subviews() const { return subviews_; }
  [[nodiscard]] bool isHidden() const { return isHidden_; }
  [[nodiscard]] bool isCentered() const { return isCentered_; }
  [[nodiscard]] bool didAnimate() const { return didAnimate_; }
  [[nodiscard]] int displayRequests() const { return displayRequests_; }
  [[nodiscard]] const std::optional<std::string>& text() const { return text_; }
  [[nodiscard]] const TextStyle& style() const { return style_; }

 private:
  [[nodiscard]] const View& root() const;
  [[nodiscard]] Point originInWindow() const;
  void resize(const Rect& frame);
  void layOut();
  void followSuperview(const Size& before, const Size& after);
  void centreInSuperview();

  Record& record_;
  const bool& withoutAnimations_;
  std::weak_ptr<ViewResponder> responder_;
  View* superview_ = nullptr;
  const Rect* windowFrame_ = nullptr;  // set only in the root of a window's tree
  Rect frame_;
  unsigned resizeMask_ = 0;
  std::optional<Color> background_;
  std::optional<LayerBorder> border_;
  std::vector<std::shared_ptr<DisplayLayer>> sublayers_;
  std::vector<std::shared_ptr<View>> subviews_;
  bool isHidden_ = false;
  bool isCentered_ = false;
  bool didAnimate_ = false;
  int displayRequests_ = 0;
  std::optional<std::string> text_;
  TextStyle style_;
};

class Views final : public platform::Views {
 public:
  explicit Views(Record& record) : record_(record) {}

  std::shared_ptr<platform::View> makeView(const Rect& frame) override;
  std::shared_ptr<platform::View> makeView(const Rect& frame, std::weak_ptr<ViewResponder> responder) override;
  std::shared_ptr<Label> makeLabel(const std::string& text) override;
  std::shared_ptr<platform::DisplayLayer> makeDisplayLayer() override;
  void withoutImplicitAnimations(const std::function<void()>& changes) override;

 private:
  Record& record_;
  bool withoutAnimations_ = false;
};

}  // namespace platform::simulated
