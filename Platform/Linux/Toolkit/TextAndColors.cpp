#include "Platform/Linux/Toolkit/TextAndColors.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPalette>
#include <algorithm>
#include <cmath>

namespace platform::linux::toolkit {

namespace {

QColor withAlphaOf(QColor base, const Color& color) {
  if (color.alpha < 1) base.setAlphaF(static_cast<float>(std::max(color.alpha, 0.0)));
  return base;
}

QFont::Weight weightOf(FontWeight weight) {
  switch (weight) {
    case FontWeight::regular:
      return QFont::Normal;
    case FontWeight::medium:
      return QFont::Medium;
    case FontWeight::semibold:
      return QFont::DemiBold;
  }
  return QFont::Normal;
}

QFont sized(QFont family, const Font& font) {
  family.setPixelSize(std::max(1, static_cast<int>(std::lround(font.size))));
  family.setWeight(weightOf(font.weight));
  return family;
}

bool digitsAreEquallyWide(const QFont& font) {
  const QFontMetricsF metrics(font);
  const double width = metrics.horizontalAdvance(QLatin1Char('0'));
  for (char digit = '1'; digit <= '9'; ++digit)
    if (std::abs(metrics.horizontalAdvance(QLatin1Char(digit)) - width) > 0.01) return false;
  return true;
}

}  // namespace

QColor toQColor(const Color& color) {
  const QPalette palette = QGuiApplication::palette();
  switch (color.role) {
    case ColorRole::fixed:
      break;
    case ColorRole::label:
      return withAlphaOf(palette.color(QPalette::WindowText), color);
    case ColorRole::secondaryLabel:
      return withAlphaOf(palette.color(QPalette::PlaceholderText), color);
    case ColorRole::windowBackground:
      return withAlphaOf(palette.color(QPalette::Window), color);
  }
  const auto component = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
  return QColor::fromRgbF(component(color.red), component(color.green), component(color.blue), component(color.alpha));
}

QFont toQFont(const Font& font) {
  const QFont plain = sized(QFontDatabase::systemFont(QFontDatabase::GeneralFont), font);
  if (font.design == FontDesign::system || digitsAreEquallyWide(plain)) return plain;
  // The interface font may have old-style or proportional digits, and this Qt cannot request tabular ones.
  return sized(QFontDatabase::systemFont(QFontDatabase::FixedFont), font);
}

}  // namespace platform::linux::toolkit
