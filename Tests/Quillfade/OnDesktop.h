// The base of the application's tests: a simulated desktop, and short names for what tests ask of it.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Simulated/Desktop.h"

namespace platform {

// Makes a failed comparison print numbers.
inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << '(' << rect.origin.x << ", " << rect.origin.y << ", " << rect.size.width << ", " << rect.size.height << ')';
}

}  // namespace platform

namespace quillfade {

namespace simulated = platform::simulated;

using Strings = std::vector<std::string>;

class OnDesktop : public testing::Test {
 protected:
  static constexpr std::string_view logPath = "/home/presenter/Library/Logs/Quillfade.log";

  // What was logged, without the time stamps.
  [[nodiscard]] Strings logMessages() const { return messagesIn(desktop.files().content(std::string(logPath))); }

  [[nodiscard]] std::size_t countLogged(const std::string& message) const {
    const Strings messages = logMessages();
    return static_cast<std::size_t>(std::count(messages.begin(), messages.end(), message));
  }

  // The position of an entry in the record of all calls; throws when there is none.
  [[nodiscard]] std::size_t placeOf(const std::string& entry) const { return desktop.record().indexOf(entry).value(); }

  // The windows on the screen, bottom to top.
  [[nodiscard]] const std::vector<std::shared_ptr<simulated::WindowState>>& shownWindows() const {
    return desktop.windows().onScreen();
  }

  [[nodiscard]] std::vector<platform::Rect> shownFrames() const {
    std::vector<platform::Rect> frames;
    for (const auto& window : shownWindows()) frames.push_back(window->frame);
    return frames;
  }

  static Strings messagesIn(const std::optional<std::string>& content) {
    constexpr std::size_t stampLength = std::string_view("[2026-11-15 23:56:39 +0000] ").size();
    Strings messages;
    std::string_view rest = content ? std::string_view(*content) : std::string_view();
    while (!rest.empty()) {
      const std::size_t end = rest.find('\n');
      messages.emplace_back(rest.substr(0, end).substr(std::min(stampLength, end)));
      rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return messages;
  }

  mutable simulated::Desktop desktop;
};

// A window as the capture service lists it: on screen, of this owner, in this layer and size.
inline platform::CaptureWindow listedWindow(std::uint32_t number, std::optional<std::string> owner, std::int64_t layer,
                                            platform::Size size = {1440, 900}) {
  platform::CaptureWindow window{number, layer, {{0, 0}, size}, true, std::nullopt};
  if (owner) window.owningApplication = platform::RunningApplication{*owner};
  return window;
}

}  // namespace quillfade
