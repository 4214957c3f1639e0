// The login item as an entry in the user's autostart directory, which every desktop reads at login.
#pragma once

#include <string>

#include "Platform/LoginItem.h"

namespace platform::linux::session {

class AutostartItem : public LoginItem {
 public:
  // Takes the user's configuration directory and the absolute path of the program to start.
  AutostartItem(const std::string& configurationDirectory, std::string program);

  // Enabled while the entry exists and neither it nor the desktop's settings switch it off.
  [[nodiscard]] LoginItemStatus status() const override;
  std::expected<void, Error> registerItem() override;
  std::expected<void, Error> unregisterItem() override;

 private:
  std::string path_;
  std::string program_;
};

}  // namespace platform::linux::session
