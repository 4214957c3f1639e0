#include "Platform/Linux/LinuxPlatform.h"

#include <xcb/randr.h>

#include <cstdlib>
#include <iostream>

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

std::unique_ptr<xcb::Connection> openConnection() {
  auto connection = xcb::Connection::open("");
  if (!connection)
    endProcess((session::isWaylandSession() ? std::string{session::waylandSentence} + ' ' : "") +
               connection.error().localizedDescription);
  if (session::isWaylandSession(**connection)) std::cerr << "quillfade: " << session::waylandSentence << std::endl;
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

std::string programPath() { return QCoreApplication::applicationFilePath().toStdString(); }

}  // namespace

LinuxPlatform::LinuxPlatform(std::span<char* const> arguments)
    : connection_(openConnection()),
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
      stage_(*connection_, scene_, windowList_, runLoop_),
      sessionLock_(*connection_, scene_, windowList_, runLoop_),
      windows_({*connection_, stage_, screens_, runLoop_}),
      capture_(*connection_, screens_, runLoop_, ownClients_, windowList_, stage_),
      hostMenus_(scene_, windowList_),
      statusBar_(runLoop_, hostMenus_),
      hotKeys_(*connection_),
      loginItem_(posix::configurationDirectory(), programPath()),
      workspace_(connection_->missingExtensions(),
                 session::isWaylandSession(*connection_) ? session::waylandSentence : ""),
      events_(*connection_, [this](const xcb_generic_event_t& event) { handle(event); }, [this] { settle(); }) {
  scene_.addListener(windowList_);
  // Needed even if nothing is captured: a window that covers a whole monitor may be a locker.
  selectScreenEvents(*connection_);
  windowList_.setScreens(screens_.geometries());
  screens_.observeChanges([this] { windowList_.setScreens(screens_.geometries()); });
}

// A waiting job may hold the last mirror, whose window needs the stage.
LinuxPlatform::~LinuxPlatform() { runLoop_.close(); }

void LinuxPlatform::handle(const xcb_generic_event_t& event) {
  if (isScreenEvent(*connection_, event)) screens_.serverChanged();
  scene_.handle(event);
  windowList_.handle(event);
  if (redirection_) redirection_->handle(event);
  hotKeys_.handle(event);
  stage_.handle(event);
  sessionLock_.handle(event);
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
