// Shows Quillfade at work on a private display and measures what it shows: ink on the screen, the ink gone inside the
// covered area while the slide beneath changes, and the solid cover. Saves pictures and the log in a directory.

#include <chrono>
#include <exception>
#include <filesystem>
#include <functional>
#include <iostream>
#include <span>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "Tests/Demo/Slide.h"
#include "Tests/Support/GromitMpx.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XServer.h"

namespace {

using support::Picture;
using support::PixelRect;

// The demonstration's area, 520 x 340 at (240, 240) from the bottom-left corner of a screen 800 pixels high.
constexpr PixelRect area{240, 800 - 240 - 340, 520, 340};
// Without the outline along the cover's edges.
constexpr PixelRect inside{area.x + 1, area.y + 1, area.width - 2, area.height - 2};
// An arrow into the area, and a line that leaves it and comes back.
const std::vector<support::Stroke> strokes{{130, 180, 620, 460}, {620, 460, 560, 462},  {620, 460, 594, 408},
                                           {300, 600, 980, 520}, {980, 520, 1080, 330}, {1080, 330, 960, 250},
                                           {960, 250, 640, 300}};
constexpr int inkTolerance = 80;  // antialiased edges included

struct Ink {
  std::size_t inside;
  std::size_t outside;
};

Ink measure(const Picture& picture) {
  const auto count = [&](const PixelRect& part) {
    return picture.count(support::GromitMpx::defaultInk, part, inkTolerance);
  };
  const std::size_t within = count(area);
  return {within, count(picture.bounds()) - within};
}

bool isOneColor(const Picture& picture) {
  return picture == Picture(picture.width(), picture.height(), picture.at(0, 0));
}

void require(bool condition, const std::string& failure) {
  if (!condition) throw std::runtime_error(failure);
}

class Demonstration {
 public:
  Demonstration(std::string executable, std::filesystem::path output)
      : executable_(std::move(executable)), output_(std::move(output)) {}

  void run() {
    drawOver();
    const Ink first = keep("1-ink.png");
    require(first.inside > 1000 && first.outside > 1000, "The strokes did not reach both sides of the area's edges.");

    support::QuillfadeProgram quillfade(
        executable_, server_.display(),
        {.settings = R"({"style": 0})", .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus_.address()}}});
    coverLive(quillfade, first);
    coverSolid(quillfade, first);
    selectArea();
  }

 private:
  void drawOver() {
    slide_.advance();
    require(shows([&](const Picture& screen) { return screen.differences(slide_.picture(), area) == 0; }),
            "The slide did not come up.");
    gromit_.draw(strokes);
    // The program draws in order, so the last stroke appears last.
    const support::Stroke& last = strokes.back();
    const PixelRect middle{(last.fromX + last.toX) / 2, (last.fromY + last.toY) / 2, 1, 1};
    require(shows([&](const Picture& screen) { return screen.count(support::GromitMpx::defaultInk, middle) == 1; }),
            "The strokes did not show up.");
  }

  void coverLive(support::QuillfadeProgram& quillfade, const Ink& first) {
    require(quillfade.waitForMessage("first live frame received"),
            "No live frame came: " + quillfade.process().output());
    slide_.advance();
    // The whole inside shows the slide as it is now, not as it was when the first picture was taken.
    const bool live = shows([&](const Picture& screen) { return screen.differences(slide_.picture(), inside) == 0; });
    const Ink covered = keep("2-covered.png");
    std::filesystem::copy_file(quillfade.logPath(), output_ / "quillfade.log",
                               std::filesystem::copy_options::overwrite_existing);
    require(live, "The covered area does not show the slide as it is now.");
    require(covered.inside == 0, "There is ink inside the live cover.");
    require(covered.outside == first.outside, "The ink outside the live cover changed.");
  }

  void coverSolid(support::QuillfadeProgram& quillfade, const Ink& first) {
    quillfade.process().terminate();
    support::writeFile(quillfade.settingsPath(), R"({"style": 1})");
    quillfade.restart();
    const bool solid = shows([](const Picture& screen) { return isOneColor(screen.cropped(inside)); });
    const Ink covered = keep("3-solid.png");
    require(solid, "The solid cover is not of one colour.");
    require(covered.inside == 0, "There is ink inside the solid cover.");
    require(covered.outside == first.outside, "The ink outside the solid cover changed.");
  }

  // In the middle of a drag, which Escape then cancels.
  void selectArea() {
    input_.chord({XK_Control_L, XK_Alt_L, XK_Super_L, XK_a});
    require(shows([&](const Picture& screen) { return screen.at(5, 5) != slide_.picture().at(5, 5); }),
            "The selection did not dim the screen.");
    input_.moveTo(360, 260);
    input_.buttonDown();
    input_.moveTo(600, 400);
    input_.moveTo(880, 560);
    const auto isUndimmed = [&](const Picture& screen) { return screen.at(400, 300) == slide_.picture().at(400, 300); };
    require(shows(isUndimmed), "The dragged area does not show the screen as it is.");
    keep("4-selection.png");
    input_.buttonUp();
    input_.press(XK_Escape);
  }

  bool shows(const std::function<bool(const Picture&)>& condition) {
    return support::waitUntil([&] { return condition(client_.screenshot()); });
  }

  Ink keep(const std::string& name) {
    const Picture picture = client_.screenshot();
    writePng(picture, output_ / name);
    const Ink ink = measure(picture);
    std::cout << name << ": " << ink.inside << " ink pixels inside the area, " << ink.outside << " outside"
              << "\n"
              << std::flush;
    return ink;
  }

  std::string executable_;
  std::filesystem::path output_;
  support::XServer server_;
  support::XClient client_{server_.display()};
  support::Input input_{server_.display()};
  support::SessionBus bus_;
  support::WindowManager windowManager_{server_.display()};
  demo::Slide slide_{server_.display()};
  support::GromitMpx gromit_{server_.display()};
};

