#include "Tests/EndToEnd/MenuUser.h"

#include <QDBusArgument>
#include <stdexcept>

#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace endtoend {

MenuUser::MenuUser() {
  if (!qt::runUntil([&] { return host_.hasItem(); })) throw std::runtime_error("No item comes to the tray.");
}

std::vector<qt::ShownItem> MenuUser::open() {
  host_.aboutToShow();
  return host_.items();
}

void MenuUser::choose(const std::string& title) {
  const auto lines = open();
  const auto* line = findLine(lines, title);
  if (line == nullptr) throw std::runtime_error("The menu has no such line: " + title);
  // In this order, since the program may be gone after the click.
  close();
  host_.event(line->id, QStringLiteral("clicked"));
}

std::string MenuUser::toolTip() {
  const auto toolTip = host_.itemProperty(QStringLiteral("ToolTip")).value<QDBusArgument>();
  QString icon;
  QString title;
  toolTip.beginStructure();
  toolTip >> icon;
  toolTip.beginArray();
  while (!toolTip.atEnd()) {
    int width = 0;
    int height = 0;
    QByteArray pixels;
    toolTip.beginStructure();
    toolTip >> width >> height >> pixels;
    toolTip.endStructure();
  }
  toolTip.endArray();
  toolTip >> title;
  return title.toStdString();
}

const qt::ShownItem* findLine(const std::vector<qt::ShownItem>& lines, const std::string& title) {
  for (const auto& line : lines) {
    if (line.title() == title) return &line;
    if (const auto* inner = findLine(line.children, title)) return inner;
  }
  return nullptr;
}

}  // namespace endtoend
