// Start at login: the entry that the menu writes, as the desktop's own tools and its session see it.

#include <fstream>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/EndToEnd/MenuUser.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace endtoend {
namespace {

class Login : public DrivenDesktop {
 protected:
  std::string busAddress() override { return qt::busAddress(); }

  void choose() { MenuUser().choose("Launch at Login"); }
  [[nodiscard]] bool isChecked() {
    MenuUser user;
    const bool checked = findLine(user.open(), "Launch at Login")->isChecked();
    user.close();
    return checked;
  }
  [[nodiscard]] std::filesystem::path entry() {
    return quillfade().settingsPath().parent_path().parent_path() / "autostart/org.quillfade.Quillfade.desktop";
  }
  // What follows "Exec=".
  [[nodiscard]] std::string commandLine() {
    std::ifstream file(entry());
    for (std::string line; std::getline(file, line);) {
      if (line.starts_with("Exec=")) return line.substr(5);
    }
    return {};
  }
};

TEST_F(Login, TheMenuWritesAValidEntryAndRemovesItAgain) {
  start(solidOff);
  EXPECT_FALSE(isChecked());
  choose();
  ASSERT_TRUE(support::waitUntil([&] { return std::filesystem::exists(entry()); }));
  EXPECT_EQ(support::runToEnd({"desktop-file-validate", entry().string()}), "");
  EXPECT_TRUE(isChecked());
  choose();
  EXPECT_TRUE(support::waitUntil([&] { return !std::filesystem::exists(entry()); }));
  EXPECT_FALSE(isChecked());
}

TEST_F(Login, TheCommandOfTheEntryStartsTheProgram) {
  start(solidOn);
  choose();
  ASSERT_TRUE(support::waitUntil([&] { return !commandLine().empty(); }));
  EXPECT_EQ(run({"quit"}), (Answer{0, ""}));
  ASSERT_EQ(quillfade().process().waitForExit(), 0);
  ASSERT_TRUE(showsNoCover());
  // The path contains nothing that shells and desktop entries quote differently.
  const std::string home = quillfade().settingsPath().parent_path().parent_path().parent_path().string();
  support::ChildProcess atLogin({"sh", "-c", "exec " + commandLine()}, {{"DISPLAY", server_.display()},
                                                                        {"HOME", home},
                                                                        {"XDG_CONFIG_HOME", home + "/.config"},
                                                                        {"DBUS_SESSION_BUS_ADDRESS", busAddress()}});
  EXPECT_TRUE(showsCover()) << atLogin.output();
  EXPECT_TRUE(becomes("\"enabled\": true"));
}

TEST_F(Login, AnEntryThatTheUserHasHiddenCountsAsOff) {
  start(solidOff);
  support::writeFile(entry(), "[Desktop Entry]\nType=Application\nName=Quillfade\nExec=quillfade\nHidden=true\n");
  EXPECT_FALSE(isChecked());
  choose();
  EXPECT_TRUE(support::waitUntil([&] { return !support::readFile(entry()).contains("Hidden=true"); }));
  EXPECT_TRUE(isChecked());
}

TEST_F(Login, ARefusedChangeIsReportedInAnAlertWithTheReason) {
  start(solidOff);
  // Not a directory, so nothing can be written into it.
  support::writeFile(entry().parent_path(), "");
  choose();
  const auto alert = waitForDialog();
  ASSERT_TRUE(alert);
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *alert; }));
  EXPECT_TRUE(showsText(*alert));
  keepPicture(client_.screenshot(), "alert");
  input_.press(XK_Return);
  EXPECT_TRUE(support::waitUntil([&] { return !client_.isViewable(*alert); }));
  EXPECT_FALSE(isChecked());
}

}  // namespace
}  // namespace endtoend
