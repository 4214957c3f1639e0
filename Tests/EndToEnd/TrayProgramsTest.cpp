// Real trays: panels that show items of the session bus, and an older tray that embeds windows.

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

enum class Panel { xfce, lxqt };

// One panel in the top-left corner that holds nothing but this plugin.
std::string xfceSettings(const std::string& plugin) {
  return R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-panel" version="1.0">
  <property name="configver" type="int" value="2"/>
  <property name="panels" type="array">
    <value type="int" value="1"/>
    <property name="panel-1" type="empty">
      <property name="position" type="string" value="p=6;x=0;y=0"/>
      <property name="position-locked" type="bool" value="true"/>
      <property name="size" type="uint" value="40"/>
      <property name="length" type="double" value="10"/>
      <property name="plugin-ids" type="array"><value type="int" value="1"/></property>
    </property>
  </property>
  <property name="plugins" type="empty"><property name="plugin-1" type="string" value=")" +
         plugin + R"("/></property>
</channel>
)";
}

constexpr const char* lxqtSettings = R"([General]
panels=panel1
[panel1]
position=Top
alignment=-1
panelSize=40
width=100
width-percent=false
lockPanel=true
background-color=#d8d0c0
plugins=statusnotifier
[statusnotifier]
type=statusnotifier
)";

// A place inside the tray's first icon, in each tray.
constexpr int iconX = 11;
constexpr int iconY = 20;

class TrayPrograms : public DrivenDesktop {
 protected:
  using DrivenDesktop::DrivenDesktop;

  void startPanel(Panel panel = Panel::xfce, const std::string& xfcePlugin = "systray") {
    const auto settings = home_.configuration();
    support::writeFile(settings / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", xfceSettings(xfcePlugin));
    support::writeFile(settings / "lxqt/panel.conf", lxqtSettings);
    auto environment = home_.environment(server_.display());
    environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
    // The bus starts the service that reads the settings, in the bus's own environment.
    support::runToEnd({"dbus-update-activation-environment", "XDG_CONFIG_HOME", "HOME", "DISPLAY"}, environment);
    using Command = std::vector<std::string>;
    tray_.emplace(panel == Panel::xfce ? Command{"xfce4-panel", "--disable-wm-check"} : Command{"lxqt-panel"},
                  environment);
  }
  [[nodiscard]] std::size_t inkOfIcon(const Picture& screen) const {
    return screen.count(iconColor_, {0, 0, 24, 40}, 40);
  }
  [[nodiscard]] bool showsIcon() {
    return shows([this](const Picture& screen) { return inkOfIcon(screen) > 20; }) && stands({0, 0, 200, 60});
  }
  // Panels lay themselves out in their own time, and refill a menu that is already on screen.
  [[nodiscard]] bool stands(const PixelRect& part) {
    std::optional<Picture> last;
    int same = 0;
    return shows([&](const Picture& screen) {
      const Picture now = screen.cropped(part);
      same = last && *last == now ? same + 1 : 0;
      last = now;
      return same == 12;
    });
  }
  // The menu's background, large and in one colour that is not the board's.
  [[nodiscard]] bool showsMenu() {
    return shows([](const Picture& screen) { return screen.count(boardColor, {30, 45, 200, 150}) < 3'000; }) &&
           stands({0, 40, 310, 300});
  }
  [[nodiscard]] bool showsNoMenu() {
    return shows(
        [](const Picture& screen) { return screen.count(boardColor, {30, 45, 160, 150}) == std::size_t{160} * 150; });
  }
  // In the lower part of the cover's area, where no menu reaches.
  [[nodiscard]] bool showsTheBoardBelowTheMenu() {
    return shows(
        [](const Picture& screen) { return screen.count(boardColor, {200, 400, 400, 100}) == std::size_t{400} * 100; });
  }
  // A pointer that rests on the icon brings up its tooltip.
  void leaveTheIcon() { input_.moveTo(900, 700); }
  // Under load, a panel loses a menu that it has to open while it is still busy with the last one.
  void openTheMenu(int button) {
    ASSERT_TRUE(showsIcon());
    input_.moveTo(iconX + 1, iconY);
    input_.click(iconX, iconY, button);
    ASSERT_TRUE(showsMenu());
  }
  void openAndCloseTheMenu(int button) {
    openTheMenu(button);
    EXPECT_TRUE(showsTheBoardBelowTheMenu()) << "An open menu takes the cover down.";
    keepPicture(client_.screenshot(), "menu-of-button-" + std::to_string(button));
    input_.press(XK_Escape);
    leaveTheIcon();
    EXPECT_TRUE(showsNoMenu());
    EXPECT_TRUE(showsCover()) << "The menu has closed.";
  }
  // The header above it cannot be chosen.
  void chooseTheFirstCommand(int button) {
    openTheMenu(button);
    input_.press(XK_Down);
    input_.press(XK_Return);
    leaveTheIcon();
    EXPECT_TRUE(showsNoMenu());
  }

  support::PrivateHome home_;
  std::optional<support::ChildProcess> tray_;
  std::uint32_t iconColor_ = 0x000000;  // of its strokes on the light panels
};

class EachPanel : public TrayPrograms, public testing::WithParamInterface<Panel> {};

TEST_P(EachPanel, OnTheSessionBusShowsTheItemAndItsMenu) {
  const support::WindowManager manager(server_.display());
  startPanel(GetParam());
  start(solidOn);
  ASSERT_TRUE(showsIcon()) << tray_->output();
  ASSERT_TRUE(showsCover());
  // The panel draws the right button's menu, and may never say that it closed; the program draws the left button's.
  openAndCloseTheMenu(3);
  openAndCloseTheMenu(1);
  chooseTheFirstCommand(3);
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": false"));
  // The menu now has other content.
  openTheMenu(3);
}

// An area larger than any menu can show.
TEST_P(EachPanel, StartsTheProgramWhateverAreaIsStoredAndOpensItsMenuOnceAnotherIsChosen) {
  const support::WindowManager manager(server_.display());
  startPanel(GetParam());
  auto& program = start(R"({"style": 1, "outline": false, "enabled": true, "region": "{{0, 0}, {1e300, 600}}"})");
  ASSERT_TRUE(showsIcon()) << tray_->output();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor, {200, 300, 400, 200}) == 0; }));
  EXPECT_TRUE(program.process().isRunning()) << program.process().output();
  EXPECT_EQ(run({"whole-screen"}), (Answer{0, ""}));
  EXPECT_EQ(run({"toggle"}), (Answer{0, ""}));
  openTheMenu(3);
  EXPECT_TRUE(program.process().isRunning()) << program.process().output();
}

