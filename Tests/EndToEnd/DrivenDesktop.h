// What the tests of the commands share: a private X server with a board of one colour, a private session bus, and the
// real program, driven by keys and command lines.
//
// Units and axes: device pixels, y down, on a screen of 1280 x 800.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "Tests/EndToEnd/Screenshots.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Picture.h"
#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XServer.h"

namespace endtoend {

using support::PixelRect;

// A command line's exit status and output.
struct Answer {
  int status = -1;
  std::string output;
  friend bool operator==(const Answer&, const Answer&) = default;
};

void PrintTo(const Answer& answer, std::ostream* out);

// A solid cover of 400 x 200 at (200, 300) from the top-left corner, off and on.
inline constexpr PixelRect storedArea{200, 300, 400, 200};
inline const std::string solidOff = R"({"style": 1, "outline": false, "region": "{{200, 300}, {400, 200}}"})";
inline const std::string solidOn =
    R"({"style": 1, "outline": false, "enabled": true, "region": "{{200, 300}, {400, 200}}"})";

class DrivenDesktop : public testing::Test {
 protected:
  static constexpr std::uint32_t boardColor = 0xc86432;

  explicit DrivenDesktop(const support::XServerOptions& server = {});

  // Starts the program on the session bus and waits until it accepts commands.
  support::QuillfadeProgram& start(const std::string& settings = {}, const support::Environment& environment = {});
  // Starts it without waiting.
  support::QuillfadeProgram& launch(const std::string& settings, const support::Environment& environment);
  [[nodiscard]] support::QuillfadeProgram& quillfade() { return *quillfade_; }
  // Runs a command line.
  Answer run(const std::vector<std::string>& words);
  [[nodiscard]] std::string status() { return run({"status", "--json"}).output; }
  [[nodiscard]] bool becomes(const std::string& partOfStatus);
  // The bus that the program and the command lines use, unless a test wants another one.
  virtual std::string busAddress() { return bus_.address(); }

  // Presses Control, Alt and Super with this key.
  void press(support::KeySymbol key) { input_.chord({XK_Control_L, XK_Alt_L, XK_Super_L, key}); }
  [[nodiscard]] bool shows(const std::function<bool(const Picture&)>& condition,
                           std::chrono::milliseconds deadline = support::defaultDeadline);
  // Whether the stored area is covered, or not, by one colour that is not the board's.
  [[nodiscard]] bool showsCover();
  [[nodiscard]] bool showsNoCover();
  [[nodiscard]] xcb_window_t focusedWindow();
  // A window of the program that is on the screen now and not part of a selection.
  [[nodiscard]] std::optional<xcb_window_t> waitForDialog();
  // Whether there is dark ink within the window, on whatever the screen shows there.
  [[nodiscard]] bool showsText(xcb_window_t window);

  support::XServer server_;
  support::SessionBus bus_;
  support::XClient client_{server_.display()};
  support::Input input_{server_.display()};
  xcb_window_t board_;

 private:
  std::optional<support::QuillfadeProgram> quillfade_;
};

}  // namespace endtoend
