#include "Tests/Linux/Tray/TrayHost.h"

#include <QDBusArgument>
#include <QDBusError>
#include <QDBusObjectPath>
#include <QDBusPendingCall>
#include <QDBusVariant>
#include <QDBusVirtualObject>
#include <QMutex>
#include <atomic>
#include <stdexcept>

#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace qt {

namespace {

const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
const QString itemInterface = QStringLiteral("org.kde.StatusNotifierItem");
const QString itemPath = QStringLiteral("/StatusNotifierItem");
const QString menuInterface = QStringLiteral("com.canonical.dbusmenu");
const QString hostRegistered = QStringLiteral("IsStatusNotifierHostRegistered");

ShownItem parse(const QDBusArgument& argument) {
  ShownItem item;
  argument.beginStructure();
  argument >> item.id >> item.properties;
  argument.beginArray();
  while (!argument.atEnd()) {
    QDBusVariant child;
    argument >> child;
    item.children.push_back(parse(child.variant().value<QDBusArgument>()));
  }
  argument.endArray();
  argument.endStructure();
  return item;
}

}  // namespace

std::string ShownItem::title() const { return properties.value(QStringLiteral("label")).toString().toStdString(); }
bool ShownItem::isSeparator() const { return properties.value(QStringLiteral("type")) == QLatin1String("separator"); }
bool ShownItem::isEnabled() const { return properties.value(QStringLiteral("enabled"), true).toBool(); }
bool ShownItem::isChecked() const { return properties.value(QStringLiteral("toggle-state"), 0).toInt() == 1; }

std::string ShownItem::shortcut() const {
  const QVariant value = properties.value(QStringLiteral("shortcut"));
  if (!value.isValid()) return {};
  QStringList keys;
  const auto argument = value.value<QDBusArgument>();
  argument.beginArray();
  while (!argument.atEnd()) {
    QStringList combination;
    argument >> combination;
    keys << combination.join(QLatin1Char('+'));
  }
  argument.endArray();
  return keys.join(QLatin1Char(' ')).toStdString();
}

class TrayHost::Registry : public QDBusVirtualObject {
 public:
  [[nodiscard]] QString introspect(const QString& /*path*/) const override {
    return QStringLiteral(
        "<interface name=\"org.kde.StatusNotifierWatcher\">"
        "<method name=\"RegisterStatusNotifierItem\"><arg type=\"s\" direction=\"in\"/></method>"
        "<property name=\"IsStatusNotifierHostRegistered\" type=\"b\" access=\"read\"/>"
        "</interface>");
  }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
    if (message.member() == QLatin1String("RegisterStatusNotifierItem")) {
      {
        const QMutexLocker lock(&mutex_);
        owner_ = message.service();
      }
      return connection.send(message.createReply());
    }
    if (message.member() == QLatin1String("Get"))
      return connection.send(message.createReply(QVariant::fromValue(QDBusVariant(true))));
    return false;
  }

  [[nodiscard]] QString owner() const {
    const QMutexLocker lock(&mutex_);
    return owner_;
  }

 private:
  mutable QMutex mutex_;
  QString owner_;
};

TrayHost::TrayHost() : TrayHost(qt::busAddress()) {}

TrayHost::TrayHost(const std::string& busAddress) : registry_(std::make_unique<Registry>()) {
  static std::atomic<int> count = 0;
  application();
  name_ = QStringLiteral("tray-%1").arg(++count);
  thread_.start();
  registry_->moveToThread(&thread_);
  auto connection = QDBusConnection::connectToBus(QString::fromStdString(busAddress), name_);
  connection.registerVirtualObject(QStringLiteral("/StatusNotifierWatcher"), registry_.get());
  if (!connection.registerService(watcher)) throw std::runtime_error(connection.lastError().message().toStdString());
  connection.send(QDBusMessage::createSignal(QStringLiteral("/StatusNotifierWatcher"), watcher,
                                             QStringLiteral("StatusNotifierHostRegistered")));
}

TrayHost::~TrayHost() {
  thread_.quit();
  thread_.wait();
  // Before the connection: while the library closes one, on a thread of its own, it still uses its objects.
  registry_.reset();
  QDBusConnection::disconnectFromBus(name_);
}

bool TrayHost::hasItem() const { return !registry_->owner().isEmpty(); }

QVariant TrayHost::itemProperty(const QString& name) {
  const QDBusMessage reply =
      call(itemPath, QStringLiteral("org.freedesktop.DBus.Properties"), QStringLiteral("Get"), {itemInterface, name});
  return reply.arguments().value(0).value<QDBusVariant>().variant();
}

void TrayHost::activateItem(int x, int y) { call(itemPath, itemInterface, QStringLiteral("Activate"), {x, y}); }

void TrayHost::aboutToShow() { call(menuPath(), menuInterface, QStringLiteral("AboutToShow"), {0}); }

std::vector<ShownItem> TrayHost::items() {
  return parse(layout().arguments().value(1).value<QDBusArgument>()).children;
}

unsigned TrayHost::menuRevision() { return layout().arguments().value(0).toUInt(); }

QDBusMessage TrayHost::layout() {
  return call(menuPath(), menuInterface, QStringLiteral("GetLayout"), {0, -1, QStringList()});
}

void TrayHost::event(int id, const QString& name) {
  call(menuPath(), menuInterface, QStringLiteral("Event"),
       {id, name, QVariant::fromValue(QDBusVariant(0)), QVariant::fromValue(0U)});
}

QDBusMessage TrayHost::call(const QString& path, const QString& interface, const QString& method,
                            const QVariantList& arguments) {
  QDBusMessage message = QDBusMessage::createMethodCall(registry_->owner(), path, interface, method);
  message.setArguments(arguments);
  const QDBusPendingCall pending = QDBusConnection(name_).asyncCall(message);
  if (!runUntil([&] { return pending.isFinished(); })) throw std::runtime_error("The item does not answer.");
  if (pending.isError()) throw std::runtime_error(pending.error().message().toStdString());
  return pending.reply();
}

QString TrayHost::menuPath() { return itemProperty(QStringLiteral("Menu")).value<QDBusObjectPath>().path(); }

}  // namespace qt
