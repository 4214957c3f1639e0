#include "Tests/Linux/Toolkit/QtEnvironment.h"

#include <gtest/gtest.h>

#include <QAbstractEventDispatcher>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>
#include <QTimer>
#include <algorithm>
#include <array>
#include <memory>

#include "Tests/Support/Desktop.h"

namespace qt {

namespace {

// A bus may print warnings around its address.
std::string addressIn(const std::string& text) {
  const auto start = std::min(text.find("unix:"), text.size());
  return text.substr(start, text.find('\n', start) - start);
}

struct Surroundings {
  Surroundings() {
    for (const auto& [variable, value] : home.environment(server.display())) qputenv(variable.c_str(), value.c_str());
    qputenv("DISPLAY", server.display().c_str());
    // One bus serves as both: the names on them differ.
    qputenv("DBUS_SESSION_BUS_ADDRESS", busAddress.c_str());
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", busAddress.c_str());
    qunsetenv("QT_QPA_PLATFORM");
    qunsetenv("WAYLAND_DISPLAY");
    application = std::make_unique<platform::linux::toolkit::DesktopApplication>(std::span<char* const>(arguments));
  }

  support::PrivateHome home;
  support::XServer server;
  support::SessionBus bus;
  std::string busAddress = addressIn(bus.address());
  std::string name = "quillfade-tests";
  std::array<char*, 1> arguments{name.data()};
  std::unique_ptr<platform::linux::toolkit::DesktopApplication> application;
};

// The test framework destroys it while everything that Qt needs still exists.
class Environment : public ::testing::Environment {
 public:
  void TearDown() override { surroundings.reset(); }
  std::unique_ptr<Surroundings> surroundings;
};

Environment& environment() {
  static auto* registered =
      static_cast<Environment*>(::testing::AddGlobalTestEnvironment(std::make_unique<Environment>().release()));
  return *registered;
}

// Registered before the tests begin, since the framework accepts no environments later.
[[maybe_unused]] const Environment& early = environment();

Surroundings& surroundings() {
  if (!environment().surroundings) environment().surroundings = std::make_unique<Surroundings>();
  return *environment().surroundings;
}

}  // namespace

platform::linux::toolkit::DesktopApplication& application() { return *surroundings().application; }

const std::string& display() { return surroundings().server.display(); }

const std::string& busAddress() { return surroundings().busAddress; }

bool runUntil(const std::function<bool()>& condition, std::chrono::milliseconds deadline) {
  application();
  const QDeadlineTimer limit(deadline);
  QTimer tick;  // some conditions change without an event of ours
  tick.start(std::chrono::milliseconds{5});
  while (!condition()) {
    if (limit.hasExpired()) return false;
    QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
  return true;
}

void runPending() {
  application();
  for (int round = 0; round < 3; ++round) {
    QCoreApplication::processEvents();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
  }
}

}  // namespace qt
