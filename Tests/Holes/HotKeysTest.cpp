// The hot keys of a Wayland session, from the desktop's service to the pixels.

#include "Tests/Holes/HolesDesktop.h"

namespace endtoend {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// Without the services of HolesDesktop: each test has its own.
class WaylandKeys : public CoveredDesktop {
 protected:
  // Starts the program with an area, and no cover over it.
  support::QuillfadeProgram& start(const support::Environment& more = {}) {
    environment_ = more;
    environment_.insert({{"XDG_SESSION_TYPE", "wayland"}, {"DBUS_SESSION_BUS_ADDRESS", bus_.address()}});
    const std::string settings = R"({"enabled": false, "outline": false, "region": ")" + regionText(area) + "\"}";
    return program_.emplace(
        QUILLFADE_EXECUTABLE, server_.display(),
        support::QuillfadeOptions{.demonstration = false, .settings = settings, .environment = environment_});
  }
  // What a command line prints.
  std::string run(const std::string& word) {
    auto environment = home_.environment(server_.display());
    for (const auto& [name, value] : environment_) environment[name] = value;
    support::ChildProcess command({QUILLFADE_EXECUTABLE, word}, environment);
    EXPECT_TRUE(command.waitForExit());
    return command.output();
  }
  [[nodiscard]] bool keysBecome(const std::string& text) {
    return support::waitUntil([&] { return run("keys").contains(text); });
  }

  support::SessionBus bus_;
  support::PrivateHome home_;
  support::Environment environment_;
  std::optional<support::QuillfadeProgram> program_;
};

TEST_F(WaylandKeys, AKeyOfThePortalTakesTheInkAwayAndBringsItBack) {
  qt::Portal portal(bus_.address());
  drawInk();
  const Picture inked = client_.screenshot();
  start();
  ASSERT_TRUE(keysBecome("bound: Press CTRL+ALT+LOGO+d\n"));
  EXPECT_THAT(portal.texts("BindShortcuts"), testing::ElementsAre("toggle=CTRL+ALT+LOGO+d (Hide Annotations)\n"
                                                                  "peek=CTRL+ALT+LOGO+p (Peek for 5 Seconds)\n"
                                                                  "select-area=CTRL+ALT+LOGO+a (Select Area…)\n"
                                                                  "whole-screen=CTRL+ALT+LOGO+f (Whole Screen)\n"));
  EXPECT_GT(ink(client_.screenshot(), area), 1000U);
  portal.press("toggle");
  EXPECT_TRUE(showsNoInk(area));
  EXPECT_GT(ink(client_.screenshot(), wholeScreen), 1000U);
  portal.press("toggle");
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen == inked; }));
}

TEST_F(WaylandKeys, AKeyOfThePortalCoversTheWholeScreen) {
  qt::Portal portal(bus_.address());
  drawInk();
  start();
  ASSERT_TRUE(keysBecome("bound: "));
  portal.press("whole-screen");
  EXPECT_TRUE(showsNoInk(wholeScreen));
}

TEST_F(WaylandKeys, AKeyOfKWinTakesTheInkAwayAndIsGivenBackAtTheEnd) {
  qt::KWinKeys kwin(bus_.address());
  drawInk();
  auto& quillfade = start();
  ASSERT_TRUE(keysBecome("Control+Alt+Super+D  toggle        bound\n")) << run("keys");
  kwin.press("toggle");
  EXPECT_TRUE(showsNoInk(area));
  EXPECT_THAT(kwin.requests("unregister"), testing::IsEmpty());
  quillfade.process().terminate();
  EXPECT_EQ(kwin.requests("unregister").size(), 4U);
}

TEST_F(WaylandKeys, AfterAKillTheNextStartHasThemAgain) {
  qt::KWinKeys kwin(bus_.address());
  start().process().kill();
  start();
  ASSERT_TRUE(keysBecome("Control+Alt+Super+D  toggle        bound\n"));
  drawInk();
  kwin.press("toggle");
  EXPECT_TRUE(showsNoInk(area));
}

TEST_F(WaylandKeys, WhereTheDesktopGivesNoneTheCommandsToBindAreNamed) {
  start();
  EXPECT_TRUE(keysBecome("not given by this desktop"));
  const std::string sentence =
      "Bind the commands \"quillfade toggle\", \"quillfade peek\", \"quillfade select-area\" and \"quillfade "
      "whole-screen\" to keys in the desktop's own settings.";
  const std::string running = run("doctor");
  EXPECT_THAT(running, ContainsRegex("note +Hot keys +this desktop gives Quillfade no hot keys"));
  EXPECT_THAT(running, HasSubstr(sentence));
  program_.reset();
  EXPECT_THAT(run("doctor"), HasSubstr(sentence));
}

TEST_F(WaylandKeys, WithoutARunningInstanceTheDoctorDoesNotTryTheKeysOfTheXServer) {
  const qt::Portal portal(bus_.address());
  start();
  ASSERT_TRUE(support::waitUntil([&] { return portal.requests("BindShortcuts").size() == 1; }));
  program_.reset();
  EXPECT_THAT(run("doctor"), ContainsRegex("ok +Control.Alt.Super.D +toggle: the desktop gives keys"));
  EXPECT_EQ(portal.requests("BindShortcuts").size(), 1U) << "It must not ask the user.";
}

TEST_F(WaylandKeys, OnGnomeWithoutATrayTheDoctorNamesTheExtension) {
  start({{"XDG_CURRENT_DESKTOP", "ubuntu:GNOME"}});
  EXPECT_THAT(run("doctor"), HasSubstr("gnome-shell-extension-appindicator"));
  program_.reset();
  environment_["XDG_CURRENT_DESKTOP"] = "KDE";
  EXPECT_THAT(run("doctor"), Not(HasSubstr("gnome-shell-extension-appindicator")));
}

// In an X11 session, keys are grabbed, whatever services there are.
TEST_F(WaylandKeys, InAnX11SessionNoServiceIsAsked) {
  const qt::KWinKeys kwin(bus_.address());
  drawInk();
  start({{"XDG_SESSION_TYPE", "x11"}});
  ASSERT_TRUE(support::waitUntil([&] { return run("keys").contains("toggle"); }));
  support::Input input(server_.display());
  input.chord({XK_Control_L, XK_Alt_L, XK_Super_L, XK_d});
  EXPECT_TRUE(showsNoInk(area));
  EXPECT_THAT(kwin.requests(), testing::IsEmpty());
}

}  // namespace
}  // namespace endtoend
