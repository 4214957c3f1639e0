// The ground of the tests: the whole application, running on a Mac that the fakes make up.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "Platform/Platform.h"
#include "Quillfade/ProcessEntry.h"
#include "Tests/Mac/Fakes/World.h"
#include "Tests/Mac/Runtime/Dispatch.h"
#include "Tests/Mac/Runtime/Recorder.h"
#include "Tests/Mac/Runtime/Timers.h"

namespace platform {

inline void PrintTo(const Rect& rect, std::ostream* out) {
  *out << '(' << rect.origin.x << ", " << rect.origin.y << ", " << rect.size.width << ", " << rect.size.height << ')';
}

}  // namespace platform

namespace quillfade {

using Strings = std::vector<std::string>;

inline constexpr std::uint32_t controlOptionCommand = 0x1900;
inline constexpr std::uint32_t keyD = 2;
inline constexpr std::uint32_t keyP = 35;
inline constexpr std::uint32_t keyA = 0;
inline constexpr std::uint32_t keyF = 3;

class MacTest : public testing::Test {
 protected:
  // Runs the application; the test goes on inside its `run`, when it has finished launching and is idle.
  void launched(const std::function<void()>& test) {
    world.script = [&test] {
      fake::settle();
      test();
      fake::settle();
    };
    fake::inPool([this] {
      const auto platform = platform::makePlatform({});
      fake::inPool([&] { status = runOnlyInstance(*platform); });
      // What is answered no more goes before its desktop.
      world.dropHeld();
      fake::settle();
    });
    fake::settle();
  }

  // Hands out the ports, without the application.
  void on(const std::function<void(platform::Platform&)>& test) {
    fake::inPool([&] {
      const auto platform = platform::makePlatform({});
      fake::inPool([&] { test(*platform); });
      fake::settle();
    });
  }

  // With a live cover over this area.
  void coveredLive(const std::function<void()>& test) {
    world.defaults = {{"region", std::string{"{{100, 200}, {800, 300}}"}}, {"enabled", true}};
    launched(test);
  }

  void choose(const std::string& title) {
    world.choose(title);
    fake::settle();
  }

  void press(std::uint32_t code) {
    EXPECT_TRUE(world.pressHotKey(code, controlOptionCommand));
    fake::settle();
  }

  void deliver(int stream, const fake::Frame& frame) {
    world.deliver(stream, frame);
    fake::settle();
  }

  [[nodiscard]] fake::MenuLine line(const std::string& title) const { return find(world.menu(), title); }

  // The content of the log file.
  [[nodiscard]] std::string log() const { return world.files.contents[world.home + "/Library/Logs/Quillfade.log"]; }

  // What was logged, without the time stamps.
  [[nodiscard]] Strings logged() const {
    Strings messages;
    const std::string all = log();
    std::string_view rest = all;
    while (!rest.empty()) {
      const std::size_t end = rest.find('\n');
      messages.emplace_back(rest.substr(0, end).substr(std::min(rest.find("] "), rest.size() - 2) + 2));
      rest.remove_prefix(end == std::string_view::npos ? rest.size() : end + 1);
    }
    return messages;
  }

  [[nodiscard]] bool wasLogged(const std::string& message) const {
    const auto messages = logged();
    return std::ranges::find(messages, message) != messages.end();
  }

  [[nodiscard]] std::vector<platform::Rect> shownFrames() const {
    std::vector<platform::Rect> frames;
    for (const auto& window : world.windowsOnScreen()) frames.push_back(window.frame);
    return frames;
  }

  // A second handle is not needed: the picture of the one cover.
  [[nodiscard]] fake::ViewLook picture() const { return world.windowsOnScreen().at(0).content; }
  [[nodiscard]] std::vector<int> framesShown() const { return picture().sublayers.at(0).frames; }
  // Empty when it is hidden.
  [[nodiscard]] std::string visibleStatus() const {
    const fake::ViewLook label = picture().subviews.at(0);
    return label.isHidden ? "" : label.text;
  }

  mutable fake::World world;
  int status = -1;

 private:
  static fake::MenuLine find(const std::vector<fake::MenuLine>& lines, const std::string& title) {
    for (const auto& line : lines) {
      if (line.title == title) return line;
      if (auto inside = find(line.submenu, title); !inside.title.empty()) return inside;
    }
    return {};
  }
};

}  // namespace quillfade
