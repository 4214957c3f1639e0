// The look at a Mac from outside the application.

#include "Platform/Examination.h"

#include "Platform/Mac/Findings.h"
#include "Platform/Mac/Foundation/Process.h"
#include "Platform/Mac/Input/HotKeys.h"
#include "Platform/Mac/Session/LoginItem.h"
#include "Platform/Mac/Settings/Settings.h"

namespace platform {
namespace {

// The system may grant a combination to several programs. Why it refuses one, it does not say.
HotKeyAnswer tryOut(mac::input::HotKeys& keys, const HotKeyTrial& trial) {
  const auto reference = keys.registerHotKey(trial.keyCode, trial.modifiers, {});
  if (!reference) return HotKeyAnswer::unknown;
  keys.unregisterHotKey(*reference);
  return HotKeyAnswer::shared;
}

}  // namespace

Examination examineDesktop(const ExaminationRequest& request) {
  const std::string home = mac::foundation::Process().homeDirectory();
  Examination examination{.findings = {mac::permissionFinding(request.mayCapture),
                                       mac::loginItemFinding(mac::session::LoginItem().status()),
                                       mac::logFinding(home + '/' + request.logFile)},
                          .hotKeys = {},
                          .settingsFile = mac::preferencesPath(home)};
  mac::input::HotKeys keys;
  for (const HotKeyTrial& trial : request.hotKeys) examination.hotKeys.push_back(tryOut(keys, trial));
  for (const std::string& key : request.settings) {
    if (auto value = mac::settings::Settings().object(key)) examination.settings.emplace(key, std::move(*value));
  }
  return examination;
}

}  // namespace platform
