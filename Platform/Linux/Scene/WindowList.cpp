#include "Platform/Linux/Scene/WindowList.h"

#include <xcb/shape.h>

#include <algorithm>
#include <iterator>
#include <ranges>
#include <utility>

#include "Platform/Linux/Posix/TrimmedText.h"
#include "Platform/Linux/Scene/Identity.h"
#include "Platform/Linux/Scene/ManagedClients.h"

namespace platform::linux::scene {

namespace {

bool isBlank(const std::string& name) { return posix::trimmed(name).empty(); }

std::vector<std::string> namesOf(const WindowProperties& window) {
  std::vector<std::string> names;
  for (const std::string& name : {window.className, window.instanceName, window.processName}) {
    if (!isBlank(name)) names.push_back(validUtf8(name));
  }
  return names;
}

bool meet(const xcb::PixelRect& a, const xcb::PixelRect& b) { return !intersection(a, b).isEmpty(); }

}  // namespace

WindowList::WindowList(xcb::Connection& connection, const Scene& scene, std::vector<std::uint32_t> ownClients)
    : connection_(connection),
      scene_(scene),
      ownClients_(std::move(ownClients)),
      atoms_(connection),
      processNames_(connection) {
  for (const SceneWindow& window : scene_.windows()) windowAdded(window);
}

WindowList::~WindowList() = default;

void WindowList::setScreens(std::vector<xcb::ScreenGeometry> screens) {
  if (screens == screens_) return;
  screens_ = std::move(screens);
  monitors_.clear();
  for (const xcb::ScreenGeometry& screen : screens_) monitors_.push_back(screen.pixels);
  markChanged();
}

std::vector<CaptureWindow> WindowList::windows(const ShareableContentOptions& options) {
  refresh();
  const auto described = describeAll();
  std::vector<CaptureWindow> list;
  for (std::size_t i = 0; i < described.size(); ++i) {
    const SceneWindow& window = scene_.windows()[i];
    const WindowProperties& properties = described[i];
    const bool isDesktop = !properties.types.empty() && properties.types.front() == WindowType::desktop;
    if (window.isInputOnly || window.id == leftOut_ || (options.onScreenWindowsOnly && !window.isViewable) ||
        (options.excludingDesktopWindows && isDesktop)) {
      continue;
    }
    list.push_back(listed(window, properties));
  }
  isHandedOut_ = true;
  return list;
}

CaptureWindow WindowList::listed(const SceneWindow& window, const WindowProperties& properties) const {
  const auto owner = ownerIdentifier(properties);
  return {.windowID = window.id,
          .windowLayer = layer(properties),
          .frame = xcb::toPoints(window.outer, screens_),
          .isOnScreen = window.isViewable,
          .owningApplication = owner ? std::optional(RunningApplication{*owner}) : std::nullopt,
          .names = namesOf(properties),
          .sheet = screenSheet(properties, monitors_)};
}

std::optional<WindowProperties> WindowList::properties(xcb_window_t topLevel) {
  const auto windows = scene_.windows();
  const auto window = std::ranges::find(windows, topLevel, &SceneWindow::id);
  if (window == windows.end()) return std::nullopt;
  refresh();
  return describeAll()[static_cast<std::size_t>(window - windows.begin())];
}

std::int64_t WindowList::layer(const WindowProperties& window) const { return windowLayer(window, monitors_); }

bool WindowList::isOwn(xcb_window_t topLevel) const {
  if (isOwnClient(topLevel)) return true;
  const auto record = records_.find(topLevel);
  return record != records_.end() && isOwnClient(record->second.inner);
}

bool WindowList::isScreenLocker(xcb_window_t topLevel) {
  const SceneWindow* window = scene_.find(topLevel);
  // Most windows are too small: no need to ask about them.
  if (window == nullptr || !coversMonitor(window->outer, monitors_)) return false;
  const auto known = properties(topLevel);
  return known && scene::isScreenLocker(*known, monitors_) && !(mayOverlap_ && mayOverlap_(listed(*window, *known)));
}

// Sends all queries about stale windows before it waits for the first reply.
void WindowList::refresh() {
  std::vector<xcb_window_t> stale;
  for (auto& [window, record] : records_) {
    if (std::exchange(record.isStale, false)) stale.push_back(window);
  }
  if (stale.empty()) return;
  readTopLevels(stale);
  readInnerWindows(stale);
  readProcessNames(stale);
  collectMarks();
}

void WindowList::readTopLevels(const std::vector<xcb_window_t>& stale) {
  std::vector<ClientPropertiesRequest> requests;
  for (const xcb_window_t window : stale) {
    watch(window);
    requests.emplace_back(connection_, atoms_, window);
  }
  const auto inside = managedClients(connection_, stale);
  for (std::size_t i = 0; i < stale.size(); ++i) {
    Record& record = records_[stale[i]];
    record.own = requests[i].collect();
    // A managed window is not a frame; other clients' windows inside it are only parts of it.
    setInner(stale[i], record.own.isManaged ? noClient : inside[i]);
  }
}

void WindowList::readInnerWindows(const std::vector<xcb_window_t>& stale) {
  std::vector<std::pair<Record*, ClientPropertiesRequest>> requests;
  for (const xcb_window_t window : stale) {
    Record& record = records_[window];
    record.ofInner = {};
    if (record.inner == noClient || isOwnClient(record.inner)) continue;
    watch(record.inner);
    requests.emplace_back(&record, ClientPropertiesRequest(connection_, atoms_, record.inner));
  }
  for (auto& [record, request] : requests) record->ofInner = request.collect();
}

void WindowList::readProcessNames(const std::vector<xcb_window_t>& stale) {
  std::vector<Record*> nameless;
  std::vector<ProcessNames::Question> questions;
  for (const xcb_window_t window : stale) {
    Record& record = records_[window];
    const bool isFrame = record.ofInner.isManaged;
    const ClientProperties& client = isFrame ? record.ofInner : record.own;
    record.processName.clear();
    if (!isBlank(client.className) || !isBlank(client.instanceName)) continue;
    nameless.push_back(&record);
    questions.push_back({isFrame ? record.inner : window, client.processId});
  }
  if (questions.empty()) return;
  const auto names = processNames_.ask(questions);
  for (std::size_t i = 0; i < names.size(); ++i) nameless[i]->processName = names[i];
}

void WindowList::setInner(xcb_window_t topLevel, xcb_window_t inner) {
  Record& record = records_[topLevel];
  if (record.inner == inner) return;
  frameOf_.erase(record.inner);
  record.inner = inner;
  if (inner != noClient) frameOf_[inner] = topLevel;
}

// Select events before reading the properties, so that no change is missed in between. The window may be gone.
void WindowList::watch(xcb_window_t window) {
  const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
  connection_.ignoreErrors(xcb_change_window_attributes(connection_.get(), window, XCB_CW_EVENT_MASK, &mask));
  if (!connection_.has(xcb::Extension::shape)) return;
  connection_.ignoreErrors(xcb_shape_select_input(connection_.get(), window, 1));
}

void WindowList::handle(const xcb_generic_event_t& event) {
  const auto topLevelOf = [&](xcb_window_t window) {
    const auto frame = frameOf_.find(window);
    return frame == frameOf_.end() ? window : frame->second;
  };
  const std::uint8_t type = xcb::eventType(event);
  if (type == XCB_PROPERTY_NOTIFY) {
    const auto& property = xcb::eventAs<xcb_property_notify_event_t>(event);
    if (atoms_.watches(property.atom)) markStale(topLevelOf(property.window));
  } else if (type == XCB_REPARENT_NOTIFY) {
    handleReparent(xcb::eventAs<xcb_reparent_notify_event_t>(event));
  } else if (connection_.has(xcb::Extension::shape) &&
             type == connection_.firstEvent(xcb::Extension::shape) + XCB_SHAPE_NOTIFY) {
    const auto& shape = xcb::eventAs<xcb_shape_notify_event_t>(event);
    // The scene follows the bounding shapes of top-levels: overlays change them with every stroke.
    const bool isFollowedByScene = shape.shape_kind != XCB_SHAPE_SK_INPUT && !frameOf_.contains(shape.affected_window);
    if (!isFollowedByScene) markStale(topLevelOf(shape.affected_window));
  }
}

// A window left a frame or entered one, or entered a wrapper inside a frame, of which only the owner is known.
void WindowList::handleReparent(const xcb_reparent_notify_event_t& event) {
  if (const auto frame = frameOf_.find(event.window); frame != frameOf_.end()) markStale(frame->second);
  if (event.parent == connection_.root()) return;
  if (records_.contains(event.parent)) return markStale(event.parent);
  const std::uint32_t mask = connection_.resourceMask();
  for (auto& [window, record] : records_) {
    if (record.inner == noClient && (window & ~mask) == (event.parent & ~mask)) markStale(window);
  }
}

void WindowList::windowAdded(const SceneWindow& window) {
  // We ask nothing about this program's own windows and leave their event masks alone.
  if (!isOwnClient(window.id) && !window.isInputOnly) records_[window.id] = {};
  markChanged();
}

void WindowList::windowRemoved(const SceneWindow& window, Departure /*departure*/) {
  if (const auto record = records_.find(window.id); record != records_.end()) {
    frameOf_.erase(record->second.inner);
    const bool isMark = !record->second.own.productClients.empty();
    records_.erase(record);
    if (isMark) collectMarks();
  }
  markChanged();
}

void WindowList::windowChanged(const SceneWindow& before, const SceneWindow& after) {
  if (const auto record = records_.find(after.id); record != records_.end() && !after.isViewable)
    record->second.wasOverlay = false;
  SceneWindow moved = before;
  moved.outer.x = after.outer.x;
  moved.outer.y = after.outer.y;
  // Otherwise dragging a window would have the list read again with every step.
  if (moved == after && coversMonitor(before.outer, monitors_) == coversMonitor(after.outer, monitors_)) return;
  markChanged();
}
void WindowList::windowReshaped(const SceneWindow& /*window*/) {}
void WindowList::windowRestacked(const SceneWindow& /*window*/) { markChanged(); }
void WindowList::compositingManagerChanged(bool /*isRunning*/) {}

void WindowList::markStale(xcb_window_t window) {
  const auto record = records_.find(window);
  if (record == records_.end()) return;
  record->second.isStale = true;
  markChanged();
}

void WindowList::markChanged() {
  if (std::exchange(isHandedOut_, false) && changed_) changed_();
}

// The server's own windows belong to nobody, whatever a mark says.
void WindowList::collectMarks() {
  markedClients_.clear();
  for (const auto& [window, record] : records_) {
    std::ranges::copy_if(record.own.productClients, std::back_inserter(markedClients_),
                         [&](std::uint32_t client) { return !connection_.isServerOwned(client); });
  }
}

bool WindowList::isOwnClient(xcb_window_t window) const {
  const std::uint32_t client = window & ~connection_.resourceMask();
  return std::ranges::find(ownClients_, client) != ownClients_.end() ||
         std::ranges::find(markedClients_, client) != markedClients_.end();
}

WindowProperties WindowList::describe(const SceneWindow& window) const {
  WindowProperties result;
  result.frame = window.outer;
  result.hasAlpha = connection_.visualHasAlpha(window.visual);
  result.isShaped = (isShapedByOwner_ ? isShapedByOwner_(window.id) : std::nullopt).value_or(window.isShaped);
  result.isOwn = isOwn(window.id);
  const auto found = records_.find(window.id);
  if (found == records_.end()) return result;
  const Record& record = found->second;
  const bool isFrame = record.ofInner.isManaged;
  const ClientProperties& client = isFrame ? record.ofInner : record.own;
  result.instanceName = client.instanceName;
  result.className = client.className;
  result.processName = record.processName;
  result.types = client.types;
  result.state = client.state;
  result.hasFixedSize = client.hasFixedSize;
  // Some window managers give every frame a shape.
  if (isFrame) result.isShaped = client.hasShape;
  result.wasOverlay = record.wasOverlay;
  result.hasEmptyInput = record.own.hasEmptyInput || record.ofInner.hasEmptyInput;
  result.isManaged = client.isManaged;
  result.isDecorated = client.isManaged && client.hasDecorations.value_or(isFrame);
  return result;
}

// Overlays and a locker's own dialog may also lie above a locker, but they are not managed.
bool WindowList::isLowestOfDesktop(std::span<const WindowProperties> all, std::size_t index) const {
  const auto isThere = [&](std::size_t other) {
    const SceneWindow& window = scene_.windows()[other];
    return window.isViewable && !window.isInputOnly && !all[other].isOwn && meet(all[index].frame, all[other].frame);
  };
  const auto isOfDesktop = [&](std::size_t other) { return isThere(other) && all[other].isManaged; };
  return std::ranges::none_of(std::views::iota(std::size_t{0}, index), isThere) &&
         std::ranges::any_of(std::views::iota(index + 1, all.size()), isOfDesktop);
}

std::vector<WindowProperties> WindowList::describeAll() {
  std::vector<WindowProperties> all;
  for (const SceneWindow& window : scene_.windows()) all.push_back(describe(window));
  const auto isOrdinary = [&](std::size_t i) {
    return scene_.windows()[i].isViewable && all[i].isManaged && layer(all[i]) == layers::ordinary;
  };
  for (std::size_t i = 0; i < all.size(); ++i) {
    if (all[i].isManaged || !coversMonitor(all[i].frame, monitors_)) continue;
    const auto meetsOrdinary = [&](std::size_t j) { return isOrdinary(j) && meet(all[i].frame, all[j].frame); };
    const bool hasAbove = std::ranges::any_of(std::views::iota(i + 1, all.size()), meetsOrdinary);
    const bool hasBeneath = std::ranges::any_of(std::views::iota(std::size_t{0}, i), meetsOrdinary);
    all[i].isBeneathOrdinaryWindows = hasAbove && !hasBeneath;
    all[i].isLowestOfDesktop = isLowestOfDesktop(all, i);
  }
  noteOverlays(all);
  return all;
}

void WindowList::noteOverlays(std::span<const WindowProperties> all) {
  for (std::size_t i = 0; i < all.size(); ++i) {
    const SceneWindow& window = scene_.windows()[i];
    const auto record = records_.find(window.id);
    if (record != records_.end() && window.isViewable && layer(all[i]) == layers::overlay)
      record->second.wasOverlay = true;
  }
}

}  // namespace platform::linux::scene
