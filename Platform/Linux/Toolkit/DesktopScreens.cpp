#include "Platform/Linux/Toolkit/DesktopScreens.h"

#include <QGuiApplication>
#include <algorithm>
#include <cmath>
#include <utility>

#include "Platform/Linux/Toolkit/QtX11.h"
#include "Platform/Linux/Xcb/MonitorRectangles.h"
#include "Platform/Linux/Xcb/Replies.h"

namespace platform::linux::toolkit {

namespace {

std::vector<QScreen*> screensInOrder() {
  const QList<QScreen*> list = QGuiApplication::screens();
  std::vector<QScreen*> screens(list.begin(), list.end());
  std::ranges::stable_partition(screens, [](QScreen* screen) { return screen == QGuiApplication::primaryScreen(); });
  return screens;
}

// Qt rounds a screen's size to whole points. The server's own list restores the lost pixels, and tells a screen from
// the placeholder that Qt keeps when there is none.
std::optional<xcb::PixelRect> exactPixels(const QScreen& screen,
                                          const std::optional<std::vector<xcb::PixelRect>>& monitors) {
  const QRect geometry = screen.geometry();
  const double scale = screen.devicePixelRatio();
  const xcb::PixelRect approximate{geometry.x(), geometry.y(),
                                   static_cast<std::int32_t>(std::lround(geometry.width() * scale)),
                                   static_cast<std::int32_t>(std::lround(geometry.height() * scale))};
  if (approximate.isEmpty()) return std::nullopt;
  if (!monitors) return approximate;
  if (monitors->empty()) return std::nullopt;
  const int tolerance = static_cast<int>(std::ceil(scale));
  for (const xcb::PixelRect& monitor : *monitors) {
    const bool isIt = monitor.x == approximate.x && monitor.y == approximate.y &&
                      std::abs(monitor.width - approximate.width) <= tolerance &&
                      std::abs(monitor.height - approximate.height) <= tolerance;
    if (isIt) return monitor;
  }
  return approximate;
}

struct NamedScreen {
  std::string name;
  xcb::ScreenGeometry geometry;
};

std::vector<NamedScreen> readScreens() {
  xcb_connection_t* server = qtConnection();
  const auto monitors = server != nullptr ? xcb::monitorRectangles(server, rootWindow(server)) : std::nullopt;
  std::vector<NamedScreen> screens;
  for (const QScreen* screen : screensInOrder())
    if (const auto pixels = exactPixels(*screen, monitors))
      screens.push_back({screen->name().toStdString(), {*pixels, screen->devicePixelRatio(), {}}});
  return screens;
}

std::vector<xcb::ScreenGeometry> placed(const std::vector<NamedScreen>& screens) {
  std::vector<xcb::ScreenGeometry> geometries;
  for (const NamedScreen& screen : screens) geometries.push_back(screen.geometry);
  xcb::placeInPoints(geometries);
  return geometries;
}

std::uint32_t hash(const std::string& text) {  // FNV-1a
  std::uint32_t value = 0x811c9dc5;
  for (const char character : text) value = (value ^ static_cast<unsigned char>(character)) * 0x01000193U;
  return value;
}

}  // namespace

std::vector<std::uint32_t> displayIdentifiers(std::span<const std::string> names) {
  std::vector<std::uint32_t> identifiers;
  for (const std::string& name : names) {
    std::uint32_t identifier = hash(name);
    while (identifier == 0 || std::ranges::find(identifiers, identifier) != identifiers.end()) ++identifier;
    identifiers.push_back(identifier);
  }
  return identifiers;
}

DesktopScreens::DesktopScreens() : lastSeen_(layout().screens) {
  QObject::connect(qApp, &QGuiApplication::screenAdded, &context_, [this](QScreen* screen) {
    watch(*screen);
    scheduleCheck();
  });
  QObject::connect(qApp, &QGuiApplication::screenRemoved, &context_, [this] { scheduleCheck(); });
  QObject::connect(qApp, &QGuiApplication::primaryScreenChanged, &context_, [this] { scheduleCheck(); });
  for (QScreen* screen : QGuiApplication::screens()) watch(*screen);
}

const DesktopScreens::Layout& DesktopScreens::layout() const {
  if (layout_) return *layout_;
  const std::vector<NamedScreen> named = readScreens();
  layout_.emplace().geometries = placed(named);
  std::vector<std::string> names;
  for (const NamedScreen& screen : named) names.push_back(screen.name);
  const std::vector<std::uint32_t> identifiers = displayIdentifiers(names);
  for (std::size_t i = 0; i < named.size(); ++i) {
    const xcb::ScreenGeometry& geometry = layout_->geometries[i];
    layout_->screens.push_back({geometry.points, identifiers[i], geometry.scale});
  }
  return *layout_;
}

std::vector<Screen> DesktopScreens::all() const { return layout().screens; }

std::optional<Screen> DesktopScreens::main() const {
  const std::vector<Screen> screens = all();
  if (screens.empty()) return std::nullopt;
  return screens.front();
}

// From the server, in pixels: Qt rounds to whole points, and thus beyond the edges of a scaled screen.
Point DesktopScreens::mouseLocation() const {
  xcb_connection_t* server = qtConnection();
  if (server == nullptr) return {};
  const auto pointer = xcb::awaitReply(server, xcb_query_pointer_reply, xcb_query_pointer(server, rootWindow(server)));
  return pointer ? xcb::middleOfPixel(pointer->root_x, pointer->root_y, geometries()) : Point{};
}

void DesktopScreens::observeChanges(std::function<void()> observer) { observers_.push_back(std::move(observer)); }

std::vector<xcb::ScreenGeometry> DesktopScreens::geometries() const { return layout().geometries; }

void DesktopScreens::watch(QScreen& screen) {
  QObject::connect(&screen, &QScreen::geometryChanged, &context_, [this] { scheduleCheck(); });
  QObject::connect(&screen, &QScreen::logicalDotsPerInchChanged, &context_, [this] { scheduleCheck(); });
  QObject::connect(&screen, &QScreen::physicalDotsPerInchChanged, &context_, [this] { scheduleCheck(); });
}

void DesktopScreens::scheduleCheck() {
  layout_.reset();
  if (std::exchange(checkIsScheduled_, true)) return;
  QMetaObject::invokeMethod(&context_, [this] { check(); }, Qt::QueuedConnection);
}

void DesktopScreens::check() {
  checkIsScheduled_ = false;
  // The server may have moved on since the last signal.
  layout_.reset();
  std::vector<Screen> now = all();
  if (now == lastSeen_) return;
  lastSeen_ = std::move(now);
  for (const auto& observer : std::vector(observers_)) observer();
}

}  // namespace platform::linux::toolkit
