// A cover controller on a simulated desktop.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Quillfade/Cover/OverlayController.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {

inline const platform::Screen leftScreen{{{0, 0}, {1440, 900}}, 1, 2};
inline const platform::Screen rightScreen{{{1440, 0}, {1920, 1080}}, 2, 1};

class ControllerTest : public OnDesktop {
 protected:
  static constexpr platform::Rect region{{100, 100}, {800, 600}};

  // Makes the controller from the current settings.
  OverlayController& make() {
    controller = std::make_shared<OverlayController>(desktop);
    controller->setOnStateChange([this] { ++stateChanges; });
    return *controller;
  }

  // A controller in normal use, with its cover on over `area`.
  OverlayController& switchedOn(CoverStyle style, const platform::Rect& area = region) {
    make();
    controller->setStyle(style);
    controller->setRegion(area);
    controller->setEnabled(true);
    desktop.runLoop().settle();
    stateChanges = 0;
    return *controller;
  }

  void store(const std::string& key, platform::SettingValue value) {
    desktop.settings().values.insert_or_assign(key, value);
  }

  [[nodiscard]] std::optional<platform::SettingValue> stored(const std::string& key) const {
    return desktop.settings().object(key);
  }

  // The keys written since the desktop was made, in order.
  [[nodiscard]] Strings writtenKeys() const {
    Strings keys;
    for (const auto& [key, value] : desktop.settings().writes()) keys.push_back(key);
    return keys;
  }

  std::shared_ptr<OverlayController> controller;
  int stateChanges = 0;
};

inline platform::SettingValue integer(std::int64_t value) { return value; }

}  // namespace quillfade
