// The user's defaults.
//
// Threads: main thread only.
#pragma once

#include "Platform/Settings.h"

namespace platform::mac::settings {

class Settings final : public platform::Settings {
 public:
  [[nodiscard]] std::optional<SettingValue> object(const std::string& key) const override;
  void set(const std::string& key, SettingValue value) override;
};

}  // namespace platform::mac::settings
