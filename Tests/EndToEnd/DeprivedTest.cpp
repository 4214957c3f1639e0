// A system that lacks what it should have: extensions, screens, a bus, a home, room on the disk, a steady clock.

#include <sys/stat.h>
#include <xcb/randr.h>

#include <span>
#include <string_view>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Linux/Session/LockServices.h"
#include "Tests/Linux/Tray/TrayHost.h"
#include "Tests/Support/Reply.h"
#include "Tests/Support/TamperingProxy.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

class Deprived : public DrivenDesktop {
 protected:
  using DrivenDesktop::DrivenDesktop;

  [[nodiscard]] bool coverComesAndGoes() {
    return run({"toggle"}).status == 0 && showsCover() && run({"toggle"}).status == 0 && showsNoCover();
  }

  // Switches the only output off, as unplugging does; returns the mode that it had.
  xcb_randr_mode_t switchScreenOff() {
    const auto info = support::waitForReply(connection(), xcb_randr_get_crtc_info_reply,
                                            xcb_randr_get_crtc_info(connection(), crtc(), XCB_CURRENT_TIME));
    if (!info || !setMode(XCB_NONE, {})) throw std::runtime_error("The screen stays on.");
    return info->mode;
  }
  void switchScreenOn(xcb_randr_mode_t mode) {
    const auto all = resources();
    if (!setMode(mode, {xcb_randr_get_screen_resources_outputs(all.get()), 1})) throw std::runtime_error("No screen.");
  }

 private:
  [[nodiscard]] xcb_connection_t* connection() const { return client_.connection(); }
  support::Reply<xcb_randr_get_screen_resources_reply_t> resources() {
    return support::waitForReply(connection(), xcb_randr_get_screen_resources_reply,
                                 xcb_randr_get_screen_resources(connection(), client_.root()));
  }
  xcb_randr_crtc_t crtc() { return *xcb_randr_get_screen_resources_crtcs(resources().get()); }
  bool setMode(xcb_randr_mode_t mode, std::span<const xcb_randr_output_t> outputs) {
    const auto reply =
        support::waitForReply(connection(), xcb_randr_set_crtc_config_reply,
                              xcb_randr_set_crtc_config(connection(), crtc(), XCB_CURRENT_TIME, XCB_CURRENT_TIME, 0, 0,
                                                        mode, XCB_RANDR_ROTATION_ROTATE_0,
                                                        static_cast<std::uint32_t>(outputs.size()), outputs.data()));
    return reply && reply->status == XCB_RANDR_SET_CONFIG_SUCCESS;
  }
};

TEST_F(Deprived, ASessionBusThatDiesTakesTheCommandsWithItButNotTheCover) {
  support::SessionBus bus;
  launch(solidOn, {{"DBUS_SESSION_BUS_ADDRESS", bus.address()}});
  ASSERT_TRUE(showsCover());
  bus.kill();
  press(XK_d);
  EXPECT_TRUE(showsNoCover());
  press(XK_d);
  EXPECT_TRUE(showsCover());
  EXPECT_TRUE(quillfade().process().isRunning()) << quillfade().process().output();
}

// A session bus that dies, and another one at its address.
class BusReturn : public Deprived {
 protected:
  // Without the bus's own identifier, like a desktop's address.
  std::string busAddress() override { return bus_.address().substr(0, bus_.address().find(',')); }

  void replaceBus() {
    bus_.kill();
    // Keys and cover work without it.
    press(XK_d);
    ASSERT_TRUE(showsNoCover());
    press(XK_d);
    ASSERT_TRUE(showsCover());
    startBus();
  }
  void startBus() {
    next_.emplace(
        std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--address=" + busAddress()});
  }
  [[nodiscard]] bool takesCommands() {
    return support::waitUntil([&] { return run({"status"}).status == 0; });
  }

  std::optional<support::ChildProcess> next_;
};

TEST_F(BusReturn, CommandsReachTheProgramAgainAndAgain) {
  start(solidOn);
  ASSERT_TRUE(showsCover());
  ASSERT_NO_FATAL_FAILURE(replaceBus());
  ASSERT_TRUE(takesCommands()) << quillfade().process().output();
  ASSERT_EQ(run({"toggle"}).status, 0);
  EXPECT_TRUE(showsNoCover());
  next_->kill();
  EXPECT_NE(run({"status"}).status, 0);
  startBus();
  EXPECT_TRUE(takesCommands());
}

TEST_F(BusReturn, AScreenSaverOnTheNewBusHidesTheCover) {
  start(solidOn);
  ASSERT_TRUE(showsCover());
  ASSERT_NO_FATAL_FAILURE(replaceBus());
  ASSERT_TRUE(takesCommands());
  qt::LockServices saver(busAddress());
  saver.startScreenSaver("org.freedesktop.ScreenSaver");
  saver.setScreenSaverActive("org.freedesktop.ScreenSaver", true);
  EXPECT_TRUE(showsNoCover());
  saver.setScreenSaverActive("org.freedesktop.ScreenSaver", false);
  EXPECT_TRUE(showsCover());
}

TEST_F(BusReturn, ThePanelOfTheNewBusShowsTheItemWithItsMenu) {
  std::optional<qt::TrayHost> panel(std::in_place, busAddress());
  start(solidOn);
  ASSERT_TRUE(support::waitUntil([&] { return panel->hasItem(); }));
  panel.reset();
  ASSERT_NO_FATAL_FAILURE(replaceBus());
  ASSERT_TRUE(takesCommands());
  panel.emplace(busAddress());
  ASSERT_TRUE(support::waitUntil([&] { return panel->hasItem(); }));
  panel->aboutToShow();
  EXPECT_EQ(panel->items().size(), 16U);
}

TEST_F(Deprived, AHomeThatCannotBeWrittenIsReportedAndTheCoverWorks) {
  // Not even root can create a directory where there is a file.
  const support::TemporaryDirectory directory;
  support::writeFile(directory.path() / "file", "");
  start({},
        {{"XDG_CONFIG_HOME", (directory.path() / "file").string()}, {"HOME", (directory.path() / "file").string()}});
  ASSERT_EQ(run({"style", "solid"}).status, 0);
  ASSERT_EQ(run({"whole-screen"}).status, 0);
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; }));
  EXPECT_THAT(quillfade().process().output(), HasSubstr("Settings will not be saved."));
}

