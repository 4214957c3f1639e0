// Messages through the notification service of the session bus; silent where there is none.
//
// Threads: main thread only. Nothing waits for an answer.
#pragma once

#include <string>

#include "Platform/Notifications.h"

namespace platform::linux::session {

class DesktopNotifications final : public Notifications {
 public:
  // What was shown once is remembered as an empty file in this directory, which need not exist.
  explicit DesktopNotifications(std::string stateDirectory) : stateDirectory_(std::move(stateDirectory)) {}

  void showOnce(const std::string& name, const Notification& notification) override;

 private:
  // Only the first time, whoever else asks at the same moment.
  [[nodiscard]] bool claim(const std::string& name) const;

  std::string stateDirectory_;
};

}  // namespace platform::linux::session
