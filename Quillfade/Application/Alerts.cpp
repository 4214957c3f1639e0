#include "Quillfade/Application/Alerts.h"

#include <string>
#include <utility>

#include "Quillfade/Basics/Fatal.h"

namespace quillfade {
namespace {

platform::Alert inUsersLanguage(platform::Alert alert, const platform::Texts& texts) {
  for (auto* text : {&alert.messageText, &alert.informativeText}) *text = texts.translated(*text);
  for (auto& button : alert.buttons) button = texts.translated(button);
  return alert;
}

void bringForward(platform::Platform& platform) {
  auto* application = platform.sharedApplication();
  if (application == nullptr) fatalError("there is no application to bring forward for an alert");
  application->activateIgnoringOtherApps();
}

}  // namespace

std::optional<int> Alerts::ask(const platform::Alert& alert) {
  if (isShowing_) {
    bringForward(platform_);
    return std::nullopt;
  }
  const int answer = show(alert);
  showPostponed();
  return answer;
}

void Alerts::tell(const platform::Alert& alert) {
  postponed_.push_back(alert);
  if (isShowing_) {
    bringForward(platform_);
  } else {
    showPostponed();
  }
}

int Alerts::show(const platform::Alert& alert) {
  isShowing_ = true;
  platform_.remoteControl().announceQuestion();
  bringForward(platform_);
  const int answer = platform_.dialogs().runModal(inUsersLanguage(alert, platform_.texts()));
  isShowing_ = false;
  return answer;
}

void Alerts::showPostponed() {
  while (!postponed_.empty()) {
    const platform::Alert next = std::move(postponed_.front());
    postponed_.erase(postponed_.begin());
    show(next);
  }
}

}  // namespace quillfade
