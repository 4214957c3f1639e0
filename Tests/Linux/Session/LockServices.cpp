#include "Tests/Linux/Session/LockServices.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMutex>
#include <atomic>
#include <map>
#include <stdexcept>

#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace qt {
namespace {

const QString loginManager = QStringLiteral("org.freedesktop.login1");
const QString loginPath = QStringLiteral("/org/freedesktop/login1");
const QString sessionPath = QStringLiteral("/org/freedesktop/login1/session/_31");
const QString sessionInterface = QStringLiteral("org.freedesktop.login1.Session");

QString pathOf(const QString& name) { return '/' + QString{name}.replace('.', '/'); }

}  // namespace

class LockServices::Services : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    const QMutexLocker lock(&mutex_);
    if (message.member() == QLatin1String("GetSession")) {
      ++sessionRequests_;
      return connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(sessionPath))));
    }
    if (message.member() == QLatin1String("Get") && message.arguments().value(1) == QLatin1String("LockedHint"))
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(isLocked_))));
    if (message.member() == QLatin1String("GetActive"))
      return connection.send(message.createReply(active_[message.interface()]));
    return false;
  }

  void setLocked(bool locked) {
    const QMutexLocker lock(&mutex_);
    isLocked_ = locked;
  }
  void setActive(const QString& name, bool active) {
    const QMutexLocker lock(&mutex_);
    active_[name] = active;
  }
  [[nodiscard]] int sessionRequests() const {
    const QMutexLocker lock(&mutex_);
    return sessionRequests_;
  }

 private:
  mutable QMutex mutex_;
  bool isLocked_ = false;
  std::map<QString, bool> active_;
  int sessionRequests_ = 0;
};

LockServices::LockServices(const std::string& busAddress) : services_(std::make_unique<Services>()) {
  static std::atomic<int> count = 0;
  application();
  name_ = QStringLiteral("lock-services-%1").arg(++count);
  auto bus = QDBusConnection::connectToBus(QString::fromStdString(busAddress), name_);
  bus.registerVirtualObject(QStringLiteral("/"), services_.get(), QDBusConnection::SubPath);
  thread_.start();
  services_->moveToThread(&thread_);
  startLoginManager();
}

LockServices::~LockServices() {
  thread_.quit();
  thread_.wait();
  // Before the connection: while the library closes one, on a thread of its own, it still uses its objects.
  services_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

void LockServices::startLoginManager() {
  if (!connection().registerService(loginManager))
    throw std::runtime_error(connection().lastError().message().toStdString());
}

void LockServices::stopLoginManager() { connection().unregisterService(loginManager); }

void LockServices::signalFromSession(const QString& name) {
  connection().send(QDBusMessage::createSignal(sessionPath, sessionInterface, name));
}

void LockServices::setLockedHint(bool locked) {
  services_->setLocked(locked);
  QDBusMessage changed = QDBusMessage::createSignal(sessionPath, QStringLiteral("org.freedesktop.DBus.Properties"),
                                                    QStringLiteral("PropertiesChanged"));
  changed << sessionInterface << QVariantMap{{QStringLiteral("LockedHint"), locked}} << QStringList{};
  connection().send(changed);
}

void LockServices::startScreenSaver(const std::string& name) {
  if (!connection().registerService(QString::fromStdString(name)))
    throw std::runtime_error(connection().lastError().message().toStdString());
}

void LockServices::stopScreenSaver(const std::string& name) {
  services_->setActive(QString::fromStdString(name), false);
  connection().unregisterService(QString::fromStdString(name));
}

void LockServices::setScreenSaverActive(const std::string& name, bool active) {
  const QString service = QString::fromStdString(name);
  services_->setActive(service, active);
  QDBusMessage changed = QDBusMessage::createSignal(pathOf(service), service, QStringLiteral("ActiveChanged"));
  changed << active;
  connection().send(changed);
}

int LockServices::sessionRequests() const { return services_->sessionRequests(); }

}  // namespace qt
