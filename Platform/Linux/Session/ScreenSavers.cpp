#include "Platform/Linux/Session/ScreenSavers.h"

#include <array>
#include <utility>

namespace platform::linux::session {
namespace {

// They all have the same method and signal, on an interface and an object named after themselves.
constexpr std::array<std::string_view, 5> services{
    "org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver", "org.cinnamon.ScreenSaver",
    "org.mate.ScreenSaver",        "org.xfce.ScreenSaver",
};

}  // namespace

ScreenSavers::ScreenSavers(std::function<void(std::string_view, bool)> changed)
    : changed_(std::move(changed)), busReturn_([this](const QDBusConnection& bus) {
        // Savers that went with the old bus no longer hide anything.
        for (const std::string_view service : services) changed_(service, false);
        follow(bus);
      }) {
  follow(QDBusConnection::sessionBus());
}

void ScreenSavers::follow(const QDBusConnection& bus) {
  flags_.clear();
  if (!bus.isConnected()) return;
  for (const std::string_view service : services) {
    const QString name = QString::fromLatin1(service.data(), static_cast<qsizetype>(service.size()));
    const QString path = '/' + QString{name}.replace('.', '/');
    flags_.push_back(std::make_unique<BusFlag>(
        BusFlag::Source{bus, name, path, name, QStringLiteral("ActiveChanged"),
                        QDBusMessage::createMethodCall(name, path, name, QStringLiteral("GetActive"))},
        [this, service](bool isActive) { changed_(service, isActive); }));
  }
}

}  // namespace platform::linux::session