TEST_F(Deprived, AMissingHomeIsCreated) {
  const support::TemporaryDirectory directory;
  const auto home = directory.path() / "not" / "there";
  start({}, {{"XDG_CONFIG_HOME", home.string()}, {"HOME", home.string()}});
  ASSERT_EQ(run({"style", "solid"}).status, 0);
  ASSERT_EQ(run({"whole-screen"}).status, 0);
  EXPECT_THAT(support::readFile(home / "quillfade/settings.json"), HasSubstr("\"enabled\": true"));
  const auto modeOf = [](const std::filesystem::path& path) {
    struct stat info{};
    return ::stat(path.c_str(), &info) == 0 ? info.st_mode & 0777U : 0U;
  };
  EXPECT_EQ(modeOf(home / "quillfade/settings.json"), 0600U);
  for (const auto& made : {home / "quillfade", home, home.parent_path()}) EXPECT_EQ(modeOf(made), 0700U) << made;
}

// A settings file of another kind, or one that cannot be read.
class OddSettings : public Deprived, public testing::WithParamInterface<const char*> {};

TEST_P(OddSettings, NeitherBlocksNorIsReplacedAndTheCoverWorks) {
  const support::TemporaryDirectory directory;
  const auto path = directory.path() / "quillfade/settings.json";
  std::filesystem::create_directories(path.parent_path());
  const std::string kind = GetParam();
  if (kind == "Directory") std::filesystem::create_directory(path);
  if (kind == "Fifo") {
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  }
  if (kind == "LinkCircle") std::filesystem::create_symlink(path, path);
  start({}, {{"XDG_CONFIG_HOME", directory.path().string()}});
  ASSERT_EQ(run({"style", "solid"}).status, 0);
  ASSERT_EQ(run({"whole-screen"}).status, 0);
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; }));
  EXPECT_THAT(quillfade().process().output(), HasSubstr("Settings will not be saved."));
  const auto type = std::filesystem::symlink_status(path).type();
  EXPECT_EQ(type, kind == "Directory" ? std::filesystem::file_type::directory
                  : kind == "Fifo"    ? std::filesystem::file_type::fifo
                                      : std::filesystem::file_type::symlink);
}

INSTANTIATE_TEST_SUITE_P(Each, OddSettings, testing::Values("Directory", "Fifo", "LinkCircle"),
                         [](const auto& kind) { return std::string(kind.param); });

TEST_F(Deprived, ALinkToNowhereIsFilledWhereItPoints) {
  const support::TemporaryDirectory directory;
  const auto path = directory.path() / "quillfade/settings.json";
  const auto target = directory.path() / "elsewhere.json";
  std::filesystem::create_directories(path.parent_path());
  std::filesystem::create_symlink(target, path);
  start({}, {{"XDG_CONFIG_HOME", directory.path().string()}});
  ASSERT_EQ(run({"outline", "off"}).status, 0);
  EXPECT_THAT(support::readFile(target), HasSubstr("\"outline\": false"));
  EXPECT_TRUE(std::filesystem::is_symlink(path));
}

