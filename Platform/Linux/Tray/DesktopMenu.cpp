#include "Platform/Linux/Tray/DesktopMenu.h"

#include <QCursor>
#include <QPointer>

namespace platform::linux::tray {

DesktopMenu::DesktopMenu(RunLoop& runLoop, HostMenus& hostMenus)
    : runLoop_(runLoop),
      lines_(menu_, [this](const auto& item) { choose(item); }),
      session_(
          runLoop, hostMenus, [this] { return menu_.isVisible(); }, [this] { willOpen(); },
          [this] {
            if (const auto delegate = delegate_.lock()) delegate->menuDidClose(*this);
          }) {
  QObject::connect(&menu_, &QMenu::aboutToShow, &menu_, [this] {
    if (!session_.open(popsUpHere_ ? MenuSession::Closing::reported : MenuSession::Closing::perhapsUnreported)) list();
  });
  QObject::connect(&menu_, &QMenu::aboutToHide, &menu_, [this] { session_.closeUnlessChosen(); });
}

void DesktopMenu::willOpen() {
  if (const auto delegate = delegate_.lock()) delegate->menuWillOpen(*this);
  lines_.show(items_);
}

void DesktopMenu::list() {
  if (const auto delegate = delegate_.lock()) delegate->menuWillBeListed(*this);
  lines_.show(items_);
}

void DesktopMenu::popUpAtPointer() {
  popsUpHere_ = true;
  menu_.popup(QCursor::pos());
  popsUpHere_ = false;
}

void DesktopMenu::choose(const std::shared_ptr<const MenuItem>& item) {
  runLoop_.post([this, menu = QPointer(&menu_), item] {
    // In one turn, so that what the closing brings back is never seen where the action takes it away.
    if (menu) session_.close();
    item->action(*item);
  });
}

}  // namespace platform::linux::tray
