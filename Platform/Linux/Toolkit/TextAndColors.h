// The application's colours and fonts in Qt's terms. Colour roles and typefaces follow the desktop's current settings.
//
// Threads: main thread only. Units: a font size in points is the same number of Qt's device-independent pixels.
#pragma once

#include <QColor>
#include <QFont>

#include "Platform/Canvas.h"
#include "Platform/Color.h"

namespace platform::linux::toolkit {

[[nodiscard]] QColor toQColor(const Color& color);
// With `monospacedDigits`, all digits of the font are equally wide.
[[nodiscard]] QFont toQFont(const Font& font);

}  // namespace platform::linux::toolkit
