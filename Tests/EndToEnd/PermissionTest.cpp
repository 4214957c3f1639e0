// A display on which nothing can be captured: the alert, and what follows each answer.

#include <algorithm>
#include <cstdlib>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Support/Reply.h"

namespace endtoend {
namespace {

using testing::HasSubstr;
using testing::Not;

class PermissionRefused : public DrivenDesktop {
 protected:
  PermissionRefused() : PermissionRefused({.arguments = {"-extension", "Composite"}}) {}
  explicit PermissionRefused(const support::XServerOptions& server) : DrivenDesktop(server) {}

  // Sends a command that asks for permission, and waits for the alert. The command ends with the answer.
  void ask(const std::vector<std::string>& words) {
    std::vector<std::string> command{QUILLFADE_EXECUTABLE};
    command.insert(command.end(), words.begin(), words.end());
    command_.emplace(command, support::Environment{{"DBUS_SESSION_BUS_ADDRESS", busAddress()}});
    alert_ = waitForDialog();
    ASSERT_TRUE(alert_) << "There is no alert.";
    ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *alert_; })) << "The alert takes no keys.";
    EXPECT_TRUE(command_->isRunning());
    EXPECT_TRUE(support::waitUntil([&] { return command_->output() == question_; })) << command_->output();
  }
  void answer(const std::vector<support::KeySymbol>& keys, int status = 0) {
    for (const auto key : keys) input_.press(key);
    EXPECT_EQ(command_->waitForExit(), status) << command_->output();
    EXPECT_TRUE(support::waitUntil([&] { return !client_.isViewable(*alert_); }));
  }
  // How many of the program's dialogs are on the screen.
  [[nodiscard]] std::ptrdiff_t dialogs() {
    return std::ranges::count_if(client_.children(client_.root()), [&](xcb_window_t window) {
      const auto types = client_.numbers(window, "_NET_WM_WINDOW_TYPE");
      return client_.isViewable(window) && !types.empty() && types[0] == client_.atom("_NET_WM_WINDOW_TYPE_DIALOG");
    });
  }
  // A program of this name at the front of PATH, which leaves a trace.
  support::Environment withProgram(const std::string& name) {
    const auto program = directory_.path() / name;
    support::writeFile(program, "#!/bin/sh\necho \"$0 $*\" > " + trace().string() + "\n");
    std::filesystem::permissions(program, std::filesystem::perms::owner_all);
    const char* path = std::getenv("PATH");
    return {{"PATH", directory_.path().string() + ":" + (path ? path : "")}};
  }
  [[nodiscard]] std::filesystem::path trace() const { return directory_.path() / "trace"; }

  const std::string question_ = "Quillfade is asking a question on the screen and will continue once it is answered.\n";
  support::TemporaryDirectory directory_;
  std::optional<support::ChildProcess> command_;
  std::optional<xcb_window_t> alert_;
};

const std::string notCovered = R"({"enabled": false, "style": "live", "outline": true, "region": null})";

TEST_F(PermissionRefused, UseSolidCoverCovers) {
  start();
  ask({"toggle"});
  EXPECT_TRUE(showsText(*alert_));
  keepPicture(client_.screenshot(), "alert");
  answer({XK_Tab, XK_space});
  EXPECT_THAT(status(), HasSubstr(R"("enabled": true, "style": "solid")"));
  EXPECT_THAT(status(), HasSubstr(R"("width": 1280, "height": 800)"));
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; }));
}

TEST_F(PermissionRefused, OpenSystemSettingsOpensThemSaysWhatIsMissingAndChangesNothing) {
  auto environment = withProgram("mate-control-center");
  environment["XDG_CURRENT_DESKTOP"] = "MATE";
  start({}, environment);
  ask({"toggle"});
  const xcb_window_t alert = *alert_;
  answer({XK_Return}, 1);
  EXPECT_THAT(status(), HasSubstr(notCovered));
  EXPECT_EQ(command_->output(),
            question_ + "The live style has no permission; the system settings have been opened.\n");
  EXPECT_TRUE(support::waitUntil([&] { return std::filesystem::exists(trace()); })) << "No settings were opened.";
  const auto explanation = waitForDialog();
  ASSERT_TRUE(explanation);
  EXPECT_NE(*explanation, alert);
  EXPECT_TRUE(showsText(*explanation));
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *explanation; }));
  input_.press(XK_Escape);
  EXPECT_TRUE(showsNoCover());
}

