#include "Platform/Linux/Shortcuts/KWinShortcuts.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QKeySequence>
#include <QStringList>
#include <algorithm>
#include <utility>

#include "Platform/Linux/Posix/ApplicationIdentifier.h"
#include "Platform/Linux/Shortcuts/BusCall.h"

namespace platform::linux::shortcuts {

// As it is on the bus: a structure with a list of four keys that are pressed one after the other, 0 for none.
struct KeySequence {
  QList<int> keys;
};

QDBusArgument& operator<<(QDBusArgument& argument, const KeySequence& sequence) {
  argument.beginStructure();
  argument << sequence.keys;
  argument.endStructure();
  return argument;
}

const QDBusArgument& operator>>(const QDBusArgument& argument, KeySequence& sequence) {
  argument.beginStructure();
  argument >> sequence.keys;
  argument.endStructure();
  return argument;  // NOLINT(bugprone-return-const-ref-from-parameter): the bus library wants it so
}

}  // namespace platform::linux::shortcuts

Q_DECLARE_METATYPE(platform::linux::shortcuts::KeySequence)

namespace platform::linux::shortcuts {
namespace {

using Kind = HotKeyStanding::Kind;

const QString keysService = QString::fromLatin1(kwinKeysName);
const QString keysPath = QStringLiteral("/kglobalaccel");
const QString keysInterface = QStringLiteral("org.kde.KGlobalAccel");
const QString componentInterface = QStringLiteral("org.kde.kglobalaccel.Component");
const QString component = QString::fromLatin1(posix::applicationIdentifier);

constexpr int patience = 1000;  // milliseconds

// Flags of setShortcutKeys. Without the second, KWin would answer with the keys that it remembers from before.
constexpr uint present = 2;
constexpr uint notThoseRemembered = 4;
constexpr uint asDefault = 8;

QStringList actionOf(const Shortcut& shortcut) {
  return {component, QString::fromStdString(shortcut.purpose.name), QStringLiteral("Quillfade"),
          QString::fromStdString(shortcut.purpose.title)};
}

QDBusMessage keysMethod(const char* name) {
  return QDBusMessage::createMethodCall(keysService, keysPath, keysInterface, QString::fromLatin1(name));
}

QDBusMessage setKeys(const Shortcut& shortcut, uint flags) {
  const QList<KeySequence> sequences{{{combinedKey(shortcut.modifiers, shortcut.symbol), 0, 0, 0}}};
  return keysMethod("setShortcutKeys") << actionOf(shortcut) << QVariant::fromValue(sequences) << flags;
}

// The first key of each sequence.
std::vector<int> keysIn(const QVariant& sequences) {
  std::vector<int> keys;
  if (!sequences.canConvert<QDBusArgument>()) return keys;
  for (const auto& sequence : qdbus_cast<QList<KeySequence>>(sequences)) {
    const int key = sequence.keys.value(0);
    if (key != 0) keys.push_back(key);
  }
  return keys;
}

}  // namespace

KWinShortcuts::KWinShortcuts(QDBusConnection bus, std::vector<Shortcut> shortcuts, ShortcutListener listener)
    : bus_(std::move(bus)),
      shortcuts_(std::move(shortcuts)),
      listener_(std::move(listener)),
      pressed_(bus_, {keysService, {}, componentInterface, QStringLiteral("globalShortcutPressed")},
               [this](const QDBusMessage& message) {
                 if (message.arguments().value(0) != component) return;
                 if (const auto* shortcut = find(message.arguments().value(1).toString()))
                   listener_.pressed(shortcut->purpose.name);
               }),
      // The user chose other keys in the desktop's settings.
      changed_(bus_, {keysService, keysPath, keysInterface, QStringLiteral("yourShortcutsChanged")},
               [this](const QDBusMessage& message) {
                 const QStringList action = message.arguments().value(0).toStringList();
                 if (action.value(0) != component) return;
                 if (const auto* shortcut = find(action.value(1)))
                   answer(*shortcut, keysIn(message.arguments().value(1)), Kind::unassigned);
               }) {
  qDBusRegisterMetaType<KeySequence>();
  qDBusRegisterMetaType<QList<KeySequence>>();
  for (const Shortcut& shortcut : shortcuts_) ask(shortcut);
}

KWinShortcuts::~KWinShortcuts() {
  for (const Shortcut& shortcut : shortcuts_) {
    QDBusMessage message = keysMethod("unregister") << component << QString::fromStdString(shortcut.purpose.name);
    message.setAutoStartService(false);
    if (bus_.call(message, QDBus::Block, patience).type() == QDBusMessage::ErrorMessage) return;
  }
}

void KWinShortcuts::ask(const Shortcut& shortcut) {
  bus_.send(keysMethod("doRegister") << actionOf(shortcut));
  bus_.send(setKeys(shortcut, asDefault));
  callMethod(bus_, setKeys(shortcut, present | notThoseRemembered), context_,
             [this, &shortcut](const QDBusMessage& reply) {
               if (reply.type() == QDBusMessage::ReplyMessage)
                 return answer(shortcut, keysIn(reply.arguments().value(0)), Kind::taken);
               listener_.answered(shortcut.purpose.name, {Kind::unavailable, reply.errorMessage().toStdString()});
             });
}

void KWinShortcuts::answer(const Shortcut& shortcut, const std::vector<int>& keys, Kind without) {
  HotKeyStanding standing{Kind::held};
  if (keys.empty()) {
    standing.kind = without;
  } else if (std::ranges::find(keys, combinedKey(shortcut.modifiers, shortcut.symbol)) == keys.end()) {
    standing.detail = QKeySequence(keys.front()).toString(QKeySequence::PortableText).toStdString();
  }
  listener_.answered(shortcut.purpose.name, standing);
}

const Shortcut* KWinShortcuts::find(const QString& name) const {
  const auto found =
      std::ranges::find(shortcuts_, name.toStdString(), [](const Shortcut& shortcut) { return shortcut.purpose.name; });
  return found == shortcuts_.end() ? nullptr : &*found;
}

}  // namespace platform::linux::shortcuts
