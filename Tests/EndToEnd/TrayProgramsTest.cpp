// Real trays: a panel that shows items of the session bus, and an older one that takes windows in.

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

// One panel in the top-left corner that holds nothing but the tray.
constexpr const char* panelSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
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
  <property name="plugins" type="empty"><property name="plugin-1" type="string" value="systray"/></property>
</channel>
)";

// A place inside the tray's first icon, on either tray.
constexpr int iconX = 11;
constexpr int iconY = 20;

class TrayPrograms : public DrivenDesktop {
 protected:
  void startPanel() {
    support::writeFile(home_.configuration() / "xfce4/xfconf/xfce-perchannel-xml/xfce4-panel.xml", panelSettings);
    auto environment = home_.environment(server_.display());
    environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
    // The bus starts the service that reads the settings, in surroundings of its own.
    support::runToEnd({"dbus-update-activation-environment", "XDG_CONFIG_HOME", "HOME", "DISPLAY"}, environment);
    tray_.emplace(std::vector<std::string>{"xfce4-panel", "--disable-wm-check"}, environment);
  }
  void startTrayer() {
    tray_.emplace(std::vector<std::string>{"trayer", "--edge", "top", "--align", "left", "--widthtype", "request",
                                           "--height", "32", "--expand", "false"},
                  home_.environment(server_.display()));
  }
  // The dark strokes of the icon.
  [[nodiscard]] static std::size_t inkOfIcon(const Picture& screen) { return screen.count(0, {0, 0, 24, 40}, 90); }
  [[nodiscard]] bool showsIcon() {
    return shows([](const Picture& screen) { return inkOfIcon(screen) > 20; }) && stands({0, 0, 200, 60});
  }
  // Panels lay themselves out in their own time, and fill a menu anew when it is on screen already.
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
  // The menu's ground, large and in one colour that is not the board's.
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
  void openAndCloseTheMenu(int button) {
    input_.moveTo(iconX + 1, iconY);
    input_.click(iconX, iconY, button);
    EXPECT_TRUE(showsMenu());
    EXPECT_TRUE(showsTheBoardBelowTheMenu()) << "An open menu takes the cover down.";
    keepPicture(client_.screenshot(), "menu");
    input_.press(XK_Escape);
    leaveTheIcon();
    EXPECT_TRUE(showsNoMenu());
    EXPECT_TRUE(showsCover()) << "The menu has closed.";
  }
  // The header above it cannot be chosen.
  void chooseTheFirstCommand(int button) {
    input_.click(iconX, iconY, button);
    ASSERT_TRUE(showsMenu());
    input_.press(XK_Down);
    input_.press(XK_Return);
    leaveTheIcon();
    EXPECT_TRUE(showsNoMenu());
  }

  support::PrivateHome home_;
  std::optional<support::ChildProcess> tray_;
};

TEST_F(TrayPrograms, APanelOnTheSessionBusShowsTheItemAndItsMenu) {
  const support::WindowManager manager(server_.display());
  startPanel();
  start(solidOn);
  ASSERT_TRUE(showsIcon()) << tray_->output();
  ASSERT_TRUE(showsCover());
  // The right button's menu is drawn by the panel, which never says that it closed; the left button's by the program.
  openAndCloseTheMenu(3);
  openAndCloseTheMenu(1);
  chooseTheFirstCommand(3);
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": false"));
}

TEST_F(TrayPrograms, AnOlderTrayShowsTheItemAndItsMenuWithEitherButton) {
  // The tray comes later, as at a login where the panel starts last.
  start(solidOn);
  startTrayer();
  ASSERT_TRUE(showsIcon()) << tray_->output();
  ASSERT_TRUE(showsCover());
  openAndCloseTheMenu(1);
  openAndCloseTheMenu(3);
  chooseTheFirstCommand(1);
  EXPECT_TRUE(showsNoCover());
  EXPECT_THAT(status(), HasSubstr("\"enabled\": false"));
}

TEST_F(TrayPrograms, APanelThatIsStartedAnewShowsTheItemAgain) {
  const support::WindowManager manager(server_.display());
  start(solidOff);
  for (int round = 0; round < 2; ++round) {
    startPanel();
    EXPECT_TRUE(showsIcon()) << tray_->output();
    tray_.reset();
    EXPECT_TRUE(shows([](const Picture& screen) { return inkOfIcon(screen) == 0; }));
  }
}

}  // namespace
}  // namespace endtoend
