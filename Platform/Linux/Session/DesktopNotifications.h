// Messages through the notification service of the session bus; silent where there is none.
//
// Threads: main thread only. Never waits for an answer.
#pragma once

#include <string>

#include "Platform/Notifications.h"

namespace platform::linux::session {

class DesktopNotifications final : public Notifications {
 public:
  // An empty file in this directory, which need not exist, records each message that was shown once.
  explicit DesktopNotifications(std::string stateDirectory) : stateDirectory_(std::move(stateDirectory)) {}

  void showOnce(const std::string& name, const Notification& notification) override;

 private:
  // True only the first time, even if others ask at the same moment.
  [[nodiscard]] bool claim(const std::string& name) const;

  std::string stateDirectory_;
};

}  // namespace platform::linux::session
