// What anyone on the session bus can ask of the program: the one method, and nothing else.

#include <QDBusConnection>
#include <QDBusMessage>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace endtoend {
namespace {

class BusInterface : public DrivenDesktop {
 public:
  ~BusInterface() override { QDBusConnection::disconnectFromBus(connectionName); }

 protected:
  std::string busAddress() override { return qt::busAddress(); }

  QDBusMessage call(const char* where, const char* interface, const char* method, const QVariantList& arguments) {
    QDBusMessage message = QDBusMessage::createMethodCall(name, where, interface, method);
    message.setArguments(arguments);
    return bus().call(message);
  }
  QDBusConnection bus() { return QDBusConnection::connectToBus(QString::fromStdString(busAddress()), connectionName); }

  static constexpr const char* connectionName = "stranger";
  static constexpr const char* name = "org.quillfade.Quillfade";
  static constexpr const char* path = "/org/quillfade/Quillfade";
};

TEST_F(BusInterface, TheOneMethodTakesWords) {
  start(solidOff);
  const auto reply = call(path, name, "Run", {QStringList{"status", "--json"}});
  ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
  EXPECT_EQ(reply.arguments().at(0).toInt(), 0);
  EXPECT_TRUE(reply.arguments().at(1).toString().contains("\"enabled\": false"));
}

TEST_F(BusInterface, AnythingElseIsRefusedAndChangesNothing) {
  start(solidOff);
  const QVariantList words{QStringList{"toggle"}};
  for (const auto& reply : {call(path, name, "Quit", words), call(path, "org.example.Other", "Run", words),
                            call(path, name, "Run", {}), call(path, name, "Run", {QStringLiteral("toggle")}),
                            call("/", name, "Run", words), call("/org/quillfade", name, "Run", words)}) {
    EXPECT_EQ(reply.type(), QDBusMessage::ErrorMessage);
  }
  EXPECT_TRUE(quillfade().process().isRunning());
  EXPECT_THAT(status(), testing::HasSubstr("\"enabled\": false"));
}

TEST_F(BusInterface, ItDescribesItselfAsThatOneMethodAndTheSignalThatAQuestionWaits) {
  start(solidOff);
  const auto described = [&](const char* where) {
    return call(where, "org.freedesktop.DBus.Introspectable", "Introspect", {}).arguments().value(0).toString();
  };
  const QString own = described(path);
  const auto begin = own.indexOf("<interface name=\"org.quillfade.Quillfade\">");
  ASSERT_GE(begin, 0) << own.toStdString();
  const QString interface = own.mid(begin, own.indexOf("</interface>", begin) - begin);
  EXPECT_EQ(interface.count("<method "), 1);
  EXPECT_TRUE(interface.contains("<method name=\"Run\">"));
  EXPECT_EQ(interface.count("<signal "), 1);
  EXPECT_TRUE(interface.contains("<signal name=\"Question\"/>"));
  EXPECT_FALSE(interface.contains("<property "));
  EXPECT_FALSE(described("/org").contains("<interface name=\"org.quillfade"));
}

}  // namespace
}  // namespace endtoend
