// What a screen reader is told, asked over the accessibility bus as a screen reader would.

#include <QDBusArgument>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVariant>
#include <QString>
#include <algorithm>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/EndToEnd/MenuUser.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace endtoend {
namespace {

using testing::Contains;

struct Spoken {
  std::string role;
  std::string name;
  friend bool operator==(const Spoken&, const Spoken&) = default;
};

void PrintTo(const Spoken& spoken, std::ostream* out) { *out << spoken.role << " \"" << spoken.name << '"'; }

// A place in the accessibility tree: a program on the bus, and one of its objects.
struct Place {
  QString service;
  QString path;
};

class AccessibilityBus {
 public:
  explicit AccessibilityBus(const std::string& sessionBus)
      : session_(QDBusConnection::connectToBus(QString::fromStdString(sessionBus), QStringLiteral("a11y-session"))) {
    const auto reply =
        session_.call(QDBusMessage::createMethodCall(QStringLiteral("org.a11y.Bus"), QStringLiteral("/org/a11y/bus"),
                                                     QStringLiteral("org.a11y.Bus"), QStringLiteral("GetAddress")));
    bus_ = QDBusConnection::connectToBus(reply.arguments().value(0).toString(), QStringLiteral("a11y"));
  }
  ~AccessibilityBus() {
    QDBusConnection::disconnectFromBus(QStringLiteral("a11y"));
    QDBusConnection::disconnectFromBus(QStringLiteral("a11y-session"));
  }
  AccessibilityBus(const AccessibilityBus&) = delete;
  AccessibilityBus& operator=(const AccessibilityBus&) = delete;

  // Everything that a screen reader can say now.
  [[nodiscard]] std::vector<Spoken> everything() const {
    std::vector<Spoken> all;
    collect({QStringLiteral("org.a11y.atspi.Registry"), QStringLiteral("/org/a11y/atspi/accessible/root")}, all);
    return all;
  }

 private:
  [[nodiscard]] QVariant ask(const Place& place, const char* method) const {
    return bus_
        .call(QDBusMessage::createMethodCall(place.service, place.path, QStringLiteral("org.a11y.atspi.Accessible"),
                                             QString::fromLatin1(method)))
        .arguments()
        .value(0);
  }
  [[nodiscard]] QString name(const Place& place) const {
    auto question = QDBusMessage::createMethodCall(
        place.service, place.path, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"));
    question << QStringLiteral("org.a11y.atspi.Accessible") << QStringLiteral("Name");
    return bus_.call(question).arguments().value(0).value<QDBusVariant>().variant().toString();
  }
  void collect(const Place& place, std::vector<Spoken>& all) const {
    all.push_back({ask(place, "GetRoleName").toString().toStdString(), name(place).toStdString()});
    const auto children = ask(place, "GetChildren").value<QDBusArgument>();
    std::vector<Place> places;
    for (children.beginArray(); !children.atEnd();) {
      Place child;
      QDBusObjectPath path;
      children.beginStructure();
      children >> child.service >> path;
      children.endStructure();
      child.path = path.path();
      places.push_back(child);
    }
    for (const Place& child : places) collect(child, all);
  }

  QDBusConnection session_;
  QDBusConnection bus_{QString{}};
};

class Accessibility : public DrivenDesktop {
 protected:
  Accessibility() : DrivenDesktop({.arguments = {"-extension", "Composite"}}) {}
};

TEST_F(Accessibility, AScreenReaderHearsTheAlertItsTextAndItsButtons) {
  const AccessibilityBus reader(bus_.address());
  start({}, {{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}});
  support::ChildProcess command({QUILLFADE_EXECUTABLE, "toggle"},
                                support::Environment{{"DBUS_SESSION_BUS_ADDRESS", busAddress()}});
  ASSERT_TRUE(waitForDialog());
  const Spoken solid{"push button", "Use Solid Cover"};
  std::vector<Spoken> heard;
  EXPECT_TRUE(support::waitUntil([&] {
    heard = reader.everything();
    return std::ranges::find(heard, solid) != heard.end();
  })) << testing::PrintToString(heard);
  EXPECT_THAT(heard, Contains(Spoken{"alert message", "Screen Recording permission needed"}));
  EXPECT_THAT(heard, Contains(Spoken{"push button", "Open System Settings"}));
  EXPECT_THAT(heard, Contains(testing::AllOf(testing::Field(&Spoken::role, "label"),
                                             testing::Field(&Spoken::name, testing::HasSubstr("solid cover")))));
}

class AccessibleTray : public DrivenDesktop {
 protected:
  std::string busAddress() override { return qt::busAddress(); }
};

TEST_F(AccessibleTray, AScreenReaderHearsEverythingInTheAboutPanel) {
  const AccessibilityBus reader(qt::busAddress());
  start({}, {{"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}});
  MenuUser user;
  user.choose("About Quillfade");
  ASSERT_TRUE(waitForDialog());
  const Spoken panel{"dialog", "About Quillfade"};
  std::vector<Spoken> heard;
  EXPECT_TRUE(support::waitUntil([&] {
    heard = reader.everything();
    return std::ranges::find(heard, panel) != heard.end();
  })) << testing::PrintToString(heard);
  for (const char* text : {"Version 1.1", "A live view of your screen", "Menu bar: pencil = idle"}) {
    EXPECT_THAT(heard, Contains(testing::AllOf(testing::Field(&Spoken::role, "label"),
                                               testing::Field(&Spoken::name, testing::HasSubstr(text)))));
  }
}

}  // namespace
}  // namespace endtoend
