#include "Tests/Linux/Shortcuts/ShortcutServices.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMutex>
#include <QStringList>
#include <algorithm>
#include <atomic>
#include <set>
#include <stdexcept>

#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace qt {

struct Keys {
  QList<int> keys;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Keys& keys) {
  argument.beginStructure();
  argument << keys.keys;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Keys& keys) {
  argument.beginStructure();
  argument >> keys.keys;
  argument.endStructure();
  return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): the bus library wants it so
}

struct Described {
  QString name;
  QVariantMap values;
};

QDBusArgument& operator<<(QDBusArgument& argument, const Described& described) {
  argument.beginStructure();
  argument << described.name << described.values;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, Described& described) {
  argument.beginStructure();
  argument >> described.name >> described.values;
  argument.endStructure();
  return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): the bus library wants it so
}

}  // namespace qt

Q_DECLARE_METATYPE(qt::Keys)
Q_DECLARE_METATYPE(qt::Described)

namespace qt {
namespace {

const std::string kwinKeysName = "org.kde.kglobalaccel";
const std::string kwinName = "org.kde.KWin";
const QString kwinPath = QStringLiteral("/kglobalaccel");
const QString kwinInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString component = QStringLiteral("org.quillfade.Quillfade");
const QString componentPath = QStringLiteral("/component/org_quillfade_Quillfade");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");

const std::string portalName = "org.freedesktop.portal.Desktop";
const QString portalPath = QStringLiteral("/org/freedesktop/portal/desktop");
const QString shortcutsInterface = QStringLiteral("org.freedesktop.portal.GlobalShortcuts");
const QString sessionInterface = QStringLiteral("org.freedesktop.portal.Session");
// Codes of responses.
constexpr uint granted = 0;
constexpr uint cancelled = 1;
constexpr uint failed = 2;

}  // namespace

class ShortcutBus::Object : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QMutexLocker lock(&mutex_);
    const auto text = serve(message, connection);
    if (!text) return false;
    requests_.push_back(
        {message.member().toStdString(), message.signature().toStdString(), *text, message.service().toStdString()});
    return true;
  }

  [[nodiscard]] std::vector<BusRequest> requests() const {
    const QMutexLocker lock(&mutex_);
    return requests_;
  }
  void change(const std::function<void()>& change) {
    const QMutexLocker lock(&mutex_);
    change();
  }

 protected:
  // Answers, and says what was asked; absent for what it does not know.
  virtual std::optional<std::string> serve(const QDBusMessage& message, const QDBusConnection& connection) = 0;

 private:
  mutable QMutex mutex_;
  std::vector<BusRequest> requests_;
};

ShortcutBus::ShortcutBus(const std::string& busAddress, std::unique_ptr<Object> object) : object_(std::move(object)) {
  static std::atomic<int> count = 0;
  application();
  qDBusRegisterMetaType<Keys>();
  qDBusRegisterMetaType<QList<Keys>>();
  qDBusRegisterMetaType<Described>();
  qDBusRegisterMetaType<QList<Described>>();
  name_ = QStringLiteral("shortcut-services-%1").arg(++count);
  auto bus = QDBusConnection::connectToBus(QString::fromStdString(busAddress), name_);
  bus.registerVirtualObject(QStringLiteral("/"), object_.get(), QDBusConnection::SubPath);
  thread_.start();
  object_->moveToThread(&thread_);
}

