#include "Platform/Linux/Lens/SharedScreen.h"

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/randr.h>
#include <xcb/xcbext.h>
#include <xcb/xfixes.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Xcb/MonitorRectangles.h"

namespace platform::linux::lens {

namespace {

// Another program may hold the server grabbed. The reader then gets an old picture rather than none.
constexpr std::chrono::milliseconds longestWaitForServer{1000};
constexpr int mostQuestions = 4;

struct ExtensionCodes {
  std::uint8_t major = 0;
  std::uint8_t firstEvent = 0;
};

ExtensionCodes extensionCodes(xcb::Connection& connection, const char* name) {
  const auto reply = xcb::awaitReply(
      connection.get(), xcb_query_extension_reply,
      xcb_query_extension(connection.get(), static_cast<std::uint16_t>(std::string_view(name).size()), name));
  return reply && reply->present != 0 ? ExtensionCodes{reply->major_opcode, reply->first_event} : ExtensionCodes{};
}

std::uint8_t extensionNumber(xcb::Connection& connection, const char* name) {
  return extensionCodes(connection, name).major;
}

protocol::ScreenNames namesOn(xcb::Connection& connection) {
  const ExtensionCodes damage = extensionCodes(connection, "DAMAGE");
  return {.extensions = {.bigRequests = extensionNumber(connection, "BIG-REQUESTS"),
                         .composite = extensionNumber(connection, "Composite"),
                         .render = extensionNumber(connection, "RENDER"),
                         .sharedMemory = extensionNumber(connection, "MIT-SHM"),
                         .directRendering = extensionNumber(connection, "DRI3"),
                         .damage = damage.major,
                         .damageEvent = static_cast<std::uint8_t>(damage.firstEvent + XCB_DAMAGE_NOTIFY)},
          .root = connection.root(),
          .rootVisual = connection.rootVisual()};
}

}  // namespace

std::expected<std::unique_ptr<SharedScreen>, Error> SharedScreen::open(const std::string& display, LensRule rule) {
  auto connection = xcb::Connection::open(display);
  if (!connection) return std::unexpected(connection.error());
  if (const auto missing = (*connection)->missingExtensions(); !missing.empty()) {
    return std::unexpected(Error{xcb::missingExtensionsSentence(missing)});
  }
  if (rule.concernsOthers) scene::redirectSubwindows(**connection);
  std::unique_ptr<SharedScreen> screen(new SharedScreen(std::move(*connection), std::move(rule)));
  if (screen->isLost()) return std::unexpected(Error{xcb::connectionLostSentence});
  return screen;
}

SharedScreen::SharedScreen(std::unique_ptr<xcb::Connection> connection, LensRule rule)
    : connection_(std::move(connection)),
      rule_(std::move(rule)),
      names_(namesOn(*connection_)),
      scene_(*connection_),
      windowList_(*connection_, scene_, {connection_->resourceBase()}),
      screenSaver_(*connection_),
      painted_(*connection_),
      whole_(*connection_) {
  scene_.addListener(windowList_);
  windowList_.setChanged([this] { isListStale_ = true; });
  // If only the monitors change, the root window is merely reported as configured, with its old size.
  connection_->addRootEvents(XCB_EVENT_MASK_STRUCTURE_NOTIFY);
  findServerWindow();
  makeRootPictures();
  connection_->synchronize(static_cast<int>(longestWaitForServer.count()));
}

SharedScreen::~SharedScreen() {
  compositor_.reset();
  scene_.removeListener(windowList_);
}

void SharedScreen::makeRootPictures() {
  const xcb_render_pictformat_t format = connection_->formatOfVisual(connection_->rootVisual());
  const std::uint32_t overWindows = XCB_SUBWINDOW_MODE_INCLUDE_INFERIORS;
  names_.rootPicture = connection_->newId();
  names_.rootPictureOverWindows = connection_->newId();
  xcb_render_create_picture(connection_->get(), names_.rootPicture, connection_->root(), format, 0, nullptr);
  xcb_render_create_picture(connection_->get(), names_.rootPictureOverWindows, connection_->root(), format,
                            XCB_RENDER_CP_SUBWINDOW_MODE, &overWindows);
}

void SharedScreen::handle(const xcb_generic_event_t& event) {
  scene_.handle(event);
  windowList_.handle(event);
  screenSaver_.handle(event);
  noteServerWindow(event);
  if (compositor_) compositor_->handle(event);
  if (xcb::eventType(event) != XCB_CONFIGURE_NOTIFY) return;
  const auto& configured = xcb::eventAs<xcb_configure_notify_event_t>(event);
  isScreenStale_ =
      isScreenStale_ || (configured.window == connection_->root() && configured.event == configured.window);
}

// Finds a window of the server that came before this object. No list has it, but the server says which window lies at a
// point. Asked after the scene has begun to listen, so that none is missed.
void SharedScreen::findServerWindow() {
  xcb_connection_t* c = connection_->get();
  const xcb_window_t root = connection_->root();
  const auto there =
      xcb::awaitReply(c, xcb_translate_coordinates_reply, xcb_translate_coordinates(c, root, root, 0, 0));
  if (there && there->child != XCB_NONE && connection_->isServerOwned(there->child))
    serverWindows_.insert(there->child);
}

void SharedScreen::noteServerWindow(const xcb_generic_event_t& event) {
  const std::uint8_t type = xcb::eventType(event);
  if (xcb::isSentByClient(event)) return;
  if (type == XCB_MAP_NOTIFY) {
    const xcb_window_t window = xcb::eventAs<xcb_map_notify_event_t>(event).window;
    if (connection_->isServerOwned(window)) serverWindows_.insert(window);
  } else if (type == XCB_UNMAP_NOTIFY) {
    serverWindows_.erase(xcb::eventAs<xcb_unmap_notify_event_t>(event).window);
  } else if (type == XCB_DESTROY_NOTIFY) {
    serverWindows_.erase(xcb::eventAs<xcb_destroy_notify_event_t>(event).window);
  }
}

bool SharedScreen::isHidden() const {
  return screenSaver_.isActive() || (!serverWindows_.empty() && !scene_.hasCompositingManager());
}

void SharedScreen::blacken() {
  compositor_.reset();
  const xcb_rectangle_t everything = xcb::toRectangle(target_.source);
  xcb_xfixes_set_picture_clip_region(connection_->get(), target_.picture, XCB_NONE, 0, 0);
  xcb_render_fill_rectangles(connection_->get(), XCB_RENDER_PICT_OP_SRC, target_.picture, {0, 0, 0, 0xffff}, 1,
                             &everything);
  if (!std::exchange(isBlack_, true)) report(whole_);
}

// A board takes an eighth of a byte per pixel. Whoever follows an older one hears of changes within that.
void SharedScreen::makeBoard() {
  const xcb::PixelRect& screen = target_.source;
  whole_.set(screen);
  names_.boards.whole = whole_.id();
  names_.boards.width = static_cast<std::uint16_t>(screen.width);
  names_.boards.height = static_cast<std::uint16_t>(screen.height);
  if (intersection(screen, board_) == screen) return;
  board_ = united(screen, board_);
  names_.boards.pixmaps.push_back(connection_->newId());
  xcb_create_pixmap(connection_->get(), 1, names_.boards.pixmaps.back(), connection_->root(),
                    static_cast<std::uint16_t>(board_.width), static_cast<std::uint16_t>(board_.height));
}

void SharedScreen::report(const xcb::Region& changed) {
  for (const xcb_pixmap_t board : names_.boards.pixmaps) xcb_damage_add(connection_->get(), board, changed.id());
}

// Each reply may lead to a question, and each may bring events along.
void SharedScreen::takeIn() {
  bool isAny = true;
  while (std::exchange(isAny, false)) {
    connection_->flush();
    while (const xcb::Event event = connection_->nextEvent()) {
      handle(*event);
      isAny = true;
    }
    isAny = scene_.collectReplies() || isAny;
  }
}

void SharedScreen::ask() {
  question_ = xcb_get_input_focus(connection_->get()).sequence;
  connection_->flush();
  deadline_ = Clock::now() + longestWaitForServer;
  ++questions_;
}

bool SharedScreen::isAnswered() {
  void* reply = nullptr;
  xcb_generic_error_t* error = nullptr;
  if (xcb_poll_for_reply(connection_->get(), question_, &reply, &error) == 0) return false;
  std::free(reply);
  std::free(error);
  return true;
}

// Without an older picture we can only keep waiting.
bool SharedScreen::isTooLate() {
  if (Clock::now() < deadline_) return false;
  deadline_ = Clock::now() + longestWaitForServer;
  if (target_.pixmap == 0) return false;
  xcb_discard_reply(connection_->get(), question_);
  return true;
}

bool SharedScreen::isDescribed() const {
  return std::ranges::all_of(scene_.windows(), [](const scene::SceneWindow& window) { return window.isDescribed; });
}

void SharedScreen::readScreens() {
  isScreenStale_ = false;
  xcb_connection_t* c = connection_->get();
  const auto geometry = xcb::awaitReply(c, xcb_get_geometry_reply, xcb_get_geometry(c, connection_->root()));
  if (!geometry) return;
  const xcb::PixelRect whole{0, 0, geometry->width, geometry->height};
  const auto monitors = xcb::monitorRectangles(c, connection_->root());
  std::vector<xcb::ScreenGeometry> geometries;
  for (const xcb::PixelRect& monitor : monitors.value_or(std::vector{whole})) geometries.push_back({monitor, 1, {}});
  xcb::placeInPoints(geometries);
  screens_.clear();
  for (const xcb::ScreenGeometry& each : geometries) screens_.push_back({each.points, std::nullopt, each.scale});
  windowList_.setScreens(geometries);
  if (whole == target_.source) return;
  compositor_.reset();
  release(formerTarget_);
  formerTarget_ = std::exchange(target_, {.source = whole});
  makeTarget();
  makeBoard();
}

void SharedScreen::makeTarget() {
  xcb_connection_t* c = connection_->get();
  target_.pixmap = connection_->newId();
  target_.picture = connection_->newId();
  xcb_create_pixmap(c, connection_->rootDepth(), target_.pixmap, connection_->root(),
                    static_cast<std::uint16_t>(target_.source.width),
                    static_cast<std::uint16_t>(target_.source.height));
  xcb_render_create_picture(c, target_.picture, target_.pixmap, connection_->formatOfVisual(connection_->rootVisual()),
                            0, nullptr);
}

void SharedScreen::release(Target& target) {
  if (target.pixmap == 0) return;
  xcb_render_free_picture(connection_->get(), target.picture);
  xcb_free_pixmap(connection_->get(), target.pixmap);
  target = {};
}

std::vector<xcb_window_t> SharedScreen::windowsToLeaveOut() {
  std::vector<xcb_window_t> windows;
  for (const CaptureWindow& window : rule_.leftOut(windowList_.windows({.onScreenWindowsOnly = true}), screens_)) {
    windows.push_back(window.windowID);
  }
  std::ranges::sort(windows);
  return windows;
}

// Another set of windows changes the picture without damage, so the whole picture is painted anew.
void SharedScreen::leaveOut(std::vector<xcb_window_t> windows) {
  if (compositor_ && windows == leftOut_) return;
  leftOut_ = std::move(windows);
  compositor_.reset();
  compositor_.emplace(*connection_, scene_, target_.source,
                      scene::WindowFilter{leftOut_, {}, connection_->resourceMask()});
}

bool SharedScreen::hasChanged() const {
  if (isScreenStale_ || isListStale_ || isHidden() != isBlack_) return true;
  return compositor_ && compositor_->changes() != compositor::Compositor::Changes::none;
}

bool SharedScreen::paint() {
  isListStale_ = false;
  if (isScreenStale_) readScreens();
  if (isHidden()) {
    blacken();
    return true;
  }
  isBlack_ = false;
  leaveOut(windowsToLeaveOut());
  if (compositor_->changes() == compositor::Compositor::Changes::none) return false;
  compositor_->paintTo({target_.picture}, painted_);
  report(painted_);
  return true;
}

// Paints at once what is already known. Mostly that is everything, and one reply of the server then says both that it
// is done and that nothing else has happened.
void SharedScreen::beginUpdate() {
  isPainted_ = false;
  questions_ = 0;
  deadline_ = Clock::now();
  if (isLost()) return;
  takeIn();
  if (compositor_ && !isScreenStale_ && isDescribed()) paint();
  ask();
}

// Each round may find windows to ask about; the next round handles the replies.
bool SharedScreen::isUpToDate() {
  if (isLost()) return true;
  if (!isAnswered()) return isTooLate();
  takeIn();
  if (isPainted_) return true;
  if (isDescribed() || questions_ >= mostQuestions) {
    isPainted_ = paint();
    if (!isPainted_) return true;
  }
  ask();
  return false;
}

}  // namespace platform::linux::lens