TEST_F(PermissionRefused, WithoutASettingsProgramASentenceSaysWhatIsMissing) {
  start({}, {{"PATH", "/nonexistent"}});
  ask({"toggle"});
  const xcb_window_t alert = *alert_;
  answer({XK_Return}, 1);
  EXPECT_THAT(status(), HasSubstr(notCovered));
  const auto explanation = waitForDialog();
  ASSERT_TRUE(explanation);
  EXPECT_NE(*explanation, alert);
  keepPicture(client_.screenshot(), "explanation");
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *explanation; }));
  input_.press(XK_Escape);
  EXPECT_TRUE(support::waitUntil([&] { return !client_.isViewable(*explanation); }));
  EXPECT_EQ(run({"status"}).status, 0);
}

TEST_F(PermissionRefused, EscapeMeansTheSolidCover) {
  start();
  ask({"whole-screen"});
  answer({XK_Escape});
  EXPECT_THAT(status(), HasSubstr(R"("enabled": true, "style": "solid")"));
}

TEST_F(PermissionRefused, TheKeyShowsTheAlertAboveEverythingUnderAWindowManagerToo) {
  const support::WindowManager manager(server_.display());
  start();
  const auto editor = client_.createWindow({.frame = {0, 0, 1280, 780}, .overrideRedirect = false});
  client_.setClass(editor, "editor", "Editor");
  ASSERT_TRUE(support::waitUntil([&] { return client_.isViewable(editor); }));
  press(XK_d);
  alert_ = waitForDialog();
  ASSERT_TRUE(alert_);
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *alert_; }));
  EXPECT_TRUE(showsText(*alert_)) << "Something lies above the alert.";
  keepPicture(client_.screenshot(), "alert");
  input_.press(XK_Tab);
  input_.press(XK_space);
  EXPECT_TRUE(becomes(R"("enabled": true, "style": "solid")"));
}

TEST_F(PermissionRefused, OtherCommandsAreCarriedOutWhileTheAlertWaits) {
  start();
  ask({"style", "live"});
  EXPECT_EQ(run({"outline", "off"}), (Answer{0, ""}));
  EXPECT_THAT(status(), HasSubstr("\"outline\": false"));
  answer({XK_Tab, XK_space}, 1);
  EXPECT_THAT(command_->output(), HasSubstr("The live style has no permission; the solid cover has been chosen.\n"));
  EXPECT_THAT(status(), HasSubstr("\"style\": \"solid\""));
}

TEST_F(PermissionRefused, AFurtherCommandEndsAtOnceAndShowsNoSecondAlert) {
  start();
  ask({"toggle"});
  EXPECT_EQ(run({"toggle"}), (Answer{1, "Quillfade is waiting for an answer on the screen: answer that first.\n"}));
  press(XK_d);
  EXPECT_EQ(run({"status"}).status, 0);
  EXPECT_EQ(dialogs(), 1);
  answer({XK_Tab, XK_space});
  EXPECT_THAT(status(), HasSubstr(R"("enabled": true, "style": "solid")"));
  EXPECT_EQ(dialogs(), 0);
}

// Qt cannot paint there.
class OnAScreenOf256Colours : public PermissionRefused {
 protected:
  OnAScreenOf256Colours() : PermissionRefused(support::XServerOptions{.depth = 8}) {}

