// "quillfade doctor" on desktops that have all that is needed, and on some that do not; and the user's own rules.

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Linux/Tray/TrayHost.h"

namespace endtoend {
namespace {

using testing::ContainsRegex;
using testing::HasSubstr;
using testing::Not;

// A home of its own, and what "doctor" says there.
class Doctor : public DrivenDesktop {
 protected:
  using DrivenDesktop::DrivenDesktop;

  Answer examine(const support::Environment& more = {}) {
    auto environment = home_.environment(server_.display());
    environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
    for (const auto& [name, value] : more) environment[name] = value;
    support::ChildProcess doctor({QUILLFADE_EXECUTABLE, "doctor"}, environment);
    const int status = doctor.waitForExit().value_or(-1);
    return {status, doctor.output()};
  }
  void prepareLog() { std::filesystem::create_directories(home_.path() / "Library/Logs"); }
  void startTray() { tray_.emplace(server_.display()); }
  // The line about a subject, with the fix below it.
  static auto says(const std::string& state, const std::string& subject, const std::string& detail) {
    return ContainsRegex(state + " +" + subject + " +[^\n]*" + detail);
  }

  support::PrivateHome home_;
  std::optional<support::XEmbedTray> tray_;
};

TEST_F(Doctor, OnADesktopWithEverythingItEndsWithSuccess) {
  startTray();
  prepareLog();
  const Answer answer = examine();
  EXPECT_EQ(answer.status, 0) << answer.output;
  EXPECT_THAT(answer.output, HasSubstr("Everything required works.\n"));
  EXPECT_THAT(answer.output, says("ok", "X extension DAMAGE", "1\\.1"));
  EXPECT_THAT(answer.output, says("ok", "Compositing", "no compositing manager"));
  EXPECT_THAT(answer.output, says("ok", "Tray", "XEmbed"));
  EXPECT_THAT(answer.output, says("ok", "Control.Alt.Super.D", "toggle: free"));
  EXPECT_THAT(answer.output, Not(HasSubstr("problem")));
}

TEST_F(Doctor, ItLeavesTheKeysItTriedToOthers) {
  examine();
  start(solidOff);
  press(XK_d);
  EXPECT_TRUE(showsCover());
}

TEST_F(Doctor, WithoutATrayItSaysSoAndWhatToDoAndStillEndsWithSuccess) {
  const Answer answer = examine();
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.output, HasSubstr("Everything required works.\n"));
  EXPECT_THAT(answer.output, says("note", "Tray", "no program shows tray icons"));
  EXPECT_THAT(answer.output, HasSubstr("tint2"));
  EXPECT_THAT(answer.output, says("note", "Log", "Library/Logs"));
  EXPECT_THAT(answer.output, HasSubstr("mkdir -p " + (home_.path() / "Library/Logs").string()));
}

TEST_F(Doctor, ATrayOnTheSessionBusIsEnough) {
  const qt::TrayHost panel(bus_.address());
  EXPECT_THAT(examine().output, says("ok", "Tray", "shown by a StatusNotifierItem host"));
}

TEST_F(Doctor, WithoutASessionBusItSaysWhatThatMeans) {
  startTray();
  const Answer answer = examine({{"DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent"}});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.output, says("problem", "Session bus", "not reachable"));
  EXPECT_THAT(answer.output, says("ok", "Tray", "XEmbed"));
}

TEST_F(Doctor, ACompositingManagerIsRecognisedWhateverItCallsItself) {
  const auto window = client_.createWindow({.frame = {0, 0, 1, 1}, .mapped = false});
  xcb_set_selection_owner(client_.connection(), window, client_.atom("_NET_WM_CM_S0"), XCB_CURRENT_TIME);
  client_.sync();
  EXPECT_THAT(examine().output, says("ok", "Compositing", "an unnamed compositing manager"));
  // Numbers are no name.
  const std::uint32_t numbers = 0x41414141;
  xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, window, client_.atom("_NET_WM_NAME"),
                      XCB_ATOM_CARDINAL, 32, 1, &numbers);
  client_.sync();
  EXPECT_THAT(examine().output, says("ok", "Compositing", "an unnamed compositing manager"));
  xcb_change_property(client_.connection(), XCB_PROP_MODE_REPLACE, window, XCB_ATOM_WM_NAME, XCB_ATOM_STRING, 8, 5,
                      "older");
  client_.sync();
  EXPECT_THAT(examine().output, says("ok", "Compositing", "older"));
}

TEST_F(Doctor, AKeyOfAnotherProgramIsAProblem) {
  auto& program = start(solidOff);
  // The other Quillfade holds the keys, but is on a bus where this one cannot find it.
  const support::SessionBus other;
  const Answer answer = examine({{"DBUS_SESSION_BUS_ADDRESS", other.address()}});
  EXPECT_THAT(answer.output, says("problem", "Control.Alt.Super.D", "another program holds it")) << answer.output;
  EXPECT_THAT(answer.output, HasSubstr("Quillfade is not running."));
  EXPECT_TRUE(program.process().isRunning());
  EXPECT_THAT(examine().output, says("ok", "Control.Alt.Super.D", "toggle: bound by the running Quillfade"));
}

