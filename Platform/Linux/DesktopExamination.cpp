#include "Platform/Linux/DesktopExamination.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>

#include "Platform/Linux/Input/HotKeys.h"
#include "Platform/Linux/Posix/DesktopNames.h"
#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Session/Session.h"
#include "Platform/Linux/Settings/SettingsFile.h"
#include "Platform/Linux/Shortcuts/Offer.h"
#include "Platform/Linux/Toolkit/CompositingManager.h"
#include "Platform/Linux/Toolkit/QtX11.h"

namespace platform::linux {

namespace {

constexpr int busPatience = 2000;  // milliseconds

std::string ofScreen(const char* selection, const xcb::Connection& connection) {
  return selection + std::to_string(connection.screenNumber());
}

bool hasTrayOnBus() {
  constexpr QLatin1String watcher("org.kde.StatusNotifierWatcher");
  const QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return false;
  QDBusMessage question =
      QDBusMessage::createMethodCall(watcher, QStringLiteral("/StatusNotifierWatcher"),
                                     QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
  question << QString(watcher) << QStringLiteral("IsStatusNotifierHostRegistered");
  question.setAutoStartService(false);
  const QDBusMessage reply = bus.call(question, QDBus::Block, busPatience);
  return reply.type() == QDBusMessage::ReplyMessage &&
         reply.arguments().value(0).value<QDBusVariant>().variant().toBool();
}

std::string trayFix() {
  const std::string without = " Hot keys and commands work without.";
  if (posix::isDesktop("GNOME")) {
    return "Install the extension \"AppIndicator and KStatusNotifierItem Support\" (on Debian the package "
           "gnome-shell-extension-appindicator), log in again, and switch it on in the program Extensions." +
           without;
  }
  return "Add a tray (\"status\" or \"notification\" area) to the panel, or start one such as tint2." + without;
}

Finding displayFinding(const std::expected<std::unique_ptr<xcb::Connection>, Error>& connection) {
  if (!connection) {
    return {.subject = "Display",
            .health = Health::fails,
            .detail = connection.error().localizedDescription,
            .fix = "Run this inside an X11 session, or set DISPLAY."};
  }
  const xcb_setup_t* setup = xcb_get_setup((*connection)->get());
  const std::string vendor(xcb_setup_vendor(setup), static_cast<std::size_t>(xcb_setup_vendor_length(setup)));
  return {.subject = "Display",
          .detail = posix::environmentVariable("DISPLAY").value_or("") + ", " + vendor + ", release " +
                    std::to_string(setup->release_number)};
}

}  // namespace

Finding sessionFinding(const xcb::Connection* connection) {
  if (!(connection != nullptr ? session::isWaylandSession(*connection) : session::isWaylandSession()))
    return {.subject = "Session", .detail = session::sessionType()};
  if (connection != nullptr) {
    return {.subject = "Session",
            .health = Health::limited,
            .detail =
                "Wayland: the ink of X11 programs such as gromit-mpx is taken away; that of Wayland programs can "
                "be neither seen nor taken away",
            .fix = "Use the solid cover over ink of Wayland programs."};
  }
  return {.subject = "Session",
          .health = Health::fails,
          .detail = session::waylandSentence,
          .fix = "Install the package xwayland and log in again, or choose a session on X.Org at the login screen."};
}

std::vector<Finding> extensionFindings(const xcb::Connection& connection) {
  std::vector<Finding> findings;
  for (const auto& extension : connection.extensionVersions()) {
    const std::string version = std::to_string(extension.major) + '.' + std::to_string(extension.minor);
    Finding finding{.subject = "X extension " + extension.name, .detail = version};
    if (!extension.isUsable) {
      finding.health = Health::fails;
      finding.detail = extension.isPresent ? version + ", which is too old" : "missing";
      finding.fix = "Enable it in the X server's configuration, or log in to a session on a current X.Org server.";
    }
    findings.push_back(std::move(finding));
  }
  return findings;
}

Finding compositingFinding(xcb::Connection& connection) {
  const auto name = toolkit::compositingManager(connection);
  if (!name) return {.subject = "Compositing", .detail = "no compositing manager, and none is needed"};
  return {.subject = "Compositing", .detail = name->empty() ? "an unnamed compositing manager" : *name};
}

Finding busFinding() {
  if (QDBusConnection::sessionBus().isConnected()) return {.subject = "Session bus", .detail = "connected"};
  return {.subject = "Session bus",
          .health = Health::fails,
          .detail = "not reachable: commands and most trays will not work",
          .fix = "Start the session with dbus-run-session, or install dbus-user-session."};
}

Finding trayFinding(xcb::Connection* connection) {
  if (hasTrayOnBus()) return {.subject = "Tray", .detail = "shown by a StatusNotifierItem host"};
  const bool hasX11Tray =
      connection != nullptr &&
      toolkit::selectionOwner(connection->get(), ofScreen("_NET_SYSTEM_TRAY_S", *connection).c_str()) != XCB_NONE;
  if (hasX11Tray) return {.subject = "Tray", .detail = "shown by an XEmbed tray"};
  return {.subject = "Tray",
          .health = Health::limited,
          .detail = "no program shows tray icons, so there is no icon and no menu",
          .fix = trayFix()};
}

Finding settingsFinding(const std::string& path) {
  const auto fault = settings::settingsFault(path);
  if (!fault) return {.subject = "Settings", .detail = path};
  return {.subject = "Settings",
          .health = Health::fails,
          .detail = *fault,
          .fix = "Fix its content or permissions, or remove it to use the defaults."};
}

Finding logFinding(const std::string& path) {
  const std::string directory = path.substr(0, path.rfind('/'));
  if (posix::isWritableDirectory(directory)) return {.subject = "Log", .detail = path};
  return {.subject = "Log",
          .health = Health::limited,
          .detail = "nothing is logged: " + directory + " is not a writable directory",
          .fix = "mkdir -p " + directory};
}

std::vector<HotKeyAnswer> tryHotKeys(xcb::Connection& connection, const std::vector<HotKeyTrial>& trials) {
  if (session::isWaylandSession(connection)) {
    return {trials.size(),
            trials.empty() || shortcuts::desktopGivesKeys() ? HotKeyAnswer::offered : HotKeyAnswer::unavailable};
  }
  input::HotKeys keys(connection);
  std::vector<HotKeyAnswer> answers;
  for (const HotKeyTrial& trial : trials) {
    const bool isGranted = keys.registerHotKey(trial.keyCode, trial.modifiers, {}).has_value();
    answers.push_back(isGranted ? HotKeyAnswer::granted : HotKeyAnswer::refused);
  }
  return answers;
}

}  // namespace platform::linux

namespace platform {

Examination examineDesktop(const ExaminationRequest& request) {
  using namespace platform::linux;
  int argumentCount = 0;
  QCoreApplication application(argumentCount, nullptr);
  qRegisterMetaType<QDBusVariant>();  // before the bus library's thread starts, which needs it to the very end
  Examination examination;
  auto& findings = examination.findings;
  auto connection = xcb::Connection::open("");
  findings = {sessionFinding(connection ? connection->get() : nullptr), displayFinding(connection)};
  examination.hotKeys.assign(request.hotKeys.size(), HotKeyAnswer::unknown);
  if (connection) {
    for (auto& finding : extensionFindings(**connection)) findings.push_back(std::move(finding));
    findings.push_back(compositingFinding(**connection));
    examination.hotKeys = tryHotKeys(**connection, request.hotKeys);
  }
  findings.push_back(busFinding());
  findings.push_back(trayFinding(connection ? connection->get() : nullptr));
  findings.push_back(settingsFinding(settings::settingsPath()));
  examination.settingsFile = settings::settingsPath();
  examination.settings = settings::storedSettings(settings::settingsPath(), request.settings);
  findings.push_back(logFinding(posix::homeDirectory() + '/' + request.logFile));
  return examination;
}

}  // namespace platform