INSTANTIATE_TEST_SUITE_P(Panels, EachPanel, testing::Values(Panel::xfce, Panel::lxqt),
                         [](const auto& panel) { return panel.param == Panel::xfce ? "Xfce" : "Lxqt"; });

TEST_F(TrayPrograms, AnOlderTrayShowsTheItemAndItsMenuWithEitherButton) {
  // The tray comes later, as at a login where the panel starts last.
  start(solidOn);
  const support::XEmbedTray tray(server_.display());
  iconColor_ = 0x808080;  // the edge of the strokes, which are black on black here
  ASSERT_TRUE(showsIcon());
  ASSERT_TRUE(showsCover());
  openAndCloseTheMenu(1);
  openAndCloseTheMenu(3);
  chooseTheFirstCommand(1);
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": false"));
}

TEST_F(TrayPrograms, ARestartedPanelShowsTheItemAgain) {
  const support::WindowManager manager(server_.display());
  start(solidOff);
  for (int round = 0; round < 2; ++round) {
    startPanel();
    EXPECT_TRUE(showsIcon()) << tray_->output();
    tray_.reset();
    EXPECT_TRUE(shows([this](const Picture& screen) { return inkOfIcon(screen) == 0; }));
  }
}

class TaskList : public TrayPrograms {
 protected:
  TaskList() : TrayPrograms({.arguments = {"-extension", "Composite"}}) {}

  // The panel's end is a handle, which appears at once.
  [[nodiscard]] bool showsPanel() {
    return shows([](const Picture& screen) { return screen.count(boardColor, panel_) < 1'000; }) && stands(panel_);
  }
  [[nodiscard]] Picture panel() { return client_.screenshot(panel_); }

  static constexpr PixelRect panel_{0, 0, 128, 40};
};

TEST_F(TaskList, OfAPanelShowsNoneOfTheProgramsDialogs) {
  const support::WindowManager manager(server_.display());
  startPanel(Panel::xfce, "tasklist");
  ASSERT_TRUE(showsPanel()) << tray_->output();
  const Picture before = panel();
  start();
  press(XK_d);
  const auto alert = waitForDialog();
  ASSERT_TRUE(alert) << "There is no alert.";
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *alert; }));
  ASSERT_TRUE(stands(panel_));
  EXPECT_EQ(panel().differences(before), 0U);
  keepPicture(client_.screenshot(), "task-list");
  // Proves that the list does show windows.
  client_.setClass(client_.createWindow({.frame = {600, 500, 200, 100}, .overrideRedirect = false}), "a", "A");
  client_.sync();
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.cropped(panel_).differences(before) > 100; }));
}

}  // namespace
}  // namespace endtoend