TEST_F(Doctor, ACompositingManagerIsNamed) {
  const support::CompositingManager picom(server_.display());
  EXPECT_THAT(examine().output, says("ok", "Compositing", "picom"));
}

TEST_F(Doctor, DamagedSettingsAndFaultyRulesAreNamedAndLeftAlone) {
  const auto settings = home_.configuration() / "quillfade/settings.json";
  const auto rules = home_.configuration() / "quillfade/rules.json";
  support::writeFile(settings, "{");
  support::writeFile(rules, R"({"alwaysExclude": [7]})");
  const Answer answer = examine();
  EXPECT_THAT(answer.output, says("problem", "Settings", "is damaged"));
  EXPECT_THAT(answer.output, says("problem", "Your rules", "alwaysExclude 1: "));
  EXPECT_EQ(support::readFile(settings), "{");
  EXPECT_EQ(support::readFile(rules), R"({"alwaysExclude": [7]})");
}

TEST_F(Doctor, AStoredAreaThatTheMenuCannotShowIsAProblemThatItNames) {
  const auto settings = home_.configuration() / "quillfade/settings.json";
  support::writeFile(settings, R"({"region": "{{0, 0}, {1e300, 600}}"})");
  const Answer answer = examine();
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.output, says("problem", "Area", "1e.300 × 600 points"));
  EXPECT_THAT(answer.output, HasSubstr("whole-screen"));
  support::writeFile(settings, R"({"region": "{{0, 0}, {800, 600}}"})");
  EXPECT_THAT(examine().output, Not(HasSubstr("Area")));
}

TEST_F(Doctor, WithoutADisplayItSaysWhatItCan) {
  const Answer answer = examine({{"DISPLAY", ""}});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.output, says("problem", "Display", "DISPLAY is not set"));
  EXPECT_THAT(answer.output, says("note", "Control.Alt.Super.D", "could not be tested"));
}

TEST_F(Doctor, InAWaylandSessionItSaysWhoseInkIsTakenAway) {
  const Answer answer = examine({{"XDG_SESSION_TYPE", "wayland"}});
  EXPECT_THAT(answer.output, says("note", "Session", "the ink of X11 programs such as gromit-mpx is taken away"));
  EXPECT_THAT(answer.output, HasSubstr("Use the solid cover over ink of Wayland programs."));
}

TEST_F(Doctor, InAWaylandSessionWithoutAnXServerItSaysWhatIsMissing) {
  const Answer answer = examine({{"XDG_SESSION_TYPE", "wayland"}, {"DISPLAY", ""}});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.output, says("problem", "Session", "without Xwayland"));
}

class WithoutDamage : public Doctor {
 protected:
  WithoutDamage() : Doctor({.arguments = {"-extension", "DAMAGE"}}) {}
};

TEST_F(WithoutDamage, TheMissingExtensionIsNamed) {
  EXPECT_THAT(examine().output, says("problem", "X extension DAMAGE", "missing"));
}

class UsersRules : public DrivenDesktop {
 protected:
  // The program with the user's rules.
  void startWith(const std::string& rules) {
    start(solidOff);
    support::writeFile(quillfade().settingsPath().parent_path() / "rules.json", rules);
    quillfade().restart();
    ASSERT_TRUE(support::waitUntil([&] { return run({"status"}).status == 0; }));
  }
};

TEST_F(UsersRules, AUsersHotKeyReplacesTheBuiltInOne) {
  startWith(R"({"hotKeys": {"toggle": "Control+Alt+Super+K"}})");
  EXPECT_THAT(run({"keys"}).output, HasSubstr("Control+Alt+Super+K  toggle        bound\n"));
  press(XK_k);
  EXPECT_TRUE(showsCover());
  press(XK_d);
  EXPECT_THAT(status(), HasSubstr("\"enabled\": true")) << "The built-in key is nobody's now.";
}

TEST_F(UsersRules, AWindowIsLeftOutOrKeptByItsClass) {
  const auto note = client_.createWindow({.frame = {10, 10, 64, 40}});
  client_.setClass(note, "sticky", "Notes");
  const auto ink = client_.createWindow({.frame = client_.screenFrame(), .color = 0, .depth = 32});
  client_.setClass(ink, "ink", "Ink");
  client_.setInputShape(ink, {});
  client_.sync();
  startWith(R"({"alwaysExclude": ["sti*"], "neverExclude": ["Ink"]})");
  const std::string inLine = "[^\n]*";
  EXPECT_THAT(
      run({"windows"}).output,
      testing::AllOf(
          ContainsRegex("\n" + std::to_string(note) + inLine + "left out +left out by your rule" + inLine + "sti"),
          ContainsRegex("\n" + std::to_string(ink) + inLine + "kept +kept by your rule" + inLine + "Ink")));
}

TEST_F(UsersRules, FaultsAreReportedAtTheStart) {
  startWith(R"({"hotKeys": {"toggle": "K"}})");
  EXPECT_THAT(quillfade().process().output(),
              HasSubstr("rules.json: hotKeys toggle: A hot key needs Control, Alt or Super.\n"));
  press(XK_d);
  EXPECT_TRUE(showsCover());
}

}  // namespace
}  // namespace endtoend
