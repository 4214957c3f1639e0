#include "Platform/Linux/Shortcuts/PortalRequest.h"

#include <QDBusArgument>
#include <utility>

#include "Platform/Linux/Shortcuts/BusCall.h"

namespace platform::linux::shortcuts {
namespace {

// Known before the method is called, so no response is missed.
QString requestPath(const QDBusConnection& bus, const QString& token) {
  const QString sender = bus.baseService().mid(1).replace('.', '_');
  return QString::fromLatin1(portalPath) + QStringLiteral("/request/") + sender + '/' + token;
}

PortalResponse responseIn(const QDBusMessage& message) {
  return {.isGranted = message.arguments().value(0).toUInt() == 0,
          .results = qdbus_cast<QVariantMap>(message.arguments().value(1))};
}

}  // namespace

PortalRequest::PortalRequest(const QDBusConnection& bus, QDBusMessage method, QVariantMap options, Answer answered)
    : answered_(std::move(answered)),
      token_(nextPortalToken()),
      response_(bus,
                {QString::fromLatin1(portalName), requestPath(bus, token_),
                 QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response")},
                [this](const QDBusMessage& message) { answered_(responseIn(message)); }) {
  options[QStringLiteral("handle_token")] = token_;
  method << options;
  callMethod(bus, method, context_, [this](const QDBusMessage& reply) {
    if (reply.type() != QDBusMessage::ErrorMessage) return;
    const bool isPortals = reply.errorName().startsWith(QLatin1String("org.freedesktop.portal.Error."));
    answered_(std::unexpected(isPortals ? reply.errorMessage().toStdString() : std::string{}));
  });
}

QString nextPortalToken() {
  static int count = 0;
  return QStringLiteral("quillfade%1").arg(++count);
}

}  // namespace platform::linux::shortcuts
