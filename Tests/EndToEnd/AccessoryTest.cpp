// What window managers are told about the program's dialogs: they are not tasks of the user's.

#include <algorithm>

#include "Tests/EndToEnd/DrivenDesktop.h"
#include "Tests/EndToEnd/MenuUser.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"

namespace endtoend {
namespace {

using Kind = support::WindowManager::Kind;

class Accessory : public DrivenDesktop, public testing::WithParamInterface<Kind> {
 protected:
  // Nothing can be captured here, so the program asks.
  Accessory() : DrivenDesktop({.arguments = {"-extension", "Composite"}}) {}

  std::string busAddress() override { return qt::busAddress(); }

  // A window manager keeps the states of the windows that it manages; task bars, pagers and switchers read them there.
  [[nodiscard]] bool isOffTaskLists(xcb_window_t window) {
    return support::waitUntil([&] {
      const auto managed = client_.numbers(client_.root(), "_NET_CLIENT_LIST");
      const auto states = client_.numbers(window, "_NET_WM_STATE");
      const auto has = [&](const char* state) { return std::ranges::count(states, client_.atom(state)) == 1; };
      return std::ranges::count(managed, window) == 1 && has("_NET_WM_STATE_SKIP_TASKBAR") &&
             has("_NET_WM_STATE_SKIP_PAGER") && has("_NET_WM_STATE_ABOVE");
    });
  }
  // Asks as a window asks its manager: by its functions and by the buttons of its title bar.
  [[nodiscard]] bool canBeMinimised(xcb_window_t window) {
    constexpr std::uint32_t minimiseFunction = 0x8;
    constexpr std::uint32_t minimiseButton = 0x20;
    const auto hints = client_.numbers(window, "_MOTIF_WM_HINTS");
    return hints.size() < 3 || (hints[1] & minimiseFunction) != 0 || (hints[2] & minimiseButton) != 0;
  }
  [[nodiscard]] bool closes(xcb_window_t window) {
    return support::waitUntil([&] { return focusedWindow() == window; }) &&
           (input_.press(XK_Escape), support::waitUntil([&] { return !client_.isViewable(window); }));
  }
};

TEST_P(Accessory, KeepsItsDialogsOffTheTaskLists) {
  const support::WindowManager manager(server_.display(), GetParam());
  start({}, {{"PATH", "/nonexistent"}});
  MenuUser user;
  user.choose("About Quillfade");
  const auto about = waitForDialog();
  ASSERT_TRUE(about);
  EXPECT_TRUE(isOffTaskLists(*about));
  EXPECT_FALSE(canBeMinimised(*about)) << "Nothing would lead back to it.";
  ASSERT_TRUE(closes(*about));
  press(XK_d);
  const auto alert = waitForDialog();
  ASSERT_TRUE(alert);
  EXPECT_TRUE(isOffTaskLists(*alert));
  EXPECT_FALSE(canBeMinimised(*alert)) << "Nothing would lead back to it.";
  ASSERT_TRUE(support::waitUntil([&] { return focusedWindow() == *alert; }));
  input_.press(XK_Return);
  ASSERT_TRUE(support::waitUntil([&] { return !client_.isViewable(*alert); }));
  const auto explanation = waitForDialog();
  ASSERT_TRUE(explanation);
  EXPECT_TRUE(isOffTaskLists(*explanation));
  EXPECT_FALSE(canBeMinimised(*explanation)) << "Nothing would lead back to it.";
}

INSTANTIATE_TEST_SUITE_P(Each, Accessory, testing::Values(Kind::openbox, Kind::xfwm4),
                         [](const auto& manager) { return manager.param == Kind::openbox ? "Openbox" : "Xfwm4"; });

}  // namespace
}  // namespace endtoend
