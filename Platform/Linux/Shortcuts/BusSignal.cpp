#include "Platform/Linux/Shortcuts/BusSignal.h"

#include <utility>

namespace platform::linux::shortcuts {

BusSignal::BusSignal(QDBusConnection bus, const Source& source, std::function<void(const QDBusMessage&)> received)
    : received_(std::move(received)) {
  bus.connect(source.service, source.path, source.interface, source.name, this, SLOT(receive(QDBusMessage)));
}

}  // namespace platform::linux::shortcuts
