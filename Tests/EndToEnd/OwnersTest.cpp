// Whose windows count as a conferencing program's: large floating windows, with every kind of name.

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::ContainsRegex;

class Owners : public DrivenDesktop {
 protected:
  // A window that no window manager places, over more than a third of the screen.
  xcb_window_t createFloatingWindow(const std::string& className) {
    const auto window = client_.createWindow({.frame = {100, 100, 800, 500}});
    client_.setClass(window, className, className);
    client_.sync();
    return window;
  }
  static auto saysOf(xcb_window_t window, const std::string& owner, const std::string& judgement) {
    return ContainsRegex("\n" + std::to_string(window) + " +" + owner + " +101 +[^\n]* " + judgement);
  }
};

TEST_F(Owners, ConferencingProgramsAreKnownByTheirNames) {
  start(solidOff);
  for (const auto& [name, owner] :
       std::vector<std::pair<std::string, std::string>>{{"zoom", "us.zoom.xos"},
                                                        {"Slack", "com.tinyspeck.slackmacgap"},
                                                        {"Skype", "com.skype.skype"},
                                                        {"teams-for-linux", "com.microsoft.teams2"},
                                                        {"Microsoft Teams - Preview", "com.microsoft.teams"},
                                                        {"Webex", "com.cisco.webexmeetingsapp"},
                                                        {"discord", "com.hnc.Discord"}}) {
    const auto window = createFloatingWindow(name);
    EXPECT_THAT(run({"windows"}).output,
                saysOf(window, owner, "left out +large floating window of a conferencing program"));
    client_.destroy(window);
  }
}

TEST_F(Owners, AProgramWhoseNameHoldsThatOfAConferencingProgramIsNotTakenForOne) {
  start(solidOff);
  for (const std::string name :
       {"XZoom", "Zoomify", "Slackpkg", "SkypeCall", "TeamSpeak", "WebExport", "Discordance"}) {
    const auto window = createFloatingWindow(name);
    EXPECT_THAT(run({"windows"}).output, saysOf(window, name, "kept +not a large overlay"));
    client_.destroy(window);
  }
}

TEST_F(Owners, AUsersRuleFindsSuchAProgramByTheNameThatTheListShows) {
  start(solidOff);
  support::writeFile(quillfade().settingsPath().parent_path() / "rules.json", R"({"alwaysExclude": ["XZoom"]})");
  EXPECT_THAT(run({"windows"}).output,
              saysOf(createFloatingWindow("XZoom"), "XZoom", "left out +left out by your rule"));
}

}  // namespace
}  // namespace endtoend