  // How many pixels of the window are black, by the screen's own definition; none if the window has colours that nobody
  // sees.
  std::ptrdiff_t blackPixels(xcb_window_t window) {
    const auto frame = client_.frame(window).value_or(PixelRect{});
    xcb_connection_t* c = client_.connection();
    const auto cookie = xcb_get_image(c, XCB_IMAGE_FORMAT_Z_PIXMAP, client_.root(), static_cast<std::int16_t>(frame.x),
                                      static_cast<std::int16_t>(frame.y), static_cast<std::uint16_t>(frame.width),
                                      static_cast<std::uint16_t>(frame.height), ~0U);
    const auto reply = support::waitForReply(c, xcb_get_image_reply, cookie);
    const auto attributes =
        support::waitForReply(c, xcb_get_window_attributes_reply, xcb_get_window_attributes(c, window));
    const xcb_screen_t& screen = *xcb_setup_roots_iterator(xcb_get_setup(c)).data;
    if (!reply || !attributes || attributes->colormap != screen.default_colormap) return 0;
    const std::uint8_t* pixels = xcb_get_image_data(reply.get());
    const auto black = screen.black_pixel;
    return std::count(pixels, pixels + xcb_get_image_data_length(reply.get()), black);
  }
};

TEST_F(OnAScreenOf256Colours, TheAlertCanBeReadAndAnswered) {
  start();
  ask({"toggle"});
  const auto frame = client_.frame(*alert_).value_or(PixelRect{});
  const auto isReadable = [&] {
    const auto black = blackPixels(*alert_);
    return black > 500 && black < std::ptrdiff_t{frame.width} * frame.height / 2;
  };
  EXPECT_TRUE(support::waitUntil(isReadable)) << blackPixels(*alert_);
  EXPECT_THAT(quillfade().process().output(), testing::Not(HasSubstr("QPainter")));
  answer({XK_Tab, XK_space});
  EXPECT_THAT(status(), HasSubstr("\"style\": \"solid\""));
}

TEST_F(PermissionRefused, TheSolidCoverNeverAsks) {
  start(solidOff);
  for (const auto& words : std::vector<std::vector<std::string>>{{"toggle"}, {"toggle"}, {"whole-screen"}}) {
    EXPECT_EQ(run(words), (Answer{0, ""}));
  }
  EXPECT_THAT(status(), HasSubstr("\"enabled\": true"));
}

TEST_F(PermissionRefused, TheListOfWindowsIsAFailureWithAReason) {
  start();
  const Answer answer = run({"windows"});
  EXPECT_EQ(answer.status, 1);
  EXPECT_THAT(answer.output, HasSubstr("Composite"));
}

// There nothing is copied, so that less is needed than elsewhere.
class InAWaylandSession : public PermissionRefused {
 protected:
  const support::Environment session_{{"XDG_SESSION_TYPE", "wayland"}, {"WAYLAND_DISPLAY", "wayland-0"}};
};

TEST_F(InAWaylandSession, TheLiveStyleIsServedAndSaysThatItSeesNoInk) {
  start({}, session_);
  EXPECT_EQ(run({"toggle"}), (Answer{0, ""}));
  EXPECT_THAT(status(), HasSubstr(R"("enabled": true, "style": "live")"));
  EXPECT_TRUE(becomes(R"("note": "no ink window can be seen here)"));
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.at(640, 400) == boardColor; }));
  EXPECT_THAT(run({"windows"}).output, HasSubstr("Windows of Wayland programs are not on this list"));
  EXPECT_EQ(run({"toggle"}).status, 0);
  EXPECT_THAT(status(), Not(HasSubstr("note")));
}

TEST_F(InAWaylandSession, TheSolidCoverStillWorks) {
  start({}, session_);
  EXPECT_EQ(run({"style", "solid"}).status, 0);
  EXPECT_EQ(run({"whole-screen"}).status, 0);
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; }));
}

TEST_F(InAWaylandSession, WithoutAnXServerTheProgramEndsWithTheSentence) {
  const support::PrivateHome home;
  auto environment = home.environment("");
  for (const auto& [name, value] : session_) environment[name] = value;
  support::ChildProcess program({QUILLFADE_EXECUTABLE}, environment);
  EXPECT_EQ(program.waitForExit(), 1);
  EXPECT_THAT(program.output(), HasSubstr("This is a Wayland session without Xwayland, the X server that Quillfade "
                                          "needs there: install it, or log in to a session on X.Org."));
}

}  // namespace
}  // namespace endtoend
