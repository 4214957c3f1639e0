#include "Platform/Linux/LinuxPlatform.h"

#include <unistd.h>
#include <xcb/randr.h>

#include <chrono>
#include <cstdlib>
#include <iostream>
#include <thread>

#include "Platform/Linux/Holes/SeeThroughVisual.h"
#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Scene/Redirection.h"
#include "Platform/Linux/Session/Session.h"
#include "Platform/Linux/Toolkit/QtX11.h"

namespace platform::linux {
namespace {

[[noreturn]] void endProcess(const std::string& sentence) {
  std::cerr << "quillfade: " << sentence << std::endl;
  std::_Exit(EXIT_FAILURE);
}

// The X server of a Wayland session is started again when somebody wants it, and that takes a moment. One that never
// answers ends this process, too.
std::expected<std::unique_ptr<xcb::Connection>, Error> openReturningDisplay() {
  constexpr std::chrono::seconds patience{10};
  constexpr std::chrono::milliseconds pause{50};
  ::alarm(2 * static_cast<unsigned>(patience.count()));
  const auto deadline = std::chrono::steady_clock::now() + patience;
  auto connection = xcb::Connection::open("");
  while (!connection && std::chrono::steady_clock::now() < deadline) {
    std::this_thread::sleep_for(pause);
    connection = xcb::Connection::open("");
  }
  ::alarm(0);
  return connection;
}

std::unique_ptr<xcb::Connection> openConnection(bool returns) {
  auto connection = returns ? openReturningDisplay() : xcb::Connection::open("");
  if (!connection)
    endProcess((session::isWaylandSession() ? std::string{session::waylandSentence} + ' ' : "") +
               connection.error().localizedDescription);
  return std::move(*connection);
}

void selectScreenEvents(const xcb::Connection& connection) {
  if (!connection.has(xcb::Extension::randr)) return;
  xcb_randr_select_input(connection.get(), connection.root(),
                         XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
}

bool isScreenEvent(const xcb::Connection& connection, const xcb_generic_event_t& event) {
  if (!connection.has(xcb::Extension::randr)) return false;
  const int kind = xcb::eventType(event) - connection.firstEvent(xcb::Extension::randr);
  return kind == XCB_RANDR_SCREEN_CHANGE_NOTIFY || kind == XCB_RANDR_NOTIFY;
}

std::vector<std::uint32_t> resourceBases(const xcb::Connection& connection) {
  std::vector<std::uint32_t> bases{connection.resourceBase()};
  if (auto* qt = toolkit::qtConnection()) bases.push_back(xcb_get_setup(qt)->resource_id_base);
  return bases;
}

// Without the extensions, or in a Wayland session, redirecting is no use: the solid cover does not need it.
std::unique_ptr<scene::Redirection> redirectWindows(xcb::Connection& connection, const scene::Scene& scene,
                                                    const std::vector<std::uint32_t>& ownClients) {
  if (!connection.missingExtensions().empty() || session::isWaylandSession(connection)) return nullptr;
  return std::make_unique<scene::Redirection>(connection, scene.windows(), ownClients);
}

// No other process that runs now has the same, nor had this one before it was started anew: its guard from then may
// still be at work.
std::uint32_t holeToken(const posix::NewStart& newStart) {
  constexpr unsigned bitsOfProcessIds = 22;
  return static_cast<std::uint32_t>(getpid()) | newStart.count() << bitsOfProcessIds;
}

std::optional<holes::HoleGuard> makeGuard(const xcb::Connection& connection, std::uint32_t token) {
  if (!session::isWaylandSession(connection)) return std::nullopt;
  return holes::HoleGuard(token);
}

// Where the X server does not have the screen, ink is taken away instead of being left out of a copy.
std::shared_ptr<holes::HoleEngine> makeHoles(xcb::Connection& connection, scene::Scene& scene, RunLoop& runLoop,
                                             const std::vector<std::uint32_t>& ownClients, std::uint32_t token) {
  if (!session::isWaylandSession(connection)) return nullptr;
  return std::make_shared<holes::HoleEngine>(connection, scene, runLoop, ownClients, token);
}

std::vector<std::string> missingExtensions(const xcb::Connection& connection, bool usesHoles) {
  return usesHoles ? holes::extensionsMissingForHoles(connection) : connection.missingExtensions();
}

// Where the desktop itself is to be seen through our windows: by their shape alone if need be.
std::optional<xcb_visualid_t> visualOfOverlays(const xcb::Connection& connection, bool usesHoles) {
  if (!usesHoles) return std::nullopt;
  return holes::seeThroughVisual(connection).value_or(connection.rootVisual());
}

std::string programPath() { return QCoreApplication::applicationFilePath().toStdString(); }

}  // namespace

LinuxPlatform::LinuxPlatform(std::span<char* const> arguments)
    : newStart_(arguments),
      connection_(openConnection(newStart_.count() > 0)),
      guard_(makeGuard(*connection_, holeToken(newStart_))),
      application_(arguments),
      ownClients_(resourceBases(*connection_)),
      mark_(*connection_, ownClients_),
      settings_(settings::settingsPath()),
      rulesFile_(settings::rulesPath()),
      notifications_(posix::stateDirectory() + "/quillfade"),
      texts_(toolkit::userLanguages()),
      scene_(*connection_),
      windowList_(*connection_, scene_, ownClients_),
      redirection_(redirectWindows(*connection_, scene_, ownClients_)),
      holes_(makeHoles(*connection_, scene_, runLoop_, ownClients_, holeToken(newStart_))),
      stage_(*connection_, scene_, windowList_, runLoop_),
      sessionLock_(*connection_, scene_, windowList_, runLoop_),
      windows_({*connection_, stage_, screens_, runLoop_, visualOfOverlays(*connection_, holes_ != nullptr)},
               holes_ ? input::KeyboardFocus::Manner::byGrabAndFocus : input::KeyboardFocus::Manner::byFocus),
      capture_(*connection_, screens_, runLoop_, ownClients_, windowList_, stage_, holes_.get()),
      hostMenus_(scene_, windowList_),
      statusBar_(runLoop_, hostMenus_),
      loginItem_(posix::configurationDirectory(), programPath()),
      workspace_(missingExtensions(*connection_, holes_ != nullptr)),
      events_(
          *connection_, [this](const xcb_generic_event_t& event) { handle(event); }, [this] { settle(); },
          [this] { displayLost(); }) {
  if (session::isWaylandSession(*connection_)) {
    sessionKeys_.emplace(*connection_);
  } else {
    grabbedKeys_.emplace(*connection_);
  }
  scene_.addListener(windowList_);
  if (holes_) windowList_.setShapedByOwner([this](xcb_window_t window) { return holes_->isShapedByOwner(window); });
  // Needed even if nothing is captured: a window that covers a whole monitor may be a locker.
  selectScreenEvents(*connection_);
  windowList_.setScreens(screens_.geometries());
  screens_.observeChanges([this] { windowList_.setScreens(screens_.geometries()); });
}

// A waiting job may hold the last mirror, whose window needs the stage.
LinuxPlatform::~LinuxPlatform() { runLoop_.close(); }

platform::HotKeys& LinuxPlatform::hotKeys() {
  if (sessionKeys_) return *sessionKeys_;
  return *grabbedKeys_;
}

void LinuxPlatform::handle(const xcb_generic_event_t& event) {
  if (isScreenEvent(*connection_, event)) screens_.serverChanged();
  scene_.handle(event);
  windowList_.handle(event);
  if (redirection_) redirection_->handle(event);
  if (grabbedKeys_) grabbedKeys_->handle(event);
  stage_.handle(event);
  sessionLock_.handle(event);
}

// An X server of a Wayland session is only a part of the session, which goes on without it. The settings have all that
// was covered.
void LinuxPlatform::displayLost() {
  if (!holes_) return;
  std::cerr << "quillfade: The X server of this session has ended; Quillfade waits for the next one." << std::endl;
  newStart_.begin();
}

void LinuxPlatform::settle() {
  scene_.collectReplies();
  stage_.settle();
  sessionLock_.settle();
  capture_.settle();
  hostMenus_.settle();
}

}  // namespace platform::linux

namespace platform {

std::unique_ptr<Platform> makePlatform(std::span<char* const> arguments) {
  return std::make_unique<linux::LinuxPlatform>(arguments);
}

}  // namespace platform
