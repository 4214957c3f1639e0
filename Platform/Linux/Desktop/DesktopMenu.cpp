#include "Platform/Linux/Desktop/DesktopMenu.h"

#include <QAction>
#include <QCursor>
#include <QKeySequence>
#include <utility>

namespace platform::x11 {

namespace {

// An ampersand would underline the letter after it.
QString titleOf(const MenuItem& item) {
  return QString::fromStdString(item.title).replace(QLatin1Char('&'), QLatin1String("&&"));
}

QKeySequence shortcutOf(const MenuItem& item) {
  if (item.keyEquivalent.size() != 1) return {};
  const std::uint32_t mask = item.keyEquivalentModifierMask.value_or(modifierflags::command);
  QString text;
  if (mask & modifierflags::control) text += QLatin1String("Ctrl+");
  if (mask & modifierflags::option) text += QLatin1String("Alt+");
  if (mask & modifierflags::command) text += QLatin1String("Meta+");
  return QKeySequence(text + QString::fromStdString(item.keyEquivalent).toUpper(), QKeySequence::PortableText);
}

}  // namespace

DesktopMenu::DesktopMenu(RunLoop& runLoop, HostMenus& hostMenus)
    : runLoop_(runLoop),
      session_(
          runLoop, hostMenus,
          [this] {
            if (const auto delegate = delegate_.lock()) delegate->menuWillOpen(*this);
          },
          [this] {
            if (const auto delegate = delegate_.lock()) delegate->menuDidClose(*this);
          }) {
  QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] {
    session_.open(popsUpHere_ ? MenuSession::Closing::reported : MenuSession::Closing::perhapsUnreported);
  });
  QObject::connect(&menu_, &QMenu::aboutToHide, &menu_, [this] { session_.close(); });
}

void DesktopMenu::removeAllItems() {
  menu_.clear();
  submenus_.clear();
}

void DesktopMenu::addItem(MenuItem item) { append(menu_, std::move(item)); }

void DesktopMenu::fill() {
  session_.open(MenuSession::Closing::reported);
  session_.close();
}

void DesktopMenu::popUpAtPointer() {
  popsUpHere_ = true;
  menu_.popup(QCursor::pos());
  popsUpHere_ = false;
}

void DesktopMenu::append(QMenu& menu, MenuItem item) {
  if (item.isSeparator) {
    menu.addSeparator();
    return;
  }
  if (!item.submenu.empty()) {
    appendSubmenu(menu, item);
    return;
  }
  QAction* action = menu.addAction(titleOf(item));
  // Shown for the user to learn; the key itself is a global one and works without this menu.
  action->setShortcut(shortcutOf(item));
  action->setShortcutContext(Qt::WidgetShortcut);
  action->setShortcutVisibleInContextMenu(true);
  action->setCheckable(item.state == ControlState::on);
  action->setChecked(item.state == ControlState::on);
  action->setEnabled(static_cast<bool>(item.action));
  const auto shared = std::make_shared<const MenuItem>(std::move(item));
  QObject::connect(action, &QAction::triggered, &menu_, [this, shared] {
    session_.close();
    runLoop_.post([shared] { shared->action(*shared); });
  });
}

void DesktopMenu::appendSubmenu(QMenu& menu, const MenuItem& item) {
  submenus_.push_back(std::make_unique<QMenu>(titleOf(item)));
  QMenu& submenu = *submenus_.back();
  menu.addMenu(&submenu);
  for (const MenuItem& each : item.submenu) append(submenu, each);
}

}  // namespace platform::x11
