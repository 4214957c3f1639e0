#include "Platform/Mac/Toolkit/Appearance.h"

namespace platform::mac::toolkit {
namespace {

// Without its alpha.
NSColor* baseColor(const Color& color) {
  switch (color.role) {
    case ColorRole::label:
      return [NSColor labelColor];
    case ColorRole::secondaryLabel:
      return [NSColor secondaryLabelColor];
    case ColorRole::windowBackground:
      return [NSColor windowBackgroundColor];
    case ColorRole::fixed:
      break;
  }
  const Color opaque = color.withAlpha(1);
  if (opaque == colors::black) return [NSColor blackColor];
  if (opaque == colors::white) return [NSColor whiteColor];
  return [NSColor colorWithCalibratedRed:color.red green:color.green blue:color.blue alpha:1];
}

NSFontWeight fontWeight(FontWeight weight) {
  switch (weight) {
    case FontWeight::medium:
      return NSFontWeightMedium;
    case FontWeight::semibold:
      return NSFontWeightSemibold;
    case FontWeight::regular:
      break;
  }
  return NSFontWeightRegular;
}

}  // namespace

NSColor* nsColor(const Color& color) {
  if (color == colors::clear) return [NSColor clearColor];
  // An opaque role keeps the alpha that the system gives it.
  return color.alpha < 1 ? [baseColor(color) colorWithAlphaComponent:color.alpha] : baseColor(color);
}

NSFont* nsFont(const Font& font) {
  const NSFontWeight weight = fontWeight(font.weight);
  if (font.design == FontDesign::monospacedDigits) {
    return [NSFont monospacedDigitSystemFontOfSize:font.size weight:weight];
  }
  return [NSFont systemFontOfSize:font.size weight:weight];
}

NSDictionary<NSAttributedStringKey, id>* attributes(NSFont* font, NSColor* color) {
  return @{NSFontAttributeName : font, NSForegroundColorAttributeName : color};
}

NSDictionary<NSAttributedStringKey, id>* attributes(const TextStyle& style) {
  return attributes(nsFont(style.font), nsColor(style.color));
}

}  // namespace platform::mac::toolkit
