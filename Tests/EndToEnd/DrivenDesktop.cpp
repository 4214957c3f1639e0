#include "Tests/EndToEnd/DrivenDesktop.h"

#include <algorithm>
#include <ostream>

#include "Tests/Support/Reply.h"

namespace endtoend {

void PrintTo(const Answer& answer, std::ostream* out) { *out << answer.status << " \"" << answer.output << '"'; }

DrivenDesktop::DrivenDesktop(const support::XServerOptions& server)
    : server_(server),
      board_(client_.createWindow(
          {.frame = client_.screenFrame(), .color = boardColor, .overrideRedirect = false, .mapped = false})) {
  client_.setAtoms(board_, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DESKTOP"});
  client_.map(board_);
  client_.sync();
}

support::QuillfadeProgram& DrivenDesktop::launch(const std::string& settings, const support::Environment& environment) {
  support::QuillfadeOptions options{.demonstration = false, .settings = settings};
  options.environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
  for (const auto& [name, value] : environment) options.environment[name] = value;
  return quillfade_.emplace(QUILLFADE_EXECUTABLE, server_.display(), options);
}

support::QuillfadeProgram& DrivenDesktop::start(const std::string& settings, const support::Environment& environment) {
  auto& program = launch(settings, environment);
  if (!support::waitUntil([&] { return run({"status"}).status == 0 || !program.process().isRunning(); }) ||
      !program.process().isRunning()) {
    throw std::runtime_error("The program does not take commands: " + program.process().output());
  }
  return program;
}

Answer DrivenDesktop::run(const std::vector<std::string>& words) {
  std::vector<std::string> command{QUILLFADE_EXECUTABLE};
  command.insert(command.end(), words.begin(), words.end());
  // Without a display: a command needs none.
  support::ChildProcess process(command, {{"DBUS_SESSION_BUS_ADDRESS", busAddress()}});
  const auto exitStatus = process.waitForExit();
  if (!exitStatus) throw std::runtime_error("The command does not end: " + process.output());
  return {*exitStatus, process.output()};
}

bool DrivenDesktop::becomes(const std::string& partOfStatus) {
  return support::waitUntil([&] { return status().contains(partOfStatus); });
}

bool DrivenDesktop::shows(const std::function<bool(const Picture&)>& condition, std::chrono::milliseconds deadline) {
  return showsOn(client_, condition, deadline);
}

bool DrivenDesktop::showsCover() {
  return shows([](const Picture& screen) {
    const std::uint32_t color = screen.at(storedArea.x, storedArea.y);
    return color != boardColor && screen.count(color) == std::size_t{400} * 200 &&
           screen.count(color, storedArea) == std::size_t{400} * 200;
  });
}

bool DrivenDesktop::showsNoCover() {
  return shows([](const Picture& screen) { return screen.count(boardColor, storedArea) == std::size_t{400} * 200; });
}

xcb_window_t DrivenDesktop::focusedWindow() {
  const auto reply =
      support::waitForReply(client_.connection(), xcb_get_input_focus_reply, xcb_get_input_focus(client_.connection()));
  return reply ? reply->focus : xcb_window_t{XCB_NONE};
}

std::optional<xcb_window_t> DrivenDesktop::waitForDialog() {
  std::optional<xcb_window_t> dialog;
  const auto isDialog = [&](xcb_window_t window) {
    const auto types = client_.numbers(window, "_NET_WM_WINDOW_TYPE");
    return client_.isViewable(window) && !types.empty() && types[0] == client_.atom("_NET_WM_WINDOW_TYPE_DIALOG") &&
           client_.text(window, "WM_CLASS").contains("quillfade");
  };
  (void)support::waitUntil([&] {
    // A window manager puts the dialog into a frame.
    for (const xcb_window_t top : client_.children(client_.root())) {
      if (isDialog(top)) dialog = top;
      for (const xcb_window_t inner : client_.children(top)) {
        if (isDialog(inner)) dialog = inner;
      }
    }
    return dialog.has_value();
  });
  return dialog;
}

bool DrivenDesktop::showsText(xcb_window_t window) {
  return shows([&](const Picture& screen) {
    const auto frame = client_.frame(window);
    return frame && screen.count(0, *frame, 96) > 500;
  });
}

}  // namespace endtoend
