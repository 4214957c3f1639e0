#include "Quillfade/Selection/SelectionView.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <span>
#include <string>

#include "Quillfade/Basics/Fatal.h"

namespace quillfade {
namespace {

using platform::Canvas;
using platform::Color;
using platform::Point;
using platform::Rect;

constexpr double leastAcceptedExtent = 24;
constexpr Color accent{platform::ColorRole::fixed, 0.925, 0.216, 0.314, 1.0};

constexpr std::string_view instruction = "Drag to select the area to keep covered    Esc to cancel";

void drawDimming(Canvas& canvas, const Rect& bounds, const std::optional<Rect>& hole) {
  const std::array<Rect, 2> path{bounds, hole.value_or(Rect{})};
  canvas.fillEvenOdd(std::span{path}.first(hole ? 2 : 1), platform::colors::black.withAlpha(0.38));
}

void drawInstruction(Canvas& canvas, const Rect& bounds, const std::string& text) {
  constexpr platform::TextStyle style{{15, platform::FontWeight::medium}, platform::colors::white.withAlpha(0.92)};
  const auto size = canvas.measureText(text, style);
  const Point origin{bounds.midX() - 0.5 * size.width, bounds.maxY() - 74};
  canvas.fillRoundedRect({{origin.x - 18, origin.y - 11}, {size.width + 36, size.height + 22}}, 11,
                         platform::colors::black.withAlpha(0.55));
  canvas.drawText(text, origin, style);
}

void drawSelection(Canvas& canvas, const Rect& rect) {
  constexpr platform::TextStyle style{{12, platform::FontWeight::semibold, platform::FontDesign::monospacedDigits},
                                      platform::colors::white};
  canvas.strokeRect(rect, 2, accent);
  const std::string readout =
      std::to_string(wholeNumber(rect.width())) + " × " + std::to_string(wholeNumber(rect.height()));
  const auto size = canvas.measureText(readout, style);
  const Point backing{rect.minX() + 8, rect.minY() + 8};
  canvas.fillRoundedRect({backing, {size.width + 16, size.height + 8}}, 6, accent);
  canvas.drawText(readout, {backing.x + 8, backing.y + 4}, style);
}

}  // namespace

std::shared_ptr<SelectionView> SelectionView::make(platform::Views& views, const platform::Rect& frame,
                                                   const platform::Texts& texts) {
  const std::shared_ptr<SelectionView> made{new SelectionView()};
  made->instruction_ = texts.translated(instruction);
  made->view_ = views.makeView(frame, made);
  return made;
}

void SelectionView::mouseDown(platform::Point locationInWindow) {
  startPoint_ = view_->convertFromWindow(locationInWindow);
  currentRect_ = std::nullopt;
  view_->setNeedsDisplay();
}

void SelectionView::mouseDragged(platform::Point locationInWindow) {
  if (!startPoint_) return;
  const Point point = view_->convertFromWindow(locationInWindow);
  const Point start = *startPoint_;
  // Not clamped to the view: a drag may continue into the next screen.
  currentRect_ = Rect{{std::min(point.x, start.x), std::min(point.y, start.y)},
                      {std::abs(point.x - start.x), std::abs(point.y - start.y)}};
  view_->setNeedsDisplay();
}

void SelectionView::mouseUp(platform::Point /*locationInWindow*/) { finish(acceptedRect()); }

std::optional<platform::Rect> SelectionView::acceptedRect() const {
  if (!currentRect_ || currentRect_->width() < leastAcceptedExtent || currentRect_->height() < leastAcceptedExtent) {
    return std::nullopt;
  }
  if (!view_->isInWindow()) return std::nullopt;
  return view_->convertWindowRectToScreen(view_->convertToWindow(*currentRect_));
}

bool SelectionView::keyDown(const platform::KeyEvent& event) {
  if (event.keyCode != platform::escapeKeyCode) return false;
  finish(std::nullopt);
  return true;
}

void SelectionView::cancelOperation() { finish(std::nullopt); }

void SelectionView::finish(const std::optional<platform::Rect>& rect) const {
  if (onFinish_) onFinish_(rect);
}

void SelectionView::draw(platform::Canvas& canvas) {
  const Rect bounds = view_->bounds();
  drawDimming(canvas, bounds, currentRect_);
  drawInstruction(canvas, bounds, instruction_);
  if (currentRect_ && currentRect_->width() > 1 && currentRect_->height() > 1) drawSelection(canvas, *currentRect_);
}

}  // namespace quillfade
