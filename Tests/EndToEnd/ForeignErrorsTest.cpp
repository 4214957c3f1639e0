// Each of the program's requests about other programs' windows fails in turn, as if the window had gone a moment
// earlier.

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Support/TamperingProxy.h"

namespace endtoend {
namespace {

class ForeignErrors : public DrivenDesktop {
 protected:
  static constexpr const char* complaint = "The display server refused";
  static constexpr int mostTurns = 3;
  static constexpr const char* liveOn = R"({"enabled": true, "outline": false, "region": "{{200, 300}, {400, 200}}"})";

  // Everything that makes the program ask about windows: they appear, change in every way, are listed, and go.
  void stir() {
    const auto window =
        client_.createWindow({.frame = {260, 340, 300, 200}, .color = 0xff556677, .overrideRedirect = false});
    client_.setClass(window, "editor", "Editor");
    const auto pane = client_.createWindow({.frame = {0, 0, 1280, 800}, .color = 0x10101010, .depth = 32});
    client_.setInputShape(pane, {});
    ASSERT_NO_FATAL_FAILURE(listWindows());
    const xcb_rectangle_t part{10, 10, 200, 150};
    client_.setBoundingShape(window, {&part, 1});
    client_.setFrame(window, {280, 360, 320, 180});
    client_.raise(window);
    client_.fill(window, {0, 0, 100, 100}, 0xff998877);
    client_.setText(window, "WM_NAME", "STRING", "another name");
    client_.unmap(pane);
    client_.map(pane);
    const auto inner = client_.createWindow({.frame = {600, 300, 100, 80}, .overrideRedirect = false});
    client_.sync();
    xcb_reparent_window(client_.connection(), inner, window, 5, 5);
    ASSERT_NO_FATAL_FAILURE(listWindows());
    // The covers are made anew, and with them all that they know about windows.
    ASSERT_EQ(run({"toggle"}).status, 0);
    ASSERT_EQ(run({"toggle"}).status, 0);
    client_.destroy(pane);
    client_.destroy(window);
    ASSERT_NO_FATAL_FAILURE(listWindows());
  }
  void listWindows() {
    client_.sync();
    const Answer answer = run({"windows"});
    ASSERT_EQ(answer.status, 0) << answer.output;
  }
};

TEST_F(ForeignErrors, OfEveryKindOfRequestLeaveTheProgramRunning) {
  support::TamperingProxy proxy(server_.display(), client_.connection());
  auto& program = start(liveOn, {{"DISPLAY", proxy.display()}});
  proxy.forgetSeen();
  ASSERT_NO_FATAL_FAILURE(stir());
  const auto kinds = proxy.seen();
  EXPECT_GE(kinds.size(), 10U) << "The program asks about windows in few ways: does the proxy see its requests?";
  std::string tried;
  for (const auto& [kind, count] : kinds) {
    const std::string name = std::to_string(kind.major) + "." + std::to_string(kind.minor);
    SCOPED_TRACE("request " + name);
    proxy.forgetSeen();
    proxy.tamperWith(kind);
    // Some requests are made once, or not at all when another request reveals first that the window has gone.
    for (int turn = 0; turn < mostTurns && proxy.seen()[kind] == 0; ++turn) ASSERT_NO_FATAL_FAILURE(stir());
    proxy.tamperWith(std::nullopt);
    EXPECT_GT(proxy.seen()[kind], 0U) << "No request of this kind was made again.";
    ASSERT_TRUE(program.process().isRunning()) << program.process().output();
    EXPECT_THAT(program.process().output(), testing::Not(testing::HasSubstr(complaint)));
    tried += " " + name + " (" + std::to_string(proxy.seen()[kind]) + ")";
  }
  RecordProperty("kinds", tried);
  // What comes afterwards is shown as usual.
  const auto window = client_.createWindow({.frame = {250, 350, 100, 100}, .color = 0xff00ff00});
  EXPECT_TRUE(
      shows([](const Picture& screen) { return screen.count(0x00ff00, storedArea) == std::size_t{100} * 100; }));
  client_.destroy(window);
  client_.sync();
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(0x00ff00, storedArea) == 0; }));
}

}  // namespace
}  // namespace endtoend