ShortcutBus::~ShortcutBus() {
  thread_.quit();
  thread_.wait();
  // Before the connection: while the library closes one, on a thread of its own, it still uses its objects.
  object_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

std::vector<BusRequest> ShortcutBus::requests(const std::string& method) const {
  auto all = object_->requests();
  if (!method.empty()) std::erase_if(all, [&](const BusRequest& request) { return request.method != method; });
  return all;
}

std::vector<std::string> ShortcutBus::texts(const std::string& method) const {
  std::vector<std::string> found;
  for (const BusRequest& request : requests(method)) found.push_back(request.text);
  return found;
}

void ShortcutBus::own(const std::string& name) {
  if (!connection().registerService(QString::fromStdString(name)))
    throw std::runtime_error(connection().lastError().message().toStdString());
}

void ShortcutBus::disown(const std::string& name) { connection().unregisterService(QString::fromStdString(name)); }

void ShortcutBus::setState(const std::function<void()>& change) { object_->change(change); }

class KWinKeys::Service final : public Object {
 public:
  std::set<QString> refused;

 private:
  std::optional<std::string> serve(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.path() != kwinPath || message.interface() != kwinInterface) return std::nullopt;
    const QStringList action = message.arguments().value(0).toStringList();
    std::string words = action.join(QStringLiteral(", ")).toStdString();
    if (message.member() == QLatin1String("doRegister")) {
      connection.send(message.createReply());
      return words;
    }
    if (message.member() == QLatin1String("setShortcutKeys")) {
      const auto keys = qdbus_cast<QList<Keys>>(message.arguments().value(1));
      const QList<Keys> given = refused.contains(action.value(1)) ? QList<Keys>{} : keys;
      connection.send(message.createReply(QVariant::fromValue(given)));
      std::string text = action.value(1).toStdString();
      for (const int key : keys.value(0).keys) text += ' ' + QString::number(key, 16).toStdString();
      return text + " flags " + std::to_string(message.arguments().value(2).toUInt());
    }
    if (message.member() == QLatin1String("unregister")) {
      connection.send(message.createReply(true));
      return message.arguments().value(0).toString().toStdString() + ' ' +
             message.arguments().value(1).toString().toStdString();
    }
    return std::nullopt;
  }
};

KWinKeys::KWinKeys(const std::string& busAddress, bool isKWin) : ShortcutBus(busAddress, std::make_unique<Service>()) {
  if (isKWin) own(kwinName);
  own(kwinKeysName);
}

void KWinKeys::refuse(const std::string& action) {
  auto& service = static_cast<Service&>(*object_);
  setState([&] { service.refused.insert(QString::fromStdString(action)); });
}

void KWinKeys::press(const std::string& action) {
  QDBusMessage pressed =
      QDBusMessage::createSignal(componentPath, componentInterface, QStringLiteral("globalShortcutPressed"));
  pressed << component << QString::fromStdString(action) << qlonglong{12345};
  connection().send(pressed);
}

void KWinKeys::change(const std::string& action, int key) {
  QDBusMessage changed = QDBusMessage::createSignal(kwinPath, kwinInterface, QStringLiteral("yourShortcutsChanged"));
  const QList<Keys> keys = key == 0 ? QList<Keys>{} : QList<Keys>{{{key, 0, 0, 0}}};
  changed << QStringList{component, QString::fromStdString(action), QStringLiteral("Quillfade"), QString{}}
          << QVariant::fromValue(keys);
  connection().send(changed);
}

void KWinKeys::leave() {
  disown(kwinKeysName);
  disown(kwinName);
}

void KWinKeys::comeBack() {
  own(kwinName);
  own(kwinKeysName);
}

class Portal::Service final : public Object {
 public:
  Service(User user, bool hasShortcuts) : user_(user), hasShortcuts_(hasShortcuts) {}

  QString session;
  // The answer that a user who waits has not given yet.
  std::function<void()> answer;

