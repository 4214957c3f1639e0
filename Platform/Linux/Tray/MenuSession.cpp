#include "Platform/Linux/Tray/MenuSession.h"

#include <utility>

namespace platform::linux::tray {

MenuSession::MenuSession(RunLoop& runLoop, HostMenus& hostMenus, std::function<bool()> isShownHere,
                         std::function<void()> willOpen, std::function<void()> didClose)
    : runLoop_(runLoop),
      hostMenus_(hostMenus),
      isShownHere_(std::move(isShownHere)),
      willOpen_(std::move(willOpen)),
      didClose_(std::move(didClose)) {}

MenuSession::~MenuSession() {
  if (loading_) loading_->cancel();
  close();
}

void MenuSession::hostLoads() {
  if (loading_) loading_->cancel();
  loading_ = runLoop_.after(longestLoading, [this] { loading_ = nullptr; });
}

bool MenuSession::open(Closing closing) {
  if (loading_ && closing == Closing::perhapsUnreported) return false;
  close();
  isOpen_ = true;
  if (closing == Closing::perhapsUnreported) {
    limit_ = runLoop_.after(longestUnreportedOpening, [this] {
      if (!isShownHere_() && !hostMenus_.isSeen()) close();
    });
    hostMenus_.whenClosed([this] { closeUnlessChosen(); });
  }
  willOpen_();
  return true;
}

void MenuSession::closeUnlessChosen() {
  if (isOpen_ && !ending_) ending_ = runLoop_.after(longestWaitForChoice, [this] { close(); });
}

void MenuSession::close() {
  if (!std::exchange(isOpen_, false)) return;
  if (const auto ending = std::exchange(ending_, nullptr)) ending->cancel();
  if (const auto limit = std::exchange(limit_, nullptr)) {
    limit->cancel();
    hostMenus_.whenClosed({});
  }
  didClose_();
}

}  // namespace platform::linux::tray
