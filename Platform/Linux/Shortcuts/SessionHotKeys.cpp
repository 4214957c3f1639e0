#include "Platform/Linux/Shortcuts/SessionHotKeys.h"

#include <QDBusMessage>
#include <QStringList>
#include <algorithm>
#include <ranges>
#include <utility>

#include "Platform/Linux/Input/HotKeysModifiers.h"
#include "Platform/Linux/Shortcuts/BusCall.h"
#include "Platform/Linux/Shortcuts/KWinShortcuts.h"
#include "Platform/Linux/Shortcuts/PortalShortcuts.h"

namespace platform::linux::shortcuts {
namespace {

using Kind = HotKeyStanding::Kind;

const QString connectionName = QStringLiteral("hot-keys");
const QString kwinKeys = QString::fromLatin1(kwinKeysName);
const QString kwin = QString::fromLatin1(kwinName);
const QString portal = QString::fromLatin1(portalName);

constexpr int atOnce = 0;
// A service that has just come or gone settles first. In milliseconds.
constexpr int aWhile = 500;
// A portal that ends each time it is asked is left alone.
constexpr int mostPortalsLost = 3;

}  // namespace

SessionHotKeys::SessionHotKeys(const xcb::Connection& connection)
    : connection_(connection),
      bus_(QDBusConnection::connectToBus(QDBusConnection::SessionBus, connectionName)),
      busReturn_([this](const QDBusConnection& bus) { follow(bus); }) {
  ask_.setSingleShot(true);
  QObject::connect(&ask_, &QTimer::timeout, &ask_, [this] { choose(); });
  follow(bus_);
}

SessionHotKeys::~SessionHotKeys() {
  service_ = nullptr;
  question_ = nullptr;
  watcher_ = nullptr;
  QDBusConnection::disconnectFromBus(connectionName);
}

std::optional<HotKeyHandlerReference> SessionHotKeys::installHandler(HotKeyHandler handler, void* userData) {
  return handlers_.install(handler, userData);
}

void SessionHotKeys::removeHandler(HotKeyHandlerReference handler) { handlers_.remove(handler); }

void SessionHotKeys::describe(HotKeyID id, const HotKeyPurpose& purpose) { purposes_[id.id] = purpose; }

std::optional<HotKeyReference> SessionHotKeys::registerHotKey(std::uint32_t keyCode, std::uint32_t modifiers,
                                                              HotKeyID id) {
  const bool isTaken = std::ranges::any_of(bindings_ | std::views::values, [&](const Binding& other) {
    return other.keyCode == keyCode && other.modifiers == modifiers;
  });
  if (isTaken || !keySymbolAt(keyCode, {})) return std::nullopt;
  const HotKeyReference reference{++lastReference_};
  bindings_.emplace(reference, Binding{keyCode, modifiers, id, {}});
  // A portal takes all keys together, and only once.
  askAnew(atOnce);
  return reference;
}

void SessionHotKeys::unregisterHotKey(HotKeyReference reference) {
  if (bindings_.erase(reference) == 0) return;
  service_ = nullptr;
  if (!bindings_.empty()) askAnew(atOnce);
}

bool SessionHotKeys::isHeld(HotKeyReference reference) const { return standing(reference).kind == Kind::held; }

HotKeyStanding SessionHotKeys::standing(HotKeyReference reference) const {
  const auto found = bindings_.find(reference);
  return found == bindings_.end() ? HotKeyStanding{Kind::unavailable} : found->second.standing;
}

void SessionHotKeys::follow(const QDBusConnection& bus) {
  service_ = nullptr;
  bus_ = bus;
  watcher_ = std::make_unique<QDBusServiceWatcher>();
  watcher_->setConnection(bus_);
  watcher_->setWatchMode(QDBusServiceWatcher::WatchForOwnerChange);
  watcher_->setWatchedServices({kwinKeys, kwin, portal});
  QObject::connect(
      watcher_.get(), &QDBusServiceWatcher::serviceOwnerChanged, watcher_.get(),
      [this](const QString& name, const QString& before, const QString& now) { ownerChanged(name, before, now); });
  askAnew(atOnce);
}

// KWin always comes back, or the session ends. A portal is started by whoever needs it.
void SessionHotKeys::ownerChanged(const QString& name, const QString& before, const QString& now) {
  if (name != portal) {
    if (!now.isEmpty()) return askAnew(aWhile);
    if (provider_ == Provider::kwin) stop(Kind::unavailable);
    return;
  }
  if (provider_ != Provider::portal) return;
  if (before.isEmpty()) {
    // Not the one that our own question has just started.
    if (lacksService()) askAnew(aWhile);
    return;
  }
  stop(Kind::unavailable);
  if (++portalsLost_ <= mostPortalsLost) askAnew(aWhile);
}

void SessionHotKeys::askAnew(int delay) {
  stop(Kind::awaited);
  if (!bindings_.empty()) ask_.start(delay);
}

void SessionHotKeys::choose() {
  if (!bus_.isConnected()) return stop(Kind::unavailable);
  question_ = std::make_unique<QObject>();
  const QString bus = QStringLiteral("org.freedesktop.DBus");
  callMethod(
      bus_,
      QDBusMessage::createMethodCall(bus, QStringLiteral("/org/freedesktop/DBus"), bus, QStringLiteral("ListNames")),
      *question_, [this](const QDBusMessage& reply) {
        const QStringList services = reply.arguments().value(0).toStringList();
        const bool isKWin = services.contains(kwinKeys) && services.contains(kwin);
        ask(isKWin ? Provider::kwin : Provider::portal);
      });
}

void SessionHotKeys::ask(Provider provider) {
  provider_ = provider;
  const auto keyboard = input::readKeyboard(connection_.get());
  std::vector<Shortcut> shortcuts;
  for (const Binding& binding : bindings_ | std::views::values) {
    if (const auto symbol = keySymbolAt(binding.keyCode, keyboard))
      shortcuts.push_back({purposeOf(binding.id), binding.modifiers, *symbol});
  }
  const ShortcutListener listener{
      .pressed = [this](const std::string& name) { pressed(name); },
      .answered = [this](const std::string& name, const HotKeyStanding& standing) { answered(name, standing); }};
  if (provider == Provider::kwin) {
    service_ = std::make_unique<KWinShortcuts>(bus_, std::move(shortcuts), listener);
  } else {
    service_ = std::make_unique<PortalShortcuts>(bus_, std::move(shortcuts), listener);
  }
}

void SessionHotKeys::stop(Kind kind) {
  ask_.stop();
  question_ = nullptr;
  service_ = nullptr;
  for (Binding& binding : bindings_ | std::views::values) binding.standing = {kind};
}

// On a turn of its own: an action may show an alert, and the service may go while that waits for its answer.
void SessionHotKeys::pressed(const std::string& name) {
  for (const Binding& binding : bindings_ | std::views::values) {
    if (purposeOf(binding.id).name != name) continue;
    QMetaObject::invokeMethod(&ask_, [this, id = binding.id] { handlers_.dispatch(id); }, Qt::QueuedConnection);
  }
}

void SessionHotKeys::answered(const std::string& name, const HotKeyStanding& standing) {
  if (standing.kind == Kind::held) portalsLost_ = 0;
  for (Binding& binding : bindings_ | std::views::values) {
    if (purposeOf(binding.id).name == name) binding.standing = standing;
  }
}

HotKeyPurpose SessionHotKeys::purposeOf(HotKeyID id) const {
  if (const auto found = purposes_.find(id.id); found != purposes_.end()) return found->second;
  const std::string number = std::to_string(id.id);
  return {"hot-key-" + number, number};
}

bool SessionHotKeys::lacksService() const {
  return std::ranges::any_of(bindings_ | std::views::values,
                             [](const Binding& binding) { return binding.standing.kind == Kind::unavailable; });
}

}  // namespace platform::linux::shortcuts
