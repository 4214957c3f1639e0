// The four key combinations, pressed while another program has the keyboard.

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Support/Reply.h"

namespace endtoend {
namespace {

using std::chrono::milliseconds;

class Keys : public DrivenDesktop {
 protected:
  Keys() {
    editor_ = client_.createWindow({.frame = {900, 100, 200, 100}, .color = 0x00ff00});
    client_.selectInput(editor_, XCB_EVENT_MASK_KEY_PRESS);
    focusEditor();
  }
  void focusEditor() {
    xcb_set_input_focus(client_.connection(), XCB_INPUT_FOCUS_PARENT, editor_, XCB_CURRENT_TIME);
    client_.sync();
  }
  // Which locks are on, according to the server.
  [[nodiscard]] int locks() {
    const auto reply = support::waitForReply(client_.connection(), xcb_query_pointer_reply,
                                             xcb_query_pointer(client_.connection(), client_.root()));
    return reply ? reply->mask & (XCB_MOD_MASK_LOCK | XCB_MOD_MASK_2) : 0;
  }

  xcb_window_t editor_ = XCB_NONE;
};

TEST_F(Keys, DHidesAnnotationsAndShowsThemAgain) {
  start(solidOff);
  press(XK_d);
  EXPECT_TRUE(showsCover());
  press(XK_d);
  EXPECT_TRUE(showsNoCover());
  EXPECT_EQ(focusedWindow(), editor_) << "The editor keeps the keyboard.";
}

TEST_F(Keys, DHidesAnnotationsBehindTheLiveCover) {
  auto& program = start();
  press(XK_d);
  EXPECT_TRUE(program.waitForMessage("first live frame received")) << program.process().output();
  EXPECT_EQ(program.countMessages("show region=1280x800 at 0,0 permission=true"), 1U);
  press(XK_d);
  EXPECT_TRUE(program.waitForMessage("hide"));
}

TEST_F(Keys, TheyWorkWhateverLocksAreOn) {
  start(solidOff);
  for (const support::KeySymbol lock :
       std::initializer_list<support::KeySymbol>{XK_Num_Lock, XK_Caps_Lock, XK_Num_Lock}) {
    const int before = locks();
    input_.press(lock);
    ASSERT_TRUE(support::waitUntil([&] { return locks() != before; })) << "The lock does not change.";
    press(XK_d);
    EXPECT_TRUE(showsCover()) << "Locks: " << locks();
    press(XK_d);
    EXPECT_TRUE(showsNoCover()) << "Locks: " << locks();
  }
  EXPECT_EQ(locks(), XCB_MOD_MASK_LOCK);
}

TEST_F(Keys, PTakesTheCoverAwayForFiveSeconds) {
  start(solidOn);
  ASSERT_TRUE(showsCover());
  const auto pressed = std::chrono::steady_clock::now();
  press(XK_p);
  ASSERT_TRUE(showsNoCover());
  EXPECT_FALSE(
      shows([](const Picture& screen) { return screen.count(boardColor, storedArea) == 0; },
            milliseconds(4700) - std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - pressed)));
  EXPECT_TRUE(showsCover());
}

TEST_F(Keys, AStartsASelectionThatEscapeEnds) {
  start(solidOff);
  press(XK_a);
  ASSERT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; })) << "The screen is dimmed.";
  EXPECT_TRUE(support::waitUntil([&] { return focusedWindow() != editor_; }));
  input_.press(XK_Escape);
  EXPECT_TRUE(showsNoCover());
  EXPECT_TRUE(support::waitUntil([&] { return focusedWindow() == editor_; })) << "The editor has the keyboard again.";
}

TEST_F(Keys, FCoversTheWholeScreen) {
  auto& program = start(R"({"style": 1, "outline": false})");
  press(XK_f);
  EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(screen.at(0, 0)) == std::size_t{1280} * 800; }));
  EXPECT_TRUE(
      support::waitUntil([&] { return support::readFile(program.settingsPath()).contains("{{0, 0}, {1280, 800}}"); }));
}

TEST_F(Keys, ACombinationHeldByAnotherProgramLeavesTheOthersWorking) {
  const auto all = static_cast<std::uint16_t>(XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4);
  ASSERT_TRUE(client_.grabKey(input_.keyCode(XK_d), all));
  start(solidOff);
  press(XK_d);
  EXPECT_TRUE(client_.waitForEvent(XCB_KEY_PRESS, support::defaultDeadline)) << "It is still the other program's.";
  press(XK_f);
  EXPECT_TRUE(becomes("\"enabled\": true"));
  EXPECT_EQ(run({"toggle"}), (Answer{0, ""}));
  EXPECT_TRUE(becomes("\"enabled\": false"));
}

TEST_F(Keys, ACombinationThatIsLostWhenTheModifiersChangeIsReportedAsTaken) {
  start(solidOff);
  const std::string bound = "Control+Alt+Super+D  toggle        bound\n";
  EXPECT_THAT(run({"keys"}).output, testing::HasSubstr(bound));
  ASSERT_TRUE(client_.grabKey(input_.keyCode(XK_d), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_3));
  input_.moveSuperTo(3);
  EXPECT_TRUE(support::waitUntil([&] {
    const std::string keys = run({"keys"}).output;
    return keys.contains("Control+Alt+Super+D  toggle        taken by another program\n") &&
           keys.contains("Control+Alt+Super+F  whole-screen  bound\n");
  })) << run({"keys"}).output;
  input_.moveSuperTo(4);
  EXPECT_TRUE(support::waitUntil([&] { return run({"keys"}).output.contains(bound); }));
}

}  // namespace
}  // namespace endtoend
