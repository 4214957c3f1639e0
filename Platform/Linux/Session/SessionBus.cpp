#include "Platform/Linux/Session/SessionBus.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusVariant>
#include <QEventLoop>
#include <QStringList>
#include <QTimer>
#include <algorithm>
#include <iostream>
#include <limits>
#include <utility>

#include "Platform/Linux/Posix/ApplicationIdentifier.h"

namespace platform::linux::session {
namespace {

const QString busName = QString::fromLatin1(posix::applicationIdentifier);
const QString objectPath = '/' + QString{busName}.replace('.', '/');
const QString interfaceName = busName;
const QString runMethod = QStringLiteral("Run");
const QString runSignature = QStringLiteral("as");
const QString questionSignal = QStringLiteral("Question");

const QString introspection = QStringLiteral(R"(  <interface name="%1">
    <method name="Run">
      <arg name="arguments" type="as" direction="in"/>
      <arg name="status" type="i" direction="out"/>
      <arg name="output" type="s" direction="out"/>
    </method>
    <signal name="Question"/>
  </interface>
)")
                                  .arg(interfaceName);

}  // namespace

class SessionBus::Object final : public QDBusVirtualObject {
 public:
  explicit Object(Handler handler) : handler_(std::move(handler)) {}

  [[nodiscard]] QString introspect(const QString& path) const override {
    return path == objectPath ? introspection : QString{};
  }

  // Everything but this one method is left to the bus library, which refuses it.
  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.interface() != interfaceName || message.member() != runMethod || message.signature() != runSignature) {
      return false;
    }
    std::vector<std::string> arguments;
    for (const QString& word : message.arguments().value(0).toStringList()) arguments.push_back(word.toStdString());
    message.setDelayedReply(true);
    handler_(arguments, [message, connection](const RemoteReply& reply) {
      connection.send(message.createReply({reply.status, QString::fromStdString(reply.output)}));
    });
    return true;
  }

 private:
  Handler handler_;
};

SessionBus::SessionBus() : bus_(QDBusConnection::sessionBus()) {}

SessionBus::~SessionBus() {
  if (!object_) return;
  bus_.unregisterService(busName);
  bus_.unregisterObject(objectPath);
}

RemoteControl::Claim SessionBus::claim(Handler handler) {
  if (!bus_.isConnected()) {
    std::cerr << "quillfade: There is no session bus: commands like \"quillfade toggle\" will not reach this instance."
              << std::endl;
    return Claim::unavailable;
  }
  object_ = std::make_unique<Object>(std::move(handler));
  if (own(bus_)) {
    busReturn_.emplace([this](const QDBusConnection& bus) { own(bus); });
    return Claim::first;
  }
  object_ = nullptr;
  return bus_.interface()->isServiceRegistered(busName) ? Claim::taken : Claim::unavailable;
}

void SessionBus::announceQuestion() {
  bus_.send(QDBusMessage::createSignal(objectPath, interfaceName, questionSignal));
}

bool SessionBus::own(const QDBusConnection& bus) {
  bus_ = bus;
  // The object comes first: whoever sees the name may send at once.
  bus_.registerVirtualObject(objectPath, object_.get());
  if (bus_.registerService(busName)) return true;
  bus_.unregisterObject(objectPath);
  return false;
}

}  // namespace platform::linux::session

namespace platform {

std::expected<RemoteReply, Error> sendToRunningInstance(const std::vector<std::string>& arguments,
                                                        std::chrono::milliseconds limit,
                                                        const std::function<void()>& onQuestion) {
  int argumentCount = 0;
  QCoreApplication application(argumentCount, nullptr);
  // First of all, so that it is destroyed last: the bus library's thread reads messages until the very end of the
  // process, and needs the type registry for that.
  qRegisterMetaType<QDBusVariant>();
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) {
    return std::unexpected(Error{"There is no session bus, so a running Quillfade cannot be reached."});
  }
  QStringList words;
  for (const auto& word : arguments) words.append(QString::fromStdString(word));
  QDBusMessage call = QDBusMessage::createMethodCall(linux::session::busName, linux::session::objectPath,
                                                     linux::session::interfaceName, linux::session::runMethod);
  call.setAutoStartService(false);
  call << words;
  // Bus signals can only be connected to named slots, and a timer has one.
  QTimer question;
  question.setSingleShot(true);
  if (onQuestion) {
    QObject::connect(&question, &QTimer::timeout, &question, onQuestion);
    bus.connect(linux::session::busName, linux::session::objectPath, linux::session::interfaceName,
                linux::session::questionSignal, &question, SLOT(start()));
  }
  const auto longest = std::chrono::milliseconds{std::numeric_limits<int>::max()};
  const QDBusPendingCallWatcher pending(bus.asyncCall(call, static_cast<int>(std::min(limit, longest).count())));
  QEventLoop waiting;
  QObject::connect(&pending, &QDBusPendingCallWatcher::finished, &waiting, &QEventLoop::quit);
  if (!pending.isFinished()) waiting.exec();
  const QDBusMessage reply = pending.reply();
  if (reply.type() == QDBusMessage::ReplyMessage && reply.arguments().size() == 2) {
    return RemoteReply{reply.arguments().at(0).toInt(), reply.arguments().at(1).toString().toStdString()};
  }
  if (reply.errorName() == QStringLiteral("org.freedesktop.DBus.Error.NameHasNoOwner")) {
    return std::unexpected(Error{"Quillfade is not running."});
  }
  return std::unexpected(Error{"The running Quillfade did not answer: " + reply.errorMessage().toStdString()});
}

}  // namespace platform
