// A session manager that ends the program with the session, and starts it again with the next one.

#include <filesystem>

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

// A session of this one program, saved at its end.
const std::string sessionSettings = R"(<?xml version="1.0" encoding="UTF-8"?>
<channel name="xfce4-session" version="1.0">
  <property name="general" type="empty">
    <property name="FailsafeSessionName" type="string" value="Failsafe"/>
    <property name="SaveOnExit" type="bool" value="true"/>
    <property name="PromptOnLogout" type="bool" value="false"/>
  </property>
  <property name="sessions" type="empty">
    <property name="Failsafe" type="empty">
      <property name="IsFailsafe" type="bool" value="true"/>
      <property name="Count" type="int" value="1"/>
      <property name="Client0_Command" type="array"><value type="string" value=")" QUILLFADE_EXECUTABLE
                                    R"("/></property>
      <property name="Client0_PerScreen" type="bool" value="false"/>
    </property>
  </property>
  <property name="startup" type="empty">
    <property name="ssh-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
    <property name="gpg-agent" type="empty"><property name="enabled" type="bool" value="false"/></property>
  </property>
</channel>
)";

class SessionManager : public DrivenDesktop {
 protected:
  explicit SessionManager(const support::XServerOptions& server = {}) : DrivenDesktop(server) {
    support::writeFile(home_.configuration() / "xfce4/xfconf/xfce-perchannel-xml/xfce4-session.xml", sessionSettings);
    environment_ = home_.environment(server_.display());
    environment_["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
    // Leaves out what the machine starts with every session.
    environment_["XDG_CONFIG_DIRS"] = home_.path().string();
    // The bus starts the service that reads the settings, in the bus's own environment.
    support::runToEnd({"dbus-update-activation-environment", "XDG_CONFIG_HOME", "XDG_CONFIG_DIRS", "HOME", "DISPLAY"},
                      environment_);
  }
  void logIn() {
    session_.emplace(std::vector<std::string>{"xfce4-session"}, environment_);
    ASSERT_TRUE(support::waitUntil([&] { return run({"status"}).status == 0; })) << session_->output();
  }
  void logOut() {
    support::runToEnd({"xfce4-session-logout", "--logout"}, environment_);
    ASSERT_EQ(session_->waitForExit(std::chrono::seconds(30)), 0) << session_->output();
    EXPECT_TRUE(support::waitUntil([&] { return run({"status"}) == (Answer{1, "Quillfade is not running.\n"}); }));
  }
  [[nodiscard]] std::string savedSession() const {
    std::string saved;
    for (const auto& file : std::filesystem::directory_iterator(home_.path() / ".cache/sessions")) {
      if (file.is_regular_file()) saved += support::readFile(file.path());
    }
    return saved;
  }

  support::PrivateHome home_;
  support::Environment environment_;
  std::optional<support::ChildProcess> session_;
};

TEST_F(SessionManager, RestoresTheProgramWithTheNextSession) {
  logIn();
  EXPECT_EQ(run({"style", "solid"}).status, 0);
  logOut();
  EXPECT_THAT(savedSession(), HasSubstr(QUILLFADE_EXECUTABLE ",-session,"));
  logIn();
  EXPECT_THAT(status(), HasSubstr("\"style\": \"solid\""));
  logOut();
}

class SessionManagerWithoutPermission : public SessionManager {
 protected:
  SessionManagerWithoutPermission() : SessionManager({.arguments = {"-extension", "Composite"}}) {}
};

TEST_F(SessionManagerWithoutPermission, EndsTheProgramWithoutAnsweringItsAlert) {
  logIn();
  const support::ChildProcess command({QUILLFADE_EXECUTABLE, "toggle"}, {{"DBUS_SESSION_BUS_ADDRESS", busAddress()}});
  ASSERT_TRUE(waitForDialog());
  logOut();
  logIn();
  EXPECT_THAT(status(), HasSubstr(R"("enabled": false, "style": "live")"));
  logOut();
}

}  // namespace
}  // namespace endtoend
