// What the program tells a user who starts it for the first time, and in which language.

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

std::size_t count(const std::string& text, const std::string& part) {
  std::size_t times = 0;
  for (auto at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++times;
  return times;
}

// Listens to what is sent to the notification service, which need not exist.
class FirstStart : public DrivenDesktop {
 protected:
  const std::string interface_ = "org.freedesktop.Notifications";

  FirstStart() {
    EXPECT_TRUE(support::waitUntil([&] { return heard().contains("NameAcquired"); })) << heard();
  }
  [[nodiscard]] support::Environment onBus() { return {{"DBUS_SESSION_BUS_ADDRESS", busAddress()}}; }
  [[nodiscard]] std::string heard() const { return monitor_.output(); }
  [[nodiscard]] std::size_t notifications() const { return count(heard(), "member=Notify"); }
  // Waits until everything sent so far has been heard.
  void hearEverything() {
    const std::size_t before = count(heard(), "member=GetCapabilities");
    support::ChildProcess marker({"dbus-send", "--session", "--type=method_call", "--dest=" + interface_,
                                  "/org/freedesktop/Notifications", interface_ + ".GetCapabilities"},
                                 onBus());
    EXPECT_TRUE(support::waitUntil([&] { return count(heard(), "member=GetCapabilities") > before; })) << heard();
  }

 private:
  support::ChildProcess monitor_{{"dbus-monitor", "--session", "interface='" + interface_ + "'"}, onBus()};
};

TEST_F(FirstStart, AMessageTellsWhereTheIconIsAndWhatTheKeyDoesAndNeverComesAgain) {
  start(solidOff);
  hearEverything();
  EXPECT_EQ(notifications(), 1U) << heard();
  EXPECT_THAT(heard(), HasSubstr("Quillfade is in the tray"));
  EXPECT_THAT(heard(), HasSubstr("This key hides annotations, or shows them again: Control+Alt+Super+D"));
  quillfade().restart();
  ASSERT_TRUE(support::waitUntil([&] { return run({"status"}).status == 0; }));
  hearEverything();
  EXPECT_EQ(notifications(), 1U) << heard();
}

TEST_F(FirstStart, ItSpeaksTheUsersLanguage) {
  start(solidOff, {{"LANGUAGE", "de"}});
  hearEverything();
  EXPECT_THAT(heard(), HasSubstr("Quillfade ist in der Symbolleiste"));
  EXPECT_THAT(heard(), HasSubstr("Suchen Sie den Bleistift"));
}

}  // namespace
}  // namespace endtoend