 private:
  std::optional<std::string> serve(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == QLatin1String("Close") && message.interface() == sessionInterface) {
      connection.send(message.createReply());
      return message.path().toStdString();
    }
    if (message.path() != portalPath) return std::nullopt;
    if (message.member() == QLatin1String("Register")) {
      connection.send(message.createReply());
      return message.arguments().value(0).toString().toStdString();
    }
    if (message.member() == QLatin1String("Get") && hasShortcuts_) {
      connection.send(message.createReply(QVariant::fromValue(QDBusVariant(1U))));
      return "version";
    }
    if (!hasShortcuts_ || message.interface() != shortcutsInterface) return std::nullopt;
    if (message.member() == QLatin1String("CreateSession")) return createSession(message, connection);
    if (message.member() == QLatin1String("BindShortcuts")) return bind(message, connection);
    return std::nullopt;
  }

  std::string createSession(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(0));
    session = portalPath + QStringLiteral("/session/") + senderOf(message) + '/' +
              options.value(QStringLiteral("session_handle_token")).toString();
    accept(message, options, connection);
    respond(message, options, connection, granted, {{QStringLiteral("session_handle"), session}});
    return {};
  }

  std::string bind(const QDBusMessage& message, const QDBusConnection& connection) {
    const auto options = qdbus_cast<QVariantMap>(message.arguments().value(3));
    const auto wanted = qdbus_cast<QList<Described>>(message.arguments().value(1));
    std::string text;
    QList<Described> given;
    for (const Described& each : wanted) {
      const QString trigger = each.values.value(QStringLiteral("preferred_trigger")).toString();
      const QString description = each.values.value(QStringLiteral("description")).toString();
      text += (each.name + '=' + trigger + " (" + description + ")\n").toStdString();
      if (user_ == User::agreesToOne && !given.isEmpty()) continue;
      given.append({each.name,
                    {{QStringLiteral("description"), description},
                     {QStringLiteral("trigger_description"),
                      user_ == User::choosesNoKeys ? QString{} : QStringLiteral("Press ") + trigger}}});
    }
    accept(message, options, connection);
    QVariantMap results{{QStringLiteral("shortcuts"), QVariant::fromValue(given)}};
    if (user_ == User::declines) results.clear();
    const uint code = user_ == User::declines ? cancelled : user_ == User::agreesQuietly ? failed : granted;
    answer = [message, options, connection, code, results] { respond(message, options, connection, code, results); };
    if (user_ != User::waits) answer();
    return text;
  }

  static QString senderOf(const QDBusMessage& message) { return message.service().mid(1).replace('.', '_'); }
  static QString handleOf(const QDBusMessage& message, const QVariantMap& options) {
    return portalPath + QStringLiteral("/request/") + senderOf(message) + '/' +
           options.value(QStringLiteral("handle_token")).toString();
  }
  static void accept(const QDBusMessage& message, const QVariantMap& options, const QDBusConnection& connection) {
    connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(handleOf(message, options)))));
  }
  static void respond(const QDBusMessage& message, const QVariantMap& options, const QDBusConnection& connection,
                      uint code, const QVariantMap& results) {
    QDBusMessage signal = QDBusMessage::createSignal(
        handleOf(message, options), QStringLiteral("org.freedesktop.portal.Request"), QStringLiteral("Response"));
    signal << code << results;
    connection.send(signal);
  }

  User user_;
  bool hasShortcuts_;
};

Portal::Portal(const std::string& busAddress, User user, bool hasShortcuts)
    : ShortcutBus(busAddress, std::make_unique<Service>(user, hasShortcuts)) {
  own(portalName);
}

void Portal::press(const std::string& shortcut) {
  auto& service = static_cast<Service&>(*object_);
  QDBusMessage activated = QDBusMessage::createSignal(portalPath, shortcutsInterface, QStringLiteral("Activated"));
  setState([&] {
    activated << QVariant::fromValue(QDBusObjectPath(service.session)) << QString::fromStdString(shortcut)
              << qulonglong{12345} << QVariantMap{};
  });
  connection().send(activated);
}

void Portal::pressElsewhere(const std::string& shortcut) {
  QDBusMessage activated = QDBusMessage::createSignal(portalPath, shortcutsInterface, QStringLiteral("Activated"));
  activated << QVariant::fromValue(QDBusObjectPath(portalPath + QStringLiteral("/session/1_1/other")))
            << QString::fromStdString(shortcut) << qulonglong{12345} << QVariantMap{};
  connection().send(activated);
}

void Portal::answer() {
  auto& service = static_cast<Service&>(*object_);
  setState([&] { service.answer(); });
}

void Portal::closeSession() {
  auto& service = static_cast<Service&>(*object_);
  setState([&] {
    QDBusMessage closed = QDBusMessage::createSignal(service.session, sessionInterface, QStringLiteral("Closed"));
    closed << QVariantMap{};
    connection().send(closed);
  });
}

void Portal::leave() { disown(portalName); }
void Portal::comeBack() { own(portalName); }

}  // namespace qt
