#include "Platform/Linux/Shortcuts/PortalShortcuts.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <algorithm>
#include <utility>

#include "Platform/Linux/Posix/ApplicationIdentifier.h"
#include "Platform/Linux/Shortcuts/BusCall.h"

namespace platform::linux::shortcuts {

// As it is on the bus: a name, and what is known of it.
struct PortalShortcut {
  QString name;
  QVariantMap properties;
};

QDBusArgument& operator<<(QDBusArgument& argument, const PortalShortcut& shortcut) {
  argument.beginStructure();
  argument << shortcut.name << shortcut.properties;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, PortalShortcut& shortcut) {
  argument.beginStructure();
  argument >> shortcut.name >> shortcut.properties;
  argument.endStructure();
  return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): the bus library wants it so
}

}  // namespace platform::linux::shortcuts

Q_DECLARE_METATYPE(platform::linux::shortcuts::PortalShortcut)

namespace platform::linux::shortcuts {
namespace {

using Kind = HotKeyStanding::Kind;

const QString service = QString::fromLatin1(portalName);
const QString path = QString::fromLatin1(portalPath);
const QString interface = QString::fromLatin1(portalShortcutsInterface);
const QString registryInterface = QStringLiteral("org.freedesktop.host.portal.Registry");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");

QDBusMessage method(const char* name) {
  return QDBusMessage::createMethodCall(service, path, interface, QString::fromLatin1(name));
}

// A path, which portals send as a text.
QString pathIn(const QVariant& value) {
  return value.canConvert<QDBusObjectPath>() ? value.value<QDBusObjectPath>().path() : value.toString();
}

}  // namespace

PortalShortcuts::PortalShortcuts(QDBusConnection bus, std::vector<Shortcut> shortcuts, ShortcutListener listener)
    : bus_(std::move(bus)),
      shortcuts_(std::move(shortcuts)),
      listener_(std::move(listener)),
      activated_(bus_, {service, path, interface, QStringLiteral("Activated")},
                 [this](const QDBusMessage& message) { pressed(message); }),
      changed_(bus_, {service, path, interface, QStringLiteral("ShortcutsChanged")},
               [this](const QDBusMessage& message) {
                 if (!session_.isEmpty() && pathIn(message.arguments().value(0)) == session_)
                   accept(message.arguments().value(1), Kind::declined);
               }) {
  qDBusRegisterMetaType<PortalShortcut>();
  qDBusRegisterMetaType<QList<PortalShortcut>>();
  introduce();
}

PortalShortcuts::~PortalShortcuts() {
  if (!session_.isEmpty())
    bus_.send(QDBusMessage::createMethodCall(service, session_, sessionInterface, QStringLiteral("Close")));
}

// Newer portals ask for a name, which must be that of an installed desktop entry. Older ones do not know the method.
void PortalShortcuts::introduce() {
  QDBusMessage message = QDBusMessage::createMethodCall(service, path, registryInterface, QStringLiteral("Register"));
  message << QString::fromLatin1(posix::applicationIdentifier) << QVariantMap{};
  callMethod(bus_, message, context_, [this](const QDBusMessage& /*whatever it answers*/) { createSession(); });
}

void PortalShortcuts::createSession() {
  request(method("CreateSession"), {{QStringLiteral("session_handle_token"), nextPortalToken()}},
          [this](const std::expected<PortalResponse, std::string>& response) {
            if (!response) return answerAll({Kind::unavailable, response.error()});
            session_ = pathIn(response->results.value(QStringLiteral("session_handle")));
            if (!response->isGranted || session_.isEmpty()) return answerAll({Kind::declined});
            closed_ = std::make_unique<BusSignal>(
                bus_, BusSignal::Source{service, session_, sessionInterface, QStringLiteral("Closed")},
                [this](const QDBusMessage& /*details*/) {
                  session_.clear();
                  answerAll({Kind::declined});
                });
            bind();
          });
}

void PortalShortcuts::bind() {
  QList<PortalShortcut> wanted;
  for (const Shortcut& shortcut : shortcuts_) {
    wanted.append({QString::fromStdString(shortcut.purpose.name),
                   {{QStringLiteral("description"), QString::fromStdString(shortcut.purpose.title)},
                    {QStringLiteral("preferred_trigger"),
                     QString::fromStdString(triggerText(shortcut.modifiers, shortcut.symbol))}}});
  }
  const QString noParentWindow = QLatin1String("");  // not null
  request(method("BindShortcuts") << QVariant::fromValue(QDBusObjectPath(session_)) << QVariant::fromValue(wanted)
                                  << noParentWindow,
          {}, [this](const std::expected<PortalResponse, std::string>& response) {
            if (!response) return answerAll({Kind::unavailable, response.error()});
            // What is given counts: GNOME's portal also gives keys with the code for a request that has failed.
            accept(response->results.value(QStringLiteral("shortcuts")), Kind::declined);
          });
}

void PortalShortcuts::accept(const QVariant& listed, Kind others) {
  const auto given = qdbus_cast<QList<PortalShortcut>>(listed);
  for (const Shortcut& shortcut : shortcuts_) {
    const QString name = QString::fromStdString(shortcut.purpose.name);
    const auto found = std::ranges::find(given, name, &PortalShortcut::name);
    HotKeyStanding standing{others};
    if (found != given.end()) {
      standing.detail = found->properties.value(QStringLiteral("trigger_description")).toString().toStdString();
      standing.kind = standing.detail.empty() ? Kind::unassigned : Kind::held;
    }
    listener_.answered(shortcut.purpose.name, standing);
  }
}

void PortalShortcuts::answerAll(const HotKeyStanding& standing) {
  for (const Shortcut& shortcut : shortcuts_) listener_.answered(shortcut.purpose.name, standing);
}

void PortalShortcuts::pressed(const QDBusMessage& activation) {
  if (session_.isEmpty() || pathIn(activation.arguments().value(0)) != session_) return;
  listener_.pressed(activation.arguments().value(1).toString().toStdString());
}

void PortalShortcuts::request(const QDBusMessage& method, const QVariantMap& options, PortalRequest::Answer answered) {
  // An answer may lead to the next request, so none goes before the service does.
  requests_.push_back(std::make_unique<PortalRequest>(bus_, method, options, std::move(answered)));
}

}  // namespace platform::linux::shortcuts
