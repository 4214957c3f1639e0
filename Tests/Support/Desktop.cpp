#include "Tests/Support/Desktop.h"

#include <sstream>
#include <stdexcept>

#include "Tests/Support/XClient.h"

namespace support {

namespace {

// The address is a line of its own, perhaps after warnings; empty until that line is complete.
std::string addressIn(const std::string& output) {
  std::istringstream lines(output.substr(0, output.rfind('\n') + 1));
  std::string line;
  while (std::getline(lines, line)) {
    if (line.starts_with("unix:")) return line;
  }
  return {};
}

std::vector<std::string> command(WindowManager::Kind kind) {
  if (kind == WindowManager::Kind::openbox) return {"openbox", "--sm-disable"};
  const std::string compositor = kind == WindowManager::Kind::xfwm4 ? "--compositor=off" : "--compositor=on";
  return {"xfwm4", compositor, "--sm-client-disable"};
}

}  // namespace

Environment PrivateHome::environment(const std::string& display) const {
  const std::string home = path().string();
  std::filesystem::create_directories(path() / "runtime");
  std::filesystem::permissions(path() / "runtime", std::filesystem::perms::owner_all);
  return {{"DISPLAY", display},
          {"HOME", home},
          {"XDG_CONFIG_HOME", configuration().string()},
          {"XDG_CACHE_HOME", home + "/.cache"},
          {"XDG_DATA_HOME", home + "/.local/share"},
          {"XDG_STATE_HOME", home + "/.local/state"},
          {"XDG_RUNTIME_DIR", home + "/runtime"}};
}

WindowManager::WindowManager(const std::string& display, Kind kind) {
  Environment environment = home_.environment(display);
  if (kind != Kind::openbox) {
    bus_.emplace();
    environment["DBUS_SESSION_BUS_ADDRESS"] = bus_->address();
  }
  process_.emplace(command(kind), environment);
  XClient client(display);
  // A newer xfwm4 has other processes load its pictures, which takes long on a busy machine.
  constexpr std::chrono::seconds patience{30};
  const bool ready = waitUntil(
      [&] {
        const auto check = client.numbers(client.root(), "_NET_SUPPORTING_WM_CHECK");
        return check.size() == 1 && client.numbers(check[0], "_NET_SUPPORTING_WM_CHECK") == check &&
               !client.numbers(client.root(), "_NET_NUMBER_OF_DESKTOPS").empty();
      },
      patience);
  if (!ready) throw std::runtime_error("The window manager did not come up: " + process_->output());
}

CompositingManager::CompositingManager(const std::string& display) : display_(display) {
  // When only part of the screen is repainted, picom 12 and 13 lose windows around it.
  process_.emplace(
      std::vector<std::string>{"picom", "--backend", "xrender", "--no-use-damage", "--config", "/dev/null"},
      home_.environment(display));
  XClient client(display);
  if (!waitUntil([&] { return client.selectionOwner("_NET_WM_CM_S0") != XCB_NONE; })) {
    throw std::runtime_error("The compositing manager did not come up: " + process_->output());
  }
}

void CompositingManager::stop() {
  process_->terminate();
  XClient client(display_);
  if (!waitUntil([&] { return client.selectionOwner("_NET_WM_CM_S0") == XCB_NONE; })) {
    throw std::runtime_error("The compositing manager did not go.");
  }
}

XEmbedTray::XEmbedTray(const std::string& display) {
  // Black, since tint2 also leaves the background of the icons black.
  const auto settings = home_.configuration() / "tint2/tint2rc";
  writeFile(settings,
            "rounded = 0\n"
            "border_width = 0\n"
            "background_color = #000000 100\n"
            "panel_items = S\n"
            "panel_size = 0 40\n"
            "panel_position = top left horizontal\n"
            "panel_shrink = 1\n"
            "panel_padding = 0 0 0\n"
            "panel_background_id = 1\n"
            "systray_padding = 0 0 0\n"
            "systray_icon_size = 24\n");
  // It waits up to fifteen seconds for a window manager that sets this.
  XClient client(display);
  client.setNumbers(client.root(), "_NET_NUMBER_OF_DESKTOPS", "CARDINAL", {1});
  client.sync();
  process_.emplace(std::vector<std::string>{"tint2", "-c", settings.string()}, home_.environment(display));
  if (!waitUntil([&] { return client.selectionOwner("_NET_SYSTEM_TRAY_S0") != XCB_NONE; })) {
    throw std::runtime_error("The tray did not come up: " + process_->output());
  }
}

SessionBus::SessionBus() {
  const std::string wanted = "unix:path=" + (directory_.path() / "bus").string();
  process_.emplace(std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address=1",
                                            "--address=" + wanted},
                   Environment{{"HOME", directory_.path().string()}});
  if (!waitUntil([&] { return !(address_ = addressIn(process_->output())).empty(); })) {
    throw std::runtime_error("The session bus did not come up: " + process_->output());
  }
}

}  // namespace support