// The tray's menu, on a desktop that has a tray in its top-left corner.
void openMenu(const std::string& executable, const std::filesystem::path& output) {
  const support::XServer server;
  support::XClient client(server.display());
  support::Input input(server.display());
  const support::SessionBus bus;
  client.createWindow({.frame = client.screenFrame(), .color = 0x4c6a8a});
  client.sync();
  const support::XEmbedTray tray(server.display());
  const support::QuillfadeProgram quillfade(
      executable, server.display(),
      {.demonstration = false, .environment = {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}}});
  const auto showsIcon = [&] { return client.screenshot().count(0x808080, {0, 0, 24, 40}, 40) > 20; };
  require(support::waitUntil(showsIcon), "The icon did not come up.");
  const Picture before = client.screenshot();
  // Panels take their time to lay themselves out, so the click may come too early.
  constexpr PixelRect menu{30, 45, 200, 150};
  const auto showsMenu = [&] { return client.screenshot().differences(before, menu) > 20'000; };
  const auto opensMenu = [&] {
    input.click(12, 20, 3);
    return support::waitUntil(showsMenu, std::chrono::milliseconds{1'000});
  };
  require(support::waitUntil(opensMenu), "The menu did not come up.");
  writePng(client.screenshot(), output / "5-menu.png");
  std::cout << "5-menu.png: the menu\n" << std::flush;
}

}  // namespace

int main(int argc, char** argv) {
  const std::span arguments(argv, static_cast<std::size_t>(argc));
  if (arguments.size() != 3) {
    std::cerr << "usage: quillfade-demo EXECUTABLE DIRECTORY\n";
    return 2;
  }
  try {
    std::filesystem::create_directories(arguments[2]);
    Demonstration(arguments[1], arguments[2]).run();
    openMenu(arguments[1], arguments[2]);
    return 0;
  } catch (const std::exception& failure) {
    std::cerr << "The demonstration failed: " << failure.what() << '\n';
    return 1;
  }
}
