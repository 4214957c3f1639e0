#include "Tests/EndToEnd/CoveredDesktop.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

namespace endtoend {

std::size_t ink(const Picture& picture, const PixelRect& part) {
  return picture.count(support::GromitMpx::defaultInk, part, inkTolerance);
}

std::string regionText(const PixelRect& part) {
  const int bottom = wholeScreen.height - part.bottom();
  return "{{" + std::to_string(part.x) + ", " + std::to_string(bottom) + "}, {" + std::to_string(part.width) + ", " +
         std::to_string(part.height) + "}}";
}

std::string settingsWithRegion(const PixelRect& part, bool outline) {
  return R"({"enabled": true, "outline": )" + std::string(outline ? "true" : "false") + R"(, "region": ")" +
         regionText(part) + "\"}";
}

CoveredDesktop::CoveredDesktop()
    : board_(client_.createWindow({.frame = {20, 20, 1240, 760}, .overrideRedirect = false, .mapped = false})) {
  client_.setAtoms(board_, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DESKTOP"});
  client_.setBackgroundChecks(board_, 20, 0x20507a, 0xe8e0d0);
  client_.map(board_);
  client_.sync();
}

support::QuillfadeProgram& CoveredDesktop::cover(const support::QuillfadeOptions& options) {
  quillfade_.emplace(QUILLFADE_EXECUTABLE, server_.display(), options);
  if (!quillfade_->waitForMessage(firstFrame)) {
    throw std::runtime_error("No live frame came: " + quillfade_->process().output() +
                             support::readFile(quillfade_->logPath()));
  }
  return *quillfade_;
}

void CoveredDesktop::splitIntoTwoScreens() {
  const std::string display = server_.display();
  support::runToEnd({"xrandr", "--display", display, "--setmonitor", "*L", "640/170x800/210+0+0", "screen"});
  support::runToEnd({"xrandr", "--display", display, "--setmonitor", "R", "640/170x800/210+640+0", "none"});
}

std::vector<support::Stroke> CoveredDesktop::crossingStrokes() { return {{100, 150, 900, 650}, {100, 650, 900, 150}}; }

void CoveredDesktop::drawInk() {
  gromit_.emplace(server_.display());
  gromit_->draw(crossingStrokes());
  const auto isBegun = [](const Picture& screen, const support::Stroke& stroke) {
    return ink(screen, {stroke.fromX - 6, stroke.fromY - 6, 12, 12}) > 20;
  };
  // The picture arrives in parts. A stroke is whole once the next one is begun, and the last one after a silence. Where
  // there are two screens, the strokes end at the edge of the first.
  constexpr int looksAlike = 20;
  int alike = 0;
  Picture last{1, 1, 0U};
  const bool isThere = shows([&](const Picture& screen) {
    alike = screen == last ? alike + 1 : 0;
    last = screen;
    return alike >= looksAlike && std::ranges::all_of(crossingStrokes(), [&](const support::Stroke& stroke) {
             return isBegun(screen, stroke);
           });
  });
  ASSERT_TRUE(isThere) << "No ink came to the screen.";
}

bool CoveredDesktop::shows(const std::function<bool(const Picture&)>& condition, std::chrono::milliseconds deadline) {
  return showsOn(client_, condition, deadline);
}

bool CoveredDesktop::showsNoInk(const PixelRect& part, std::chrono::milliseconds deadline) {
  return shows([&](const Picture& screen) { return ink(screen, part) == 0; }, deadline);
}

}  // namespace endtoend
