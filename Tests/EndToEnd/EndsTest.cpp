// However the program ends, nothing of it remains on the screen, no key or pointer stays grabbed, and no setting is
// lost.

#include <xcb/composite.h>

#include <cstdlib>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/Support/Reply.h"

namespace endtoend {
namespace {

class Ends : public DrivenDesktop {
 protected:
  static constexpr const char* liveOn = R"({"enabled": true, "outline": true, "region": "{{200, 300}, {400, 200}}"})";

  // Every resource of the program is gone: windows, redirection, and the grabs of the four keys, the keyboard and the
  // pointer.
  void expectNothingLeft() {
    EXPECT_TRUE(support::waitUntil([&] { return client_.children(client_.root()) == std::vector{board_}; }))
        << "A window of the program is left.";
    EXPECT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == std::size_t{1280} * 800; }));
    EXPECT_TRUE(redirectionIsFree()) << "The screen is still redirected.";
    for (const auto key : std::initializer_list<support::KeySymbol>{XK_d, XK_p, XK_a, XK_f}) {
      EXPECT_TRUE(client_.grabKey(input_.keyCode(key), XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1 | XCB_MOD_MASK_4));
    }
    EXPECT_TRUE(client_.grabKeyboard());
    EXPECT_TRUE(client_.grabPointer());
  }

 private:
  // Redirected windows have a pixmap of their own that can be named; others have none.
  bool redirectionIsFree() {
    return support::waitUntil([&] {
      const auto pixmap = xcb_generate_id(client_.connection());
      const support::Reply<xcb_generic_error_t> refused(xcb_request_check(
          client_.connection(), xcb_composite_name_window_pixmap_checked(client_.connection(), board_, pixmap)));
      if (!refused) xcb_free_pixmap(client_.connection(), pixmap);
      return refused != nullptr;
    });
  }
};

class EndsBy : public Ends, public testing::WithParamInterface<int> {};

TEST_P(EndsBy, ASignalInTheMiddleOfASelection) {
  start(liveOn);
  ASSERT_TRUE(support::waitUntil([&] { return client_.children(client_.root()).size() > 1; }));
  ASSERT_EQ(run({"outline", "off"}).status, 0);
  ASSERT_EQ(run({"select-area"}).status, 0);
  ASSERT_TRUE(shows([](const Picture& screen) { return screen.count(boardColor) == 0; })) << "Nothing is dimmed.";
  input_.moveTo(100, 100);
  input_.buttonDown();
  input_.moveTo(300, 300);
  quillfade().process().signal(GetParam());
  const auto status = quillfade().process().waitForExit();
  input_.buttonUp();
  const bool isRequest = GetParam() == SIGTERM || GetParam() == SIGINT || GetParam() == SIGHUP;
  EXPECT_EQ(status, isRequest ? 0 : 128 + GetParam()) << quillfade().process().output();
  if (GetParam() == SIGSEGV || GetParam() == SIGBUS) {
    EXPECT_THAT(quillfade().process().output(),
                testing::HasSubstr("quillfade: Quillfade has crashed (signal " +
                                   std::string(GetParam() == SIGSEGV ? "11" : "07") + ");"));
  }
  expectNothingLeft();
  const std::string settings = support::readFile(quillfade().settingsPath());
  EXPECT_THAT(settings, testing::HasSubstr("\"outline\": false")) << "The last change was lost.";
  EXPECT_THAT(settings, testing::HasSubstr("{{200, 300}, {400, 200}}"));
}

INSTANTIATE_TEST_SUITE_P(Each, EndsBy, testing::Values(SIGTERM, SIGINT, SIGHUP, SIGKILL, SIGSEGV, SIGBUS, SIGABRT),
                         [](const auto& number) { return std::string(sigabbrev_np(number.param)); });

TEST_F(Ends, BySignalWhileSettingsAreWrittenLeavesAWholeFile) {
  for (int round = 0; round < 8; ++round) {
    start(solidOff);
    std::vector<std::unique_ptr<support::ChildProcess>> commands;
    for (int command = 0; command < 4; ++command) {
      commands.push_back(std::make_unique<support::ChildProcess>(
          std::vector<std::string>{QUILLFADE_EXECUTABLE, "outline", command % 2 == 0 ? "on" : "off"},
          support::Environment{{"DBUS_SESSION_BUS_ADDRESS", busAddress()}}));
    }
    (void)commands.at(static_cast<std::size_t>(round) % commands.size())->waitForExit();
    quillfade().process().signal(round % 2 == 0 ? SIGTERM : SIGKILL);
    ASSERT_TRUE(quillfade().process().waitForExit());
    for (auto& command : commands) EXPECT_TRUE(command->waitForExit()) << "A command waits for a program that is gone.";
    const std::string settings = support::readFile(quillfade().settingsPath());
    EXPECT_THAT(settings, testing::StartsWith("{"));
    EXPECT_EQ(settings.find_last_not_of(" \n"), settings.rfind('}')) << settings;
    EXPECT_THAT(settings, testing::HasSubstr("{{200, 300}, {400, 200}}"));
  }
}

}  // namespace
}  // namespace endtoend
