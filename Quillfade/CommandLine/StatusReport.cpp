#include "Quillfade/CommandLine/StatusReport.h"

#include <algorithm>
#include <string>

#include "Quillfade/Basics/Fatal.h"
#include "Quillfade/Basics/NumberText.h"

namespace quillfade {
namespace {

std::string styleWord(CoverStyle style) { return style == CoverStyle::live ? "live" : "solid"; }

std::string areaText(const std::optional<platform::Rect>& region) {
  if (!region) return "none chosen yet";
  return numberText(region->width()) + " × " + numberText(region->height()) + " at (" + numberText(region->minX()) +
         ", " + numberText(region->minY()) + ")";
}

std::string areaJson(const std::optional<platform::Rect>& region) {
  if (!region) return "null";
  return R"({"x": )" + numberText(region->minX()) + R"(, "y": )" + numberText(region->minY()) + R"(, "width": )" +
         numberText(region->width()) + R"(, "height": )" + numberText(region->height()) + "}";
}

// Empty where there is nothing to be said.
std::string note(const OverlayController& overlay) {
  if (!std::ranges::any_of(overlay.liveMirrors(), [](const auto& mirror) { return mirror->mayMissInk(); })) return {};
  return "no ink window can be seen here; if there is ink all the same, only the solid cover hides it";
}

const char* boolWord(bool value) { return value ? "true" : "false"; }

}  // namespace

std::string statusText(const OverlayController& overlay) {
  const std::string noted = note(overlay);
  return std::string{"Annotations: "} + (overlay.isEnabled() ? "hidden" : "shown") + '\n' +
         "Area:        " + areaText(overlay.region()) + '\n' + "Style:       " + styleWord(overlay.style()) + '\n' +
         "Outline:     " + (overlay.showsOutline() ? "on" : "off") + '\n' +
         (noted.empty() ? "" : "Note:        " + noted + '\n');
}

std::string statusJson(const OverlayController& overlay) {
  const std::string noted = note(overlay);
  return std::string{R"({"enabled": )"} + boolWord(overlay.isEnabled()) + R"(, "style": ")" +
         styleWord(overlay.style()) + R"(", "outline": )" + boolWord(overlay.showsOutline()) + R"(, "region": )" +
         areaJson(overlay.region()) + (noted.empty() ? "" : R"(, "note": ")" + noted + '"') + "}\n";
}

}  // namespace quillfade
