// The tray's pictures: our own drawings, compiled in, by the names that the application asks for.
//
// Threads: main thread only.
#pragma once

#include <QByteArray>
#include <QColor>
#include <QIcon>
#include <functional>
#include <memory>
#include <string>

#include "Platform/StatusBar.h"

namespace platform::linux::tray {

class SymbolImage : public Image {
 public:
  // Null when there is no such drawing.
  static std::shared_ptr<SymbolImage> named(const std::string& name, const std::string& accessibilityDescription);

  void setTemplate(bool isTemplate) override;

  // A template is drawn in this ink, with an edge that can be seen on a panel of the ink's own shade; any other picture
  // in the drawing's own black.
  [[nodiscard]] QIcon icon(const QColor& ink) const;
  [[nodiscard]] const std::string& accessibilityDescription() const { return description_; }
  // At most one listener: the place where the image shows.
  void setListener(std::function<void()> listener) { listener_ = std::move(listener); }

 private:
  SymbolImage(QByteArray drawing, std::string description)
      : drawing_(std::move(drawing)), description_(std::move(description)) {}

  [[nodiscard]] QByteArray drawingIn(const QColor& color) const;

  QByteArray drawing_;  // SVG in which the ink is `currentColor`
  std::string description_;
  bool isTemplate_ = false;
  std::function<void()> listener_;
};

}  // namespace platform::linux::tray
