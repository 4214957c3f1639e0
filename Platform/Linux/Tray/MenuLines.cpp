#include "Platform/Linux/Tray/MenuLines.h"

#include <QAction>
#include <QKeySequence>
#include <QString>
#include <cstdint>
#include <utility>

namespace platform::linux::tray {

namespace {

// What a host cannot be told again about a line.
enum class Kind : std::uint8_t { separator, submenu, toggle, plain };

Kind kindOf(const MenuItem& item) {
  if (item.isSeparator) return Kind::separator;
  if (!item.submenu.empty()) return Kind::submenu;
  return item.state ? Kind::toggle : Kind::plain;
}

// A single ampersand would underline the letter after it.
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

struct MenuLines::Line {
  Kind kind;
  std::shared_ptr<const MenuItem> item;
  std::unique_ptr<QObject> object;  // the action, or the menu that it opens
  QAction* action = nullptr;
  std::unique_ptr<MenuLines> lines;  // of that menu
};

MenuLines::MenuLines(QMenu& menu, Choose choose) : menu_(menu), choose_(std::move(choose)) {}

MenuLines::~MenuLines() = default;

void MenuLines::show(const std::vector<MenuItem>& items) {
  lines_.resize(items.size());
  for (std::size_t index = 0; index < items.size(); ++index) {
    const MenuItem& item = items[index];
    std::unique_ptr<Line>& line = lines_[index];
    if (!line || line->kind != kindOf(item)) {
      auto added = makeLine(item);
      menu_.insertAction(line ? line->action : nullptr, added->action);
      line = std::move(added);
    }
    update(*line, item);
  }
}

std::unique_ptr<MenuLines::Line> MenuLines::makeLine(const MenuItem& item) {
  auto line = std::make_unique<Line>();
  line->kind = kindOf(item);
  if (line->kind == Kind::submenu) {
    auto menu = std::make_unique<QMenu>();
    line->action = menu->menuAction();
    line->lines = std::make_unique<MenuLines>(*menu, choose_);
    line->object = std::move(menu);
    return line;
  }
  auto action = std::make_unique<QAction>();
  action->setSeparator(line->kind == Kind::separator);
  action->setCheckable(line->kind == Kind::toggle);
  // Shown for the user to learn; the key itself is a global one and works without this menu.
  action->setShortcutContext(Qt::WidgetShortcut);
  action->setShortcutVisibleInContextMenu(true);
  QObject::connect(action.get(), &QAction::triggered, action.get(),
                   [this, chosen = line.get()] { choose_(chosen->item); });
  line->action = action.get();
  line->object = std::move(action);
  return line;
}

void MenuLines::update(Line& line, const MenuItem& item) {
  line.item = std::make_shared<const MenuItem>(item);
  if (line.kind == Kind::separator) return;
  line.action->setText(titleOf(item));
  if (line.lines) return line.lines->show(item.submenu);
  line.action->setShortcut(shortcutOf(item));
  line.action->setChecked(item.state == ControlState::on);
  line.action->setEnabled(static_cast<bool>(item.action));
}

}  // namespace platform::linux::tray
