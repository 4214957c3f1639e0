// One request to a desktop portal: the method answers with a handle, and the result comes later as a signal.
//
// Threads: main thread only; the callback comes once, from the event loop, and must not destroy the object.
// Failure: a request that a portal does not know or refuses is an error; one that its user turns down is not.
#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>
#include <QString>
#include <QVariantMap>
#include <expected>
#include <functional>
#include <string>

#include "Platform/Linux/Shortcuts/BusSignal.h"

namespace platform::linux::shortcuts {

inline constexpr const char* portalName = "org.freedesktop.portal.Desktop";
inline constexpr const char* portalPath = "/org/freedesktop/portal/desktop";

struct PortalResponse {
  bool isGranted = false;
  QVariantMap results{};
};

class PortalRequest {
 public:
  // The error is the portal's reason; empty if there is no such portal.
  using Answer = std::function<void(const std::expected<PortalResponse, std::string>&)>;

  // The method's last argument, its options, is added here.
  PortalRequest(const QDBusConnection& bus, QDBusMessage method, QVariantMap options, Answer answered);
  PortalRequest(const PortalRequest&) = delete;
  PortalRequest& operator=(const PortalRequest&) = delete;

 private:
  Answer answered_;
  QString token_;
  QObject context_;
  BusSignal response_;
};

// A name for the next request or session of this process.
[[nodiscard]] QString nextPortalToken();

}  // namespace platform::linux::shortcuts
