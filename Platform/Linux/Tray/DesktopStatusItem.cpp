#include "Platform/Linux/Tray/DesktopStatusItem.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QPalette>
#include <utility>

#include "Platform/Linux/Posix/DesktopNames.h"

namespace platform::linux::tray {

DesktopStatusItem::~DesktopStatusItem() {
  if (image_) image_->setListener({});
}

void DesktopStatusItem::setMenu(std::shared_ptr<platform::Menu> menu) {
  menu_ = std::dynamic_pointer_cast<DesktopMenu>(std::move(menu));
  if (!menu_) qFatal("This menu belongs to another desktop.");
  menu_->list();
  if (!icon_) return;
  hostCame();
  icon_->setContextMenu(&menu_->qtMenu());
}

// The toolkit looks for a tray on the bus that it joined first, so on another bus a new icon would be of the older
// kind. The existing icon joins the new bus once its own old connection is forgotten.
void DesktopStatusItem::showAgain() {
  icon_->hide();
  QDBusConnection::disconnectFromBus(
      QStringLiteral("org.kde.StatusNotifierItem-%1-1").arg(QCoreApplication::applicationPid()));
  icon_->show();
}

void DesktopStatusItem::show() {
  hostCame();
  if (icon_) return showAgain();
  icon_.emplace();
  // Trays open the context menu themselves. A plain click is left to us, and opening the menu is all that it can mean.
  QObject::connect(&*icon_, &QSystemTrayIcon::activated, &*icon_, [this](QSystemTrayIcon::ActivationReason reason) {
    if (reason == QSystemTrayIcon::Trigger && menu_) menu_->popUpAtPointer();
  });
  if (menu_) icon_->setContextMenu(&menu_->qtMenu());
  icon_->setToolTip(QString::fromStdString(toolTip_));
  draw();
  icon_->show();
}

void DesktopStatusItem::hostCame() {
  // Other hosts announce no openings while they load a menu, so theirs count from the start.
  if (menu_ && posix::isDesktop("GNOME")) menu_->hostLoads();
}

void DesktopStatusItem::hostVanished() {
  if (menu_) menu_->hostVanished();
}

void DesktopStatusItem::setImage(std::shared_ptr<Image> image) {
  if (image_) image_->setListener({});
  image_ = std::dynamic_pointer_cast<SymbolImage>(std::move(image));
  if (image_) {
    image_->setListener([this] { draw(); });
    // Screen readers say the item's title, for which Qt offers only the name of the application.
    QCoreApplication::setApplicationName(QString::fromStdString(image_->accessibilityDescription()));
  }
  draw();
}

void DesktopStatusItem::setToolTip(const std::string& text) {
  toolTip_ = text;
  if (icon_) icon_->setToolTip(QString::fromStdString(text));
}

void DesktopStatusItem::draw() {
  // A tray does not tell its colours; the desktop's own text colour is the best guess at one that stands out on it.
  if (icon_ && image_) icon_->setIcon(image_->icon(QGuiApplication::palette().color(QPalette::WindowText)));
}

}  // namespace platform::linux::tray