// The program's wall clock runs as the file says. Its other clocks and the times of files stay true: with those, the
// library that fakes the clock may lock itself out.
TEST_F(Deprived, AWallClockThatJumpsBackAndForthLeavesPeeksTheirLength) {
  constexpr std::string_view sanitizers = QUILLFADE_SANITIZE;
  if (!sanitizers.empty())
    GTEST_SKIP() << "A sanitizer's runtime must be the first library; so nothing can be preloaded.";
  const support::TemporaryDirectory directory;
  const auto clock = directory.path() / "clock";
  support::writeFile(clock, "@2026-03-01 12:00:00\n");
  start(solidOn, {{"LD_PRELOAD", QUILLFADE_FAKETIME_LIBRARY},
                  {"FAKETIME_TIMESTAMP_FILE", clock.string()},
                  {"FAKETIME_NO_CACHE", "1"},
                  {"FAKETIME_DONT_FAKE_MONOTONIC", "1"},
                  {"NO_FAKE_STAT", "1"}});
  ASSERT_TRUE(showsCover());
  for (const char* jump : {"@2031-01-01 00:00:00\n", "@1999-12-31 23:59:59\n"}) {
    const auto begun = std::chrono::steady_clock::now();
    ASSERT_EQ(run({"peek", "1"}).status, 0);
    EXPECT_TRUE(showsNoCover());
    support::writeFile(clock, jump);
    EXPECT_TRUE(showsCover());
    const auto length = std::chrono::steady_clock::now() - begun;
    EXPECT_GT(length, std::chrono::milliseconds(900));
    EXPECT_LT(length, std::chrono::milliseconds(4000));
  }
  ASSERT_EQ(run({"toggle"}).status, 0);
  EXPECT_TRUE(coverComesAndGoes());
}

TEST_F(Deprived, WithoutAnyScreenLeftTheProgramWaitsForOne) {
  start(solidOn);
  ASSERT_TRUE(showsCover());
  const auto mode = switchScreenOff();
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": true"));
  EXPECT_EQ(run({"whole-screen"}), (Answer{1, "There is no screen.\n"}));
  EXPECT_THAT(run({"windows"}).output, HasSubstr("There is no screen."));
  EXPECT_TRUE(quillfade().process().isRunning()) << quillfade().process().output();
  switchScreenOn(mode);
  EXPECT_TRUE(showsCover());
}

class WithoutShape : public Deprived {
 protected:
  WithoutShape() { proxy_.hideExtension("SHAPE"); }
  support::TamperingProxy proxy_{server_.display(), client_.connection()};
};

// The others without which nothing can be captured.
class WithoutNeededExtension : public Deprived, public testing::WithParamInterface<const char*> {
 protected:
  support::TamperingProxy proxy_{server_.display(), client_.connection()};
};

TEST_P(WithoutNeededExtension, LiveIsRefusedWithItsNameAndTheSolidCoverCovers) {
  proxy_.hideExtension(GetParam());
  start(solidOff, {{"DISPLAY", proxy_.display()}});
  const Answer windows = run({"windows"});
  EXPECT_EQ(windows.status, 1);
  EXPECT_THAT(windows.output, HasSubstr(std::string("lacks the X extension ") + GetParam()));
  EXPECT_TRUE(coverComesAndGoes());
  EXPECT_THAT(quillfade().process().output(), testing::Not(HasSubstr("refused request")));
}

INSTANTIATE_TEST_SUITE_P(Each, WithoutNeededExtension,
                         testing::Values("Composite", "DAMAGE", "RANDR", "SYNC", "XFIXES"));

// Those that only provide more information.
class WithoutUsefulExtension : public WithoutNeededExtension {};

TEST_P(WithoutUsefulExtension, LiveWorksAllTheSame) {
  proxy_.hideExtension(GetParam());
  start(solidOff, {{"DISPLAY", proxy_.display()}});
  const Answer windows = run({"windows"});
  EXPECT_EQ(windows.status, 0) << windows.output;
  EXPECT_EQ(run({"style", "live"}).status, 0);
  EXPECT_EQ(run({"toggle"}).status, 0);
  EXPECT_TRUE(becomes("\"enabled\": true"));
  EXPECT_TRUE(quillfade().process().isRunning());
  EXPECT_THAT(quillfade().process().output(), testing::Not(HasSubstr("refused request")));
}

INSTANTIATE_TEST_SUITE_P(Each, WithoutUsefulExtension, testing::Values("X-Resource", "MIT-SCREEN-SAVER"),
                         [](const auto& extension) {
                           std::string name = extension.param;
                           std::erase(name, '-');
                           return name;
                         });

class WithoutRender : public Deprived {
 protected:
  WithoutRender() : Deprived(support::XServerOptions{.arguments = {"-extension", "RENDER"}}) {}
};

TEST_F(WithoutShape, LiveIsRefusedWithAReasonAndTheSolidCoverCovers) {
  start(solidOff, {{"DISPLAY", proxy_.display()}});
  const Answer windows = run({"windows"});
  EXPECT_EQ(windows.status, 1);
  EXPECT_THAT(windows.output, HasSubstr("lacks the X extension SHAPE"));
  EXPECT_TRUE(coverComesAndGoes());
  EXPECT_THAT(quillfade().process().output(), testing::Not(HasSubstr("refused request")));
}

TEST_F(WithoutRender, LiveIsRefusedWithAReasonAndTheSolidCoverCovers) {
  start(solidOff);
  const Answer windows = run({"windows"});
  EXPECT_EQ(windows.status, 1);
  EXPECT_THAT(windows.output, HasSubstr("lacks the X extension RENDER"));
  EXPECT_TRUE(coverComesAndGoes());
  EXPECT_THAT(quillfade().process().output(), testing::Not(HasSubstr("refused request")));
}

}  // namespace
}  // namespace endtoend
