#include "Platform/Linux/Scene/Identity.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <ostream>

namespace platform::linux::scene {
namespace {

constexpr std::array monitors{xcb::PixelRect{0, 0, 1280, 800}, xcb::PixelRect{1280, 0, 1920, 1080}};
constexpr xcb::PixelRect wholeMonitor{0, 0, 1280, 800};

struct OwnerCase {
  std::string instanceName;
  std::string className;
  std::string processName;
  std::optional<std::string> owner;
};

void PrintTo(const OwnerCase& value, std::ostream* out) { *out << value.instanceName << " / " << value.className; }

class Owner : public testing::TestWithParam<OwnerCase> {};

TEST_P(Owner, IsTheProgramsWellKnownIdentifierOrItsClass) {
  WindowProperties window;
  window.instanceName = GetParam().instanceName;
  window.className = GetParam().className;
  window.processName = GetParam().processName;
  EXPECT_EQ(ownerIdentifier(window), GetParam().owner);
}

INSTANTIATE_TEST_SUITE_P(
    Conferencing, Owner,
    testing::Values(OwnerCase{"zoom", "zoom", "", "us.zoom.xos"}, OwnerCase{"zoom ", "zoom ", "", "us.zoom.xos"},
                    OwnerCase{"", "", "zoom", "us.zoom.xos"},
                    OwnerCase{"slack", "Slack", "", "com.tinyspeck.slackmacgap"},
                    OwnerCase{"teams-for-linux", "teams-for-linux", "", "com.microsoft.teams2"},
                    OwnerCase{"microsoft teams - preview", "Microsoft Teams - Preview", "", "com.microsoft.teams"},
                    OwnerCase{"Webex", "Webex", "", "com.cisco.webexmeetingsapp"},
                    OwnerCase{"", "", "CiscoCollabHost", "com.cisco.webexmeetingsapp"},
                    OwnerCase{"discord", "discord", "", "com.hnc.Discord"},
                    OwnerCase{"crx", "SLACK", "", "com.tinyspeck.slackmacgap"},
                    OwnerCase{"teams for linux", "Teams for Linux", "", "com.microsoft.teams2"},
                    OwnerCase{"skype", "Skype", "", "com.skype.skype"},
                    OwnerCase{"", "", "skypeforlinux", "com.skype.skype"},
                    OwnerCase{"", "us.zoom.Zoom", "", "us.zoom.xos"},
                    OwnerCase{"", "com.slack.Slack", "", "com.tinyspeck.slackmacgap"},
                    OwnerCase{"", "com.discordapp.Discord", "", "com.hnc.Discord"}));

// The rules take any identifier that contains a conferencing program's name for that program's.
INSTANTIATE_TEST_SUITE_P(ProgramsWhoseNameHoldsAConferencingProgramsName, Owner,
                         testing::Values(OwnerCase{"xzoom", "XZoom", "", std::nullopt},
                                         OwnerCase{"", "", "xzoom", std::nullopt},
                                         OwnerCase{"zoomify", "Zoomify", "", std::nullopt},
                                         OwnerCase{"TeamSpeak", "TeamSpeak", "", std::nullopt},
                                         OwnerCase{"", "com.teamspeak.TeamSpeak", "", std::nullopt},
                                         OwnerCase{"slackpkg", "Slackpkg", "", std::nullopt},
                                         OwnerCase{"skypecall", "SkypeCall", "", std::nullopt},
                                         OwnerCase{"discordance", "Discordance", "", std::nullopt},
                                         OwnerCase{"webexport", "WebExport", "", std::nullopt},
                                         OwnerCase{"xzoom", "Magnifier", "", "Magnifier"}));

INSTANTIATE_TEST_SUITE_P(Others, Owner,
                         testing::Values(OwnerCase{"gromit-mpx", "Gromit-mpx", "", "Gromit-mpx"},
                                         OwnerCase{"navigator", "", "firefox", "navigator"},
                                         OwnerCase{" ", "\t", "xterm", "xterm"}, OwnerCase{"", "", "", std::nullopt},
                                         OwnerCase{"", "Caf\xE9", "", "Caf\xC3\xA9"},
                                         OwnerCase{"", "Caf\xC3\xA9", "", "Caf\xC3\xA9"}));

TEST(OwnerIdentifier, OfAnOwnWindowIsThisProgramWhateverItSays) {
  WindowProperties window;
  window.className = "zoom";
  window.isOwn = true;
  EXPECT_EQ(ownerIdentifier(window), "org.quillfade.Quillfade");
}

TEST(ValidUtf8, ReadsEachInvalidByteAsLatin1) {
  EXPECT_EQ(validUtf8("plain"), "plain");
  EXPECT_EQ(validUtf8("\xF0\x9F\x96\x8D"), "\xF0\x9F\x96\x8D");
  EXPECT_EQ(validUtf8("\xFF"), "\xC3\xBF");
  EXPECT_EQ(validUtf8("\x80"), "\xC2\x80");
  EXPECT_EQ(validUtf8("\xC0\xAF"), "\xC3\x80\xC2\xAF") << "an overlong form";
  EXPECT_EQ(validUtf8("\xED\xA0\x80"), "\xC3\xAD\xC2\xA0\xC2\x80") << "a surrogate";
  EXPECT_EQ(validUtf8("\xF4\x90\x80\x80"), "\xC3\xB4\xC2\x90\xC2\x80\xC2\x80") << "beyond the last code point";
  EXPECT_EQ(validUtf8("a\xE2\x82"), "a\xC3\xA2\xC2\x82") << "cut off";
  EXPECT_EQ(validUtf8("a\xE2\x82\xAC"), "a\xE2\x82\xAC");
}

TEST(CoversMonitor, TakesNineTenthsOfAnyMonitor) {
  EXPECT_TRUE(coversMonitor({0, 0, 1280, 799}, monitors));
  EXPECT_TRUE(coversMonitor({0, 0, 1280, 720}, monitors));
  EXPECT_FALSE(coversMonitor({0, 0, 1280, 719}, monitors));
  EXPECT_TRUE(coversMonitor({-100, -100, 4000, 2000}, monitors));
  EXPECT_TRUE(coversMonitor({1280, 0, 1920, 1080}, monitors));
  EXPECT_FALSE(coversMonitor({640, 0, 1280, 800}, monitors)) << "half of each";
  EXPECT_FALSE(coversMonitor({0, 0, 1280, 800}, {}));
  EXPECT_FALSE(coversMonitor({5000, 0, 1280, 800}, monitors));
}

struct LayerCase {
  std::string name;
  WindowProperties window;
  std::int64_t layer;
};

void PrintTo(const LayerCase& value, std::ostream* out) { *out << value.name; }

class Layer : public testing::TestWithParam<LayerCase> {};

TEST_P(Layer, FollowsFromTheWindowsProperties) {
  EXPECT_EQ(windowLayer(GetParam().window, monitors), GetParam().layer);
}

std::string layerCaseName(const testing::TestParamInfo<LayerCase>& info) { return info.param.name; }

// As gromit-mpx 1.4.3 presents itself on a screen of 1280 by 800, with and without window managers.
WindowProperties gromitMpx() {
  return {.instanceName = "gromit-mpx",
          .className = "Gromit-mpx",
          .types = {WindowType::normal},
          .state = {.isFullScreen = true},
          .hasEmptyInput = true,
          .frame = {0, 0, 1280, 799},
          .hasAlpha = true};
}

WindowProperties with(WindowProperties window, const std::function<void(WindowProperties&)>& change) {
  change(window);
  return window;
}

// An undecorated, see-through window as large as the monitor.
WindowProperties managedPane(std::string className) {
  return {.instanceName = className,
          .className = className,
          .types = {WindowType::normal},
          .frame = wholeMonitor,
          .isManaged = true,
          .hasAlpha = true};
}

WindowProperties unmanagedPane() { return {.frame = wholeMonitor, .hasAlpha = true}; }

INSTANTIATE_TEST_SUITE_P(
    Overlays, Layer,
    testing::Values(LayerCase{"GromitMpxWithACompositingManager", gromitMpx(), layers::overlay},
                    LayerCase{"GromitMpxShapedToItsStrokes", with(gromitMpx(), [](auto& w) { w.isShaped = true; }),
                              layers::overlay},
                    LayerCase{"GromitMpxBeneathARaisedWindow",
                              with(gromitMpx(), [](auto& w) { w.isBeneathOrdinaryWindows = true; }), layers::overlay},
                    LayerCase{"UnknownClickThroughPane", with(unmanagedPane(), [](auto& w) { w.hasEmptyInput = true; }),
                              layers::overlay},
                    LayerCase{"PaneAcrossAllMonitors",
                              with(unmanagedPane(),
                                   [](auto& w) {
                                     w.hasEmptyInput = true;
                                     w.frame = {0, 0, 3200, 1080};
                                   }),
                              layers::overlay},
                    LayerCase{"AnnotationsKeptAbove",
                              with(managedPane("Annotations"), [](auto& w) { w.state.isAbove = true; }),
                              layers::overlay},
                    LayerCase{"AnnotationsAsAUtilityWindow",
                              with(managedPane("Annotations"),
                                   [](auto& w) {
                                     w.state.isAbove = true;
                                     w.types = {WindowType::utility, WindowType::normal};
                                   }),
                              layers::overlay},
                    LayerCase{"FullScreenAnnotationProgramThatTakesThePointer",
                              with(managedPane("pensela"),
                                   [](auto& w) {
                                     w.state.isAbove = true;
                                     w.state.isFullScreen = true;
                                   }),
                              layers::overlay},
                    LayerCase{"FullScreenClickThroughPane",
                              with(managedPane("electron"),
                                   [](auto& w) {
                                     w.state.isFullScreen = true;
                                     w.hasEmptyInput = true;
                                   }),
                              layers::overlay},
                    LayerCase{"UnmanagedAnnotationProgramThatTakesThePointer",
                              with(unmanagedPane(), [](auto& w) { w.className = "Ardesia"; }), layers::overlay}),
    layerCaseName);

INSTANTIATE_TEST_SUITE_P(ConferencingPanes, Layer,
                         testing::Values(LayerCase{"NotKeptAbove", managedPane("zoom"), layers::floating},
                                         LayerCase{"FixedToTheScreensSizeAndMadeFullScreen",
                                                   with(managedPane("zoom"),
                                                        [](auto& w) {
                                                          w.state.isFullScreen = true;
                                                          w.hasFixedSize = true;
                                                        }),
                                                   layers::floating},
                                         LayerCase{"KeptAbove",
                                                   with(managedPane("slack"), [](auto& w) { w.state.isAbove = true; }),
                                                   layers::overlay}),
                         layerCaseName);

INSTANTIATE_TEST_SUITE_P(
    OrdinaryWindows, Layer,
    testing::Values(
        LayerCase{"Plain", {.frame = {10, 10, 400, 300}, .isManaged = true, .isDecorated = true}, layers::ordinary},
        LayerCase{"OpaqueFullScreen",
                  {.className = "zoom", .state = {.isFullScreen = true}, .frame = wholeMonitor, .isManaged = true},
                  layers::ordinary},
        LayerCase{"TranslucentFullScreen", with(managedPane("Alacritty"), [](auto& w) { w.state.isFullScreen = true; }),
                  layers::ordinary},
        LayerCase{"TranslucentMaximizedConferencing",
                  with(managedPane("Slack"), [](auto& w) { w.state.isMaximized = true; }), layers::ordinary},
        LayerCase{"TranslucentAndDecorated", with(managedPane("kitty"), [](auto& w) { w.isDecorated = true; }),
                  layers::ordinary},
        LayerCase{"MainWindowOfAnAnnotationProgram",
                  {.className = "openboard", .frame = wholeMonitor, .isManaged = true},
                  layers::ordinary},
        LayerCase{"TranslucentTerminalKeptAboveAndFullScreen",
                  with(managedPane("kitty"),
                       [](auto& w) {
                         w.state.isAbove = true;
                         w.state.isFullScreen = true;
                       }),
                  layers::floating},
        LayerCase{"OpaqueKeptAbove",
                  {.state = {.isAbove = true}, .frame = wholeMonitor, .isManaged = true},
                  layers::floating},
        LayerCase{"SmallPaletteOfAnAnnotationProgram",
                  {.className = "pensela",
                   .state = {.isAbove = true},
                   .frame = {0, 0, 90, 500},
                   .isManaged = true,
                   .hasAlpha = true},
                  layers::floating},
        LayerCase{
            "Toolbar", {.types = {WindowType::toolbar}, .frame = {0, 0, 300, 40}, .isManaged = true}, layers::floating},
        LayerCase{"KeptBelow", with(managedPane("Conky"), [](auto& w) { w.state.isBelow = true; }), layers::below}),
    layerCaseName);

// None of these may be taken for an overlay, however large and transparent it is.
LayerCase ofType(std::string name, WindowType type, std::int64_t layer) {
  return {std::move(name),
          with(unmanagedPane(),
               [&](auto& w) {
                 w.types = {type, WindowType::normal};
                 w.hasEmptyInput = true;
               }),
          layer};
}

INSTANTIATE_TEST_SUITE_P(
    TypedWindows, Layer,
    testing::Values(ofType("Desktop", WindowType::desktop, layers::below), ofType("Dock", WindowType::dock, 20),
                    ofType("Notification", WindowType::notification, 25), ofType("Menu", WindowType::menu, 101),
                    ofType("DropdownMenu", WindowType::dropdownMenu, 101),
                    ofType("PopupMenu", WindowType::popupMenu, 101), ofType("Combo", WindowType::combo, 101),
                    ofType("Tooltip", WindowType::tooltip, 101), ofType("DragIcon", WindowType::dragAndDrop, 101)),
    layerCaseName);

INSTANTIATE_TEST_SUITE_P(
    UnmanagedWindows, Layer,
    testing::Values(
        LayerCase{"OpaqueLocker", {.className = "i3lock", .frame = wholeMonitor}, layers::unmanaged},
        LayerCase{"LockerWithAnAlphaVisual", unmanagedPane(), layers::unmanaged},
        LayerCase{"OpaqueLockerThatTakesNoInput", {.hasEmptyInput = true, .frame = wholeMonitor}, layers::unmanaged},
        LayerCase{"SmallClickThroughPane",
                  with(unmanagedPane(),
                       [](auto& w) {
                         w.hasEmptyInput = true;
                         w.frame = {0, 0, 300, 300};
                       }),
                  layers::unmanaged},
        LayerCase{"MovingWallpaper",
                  with(unmanagedPane(),
                       [](auto& w) {
                         w.hasEmptyInput = true;
                         w.isBeneathOrdinaryWindows = true;
                       }),
                  layers::unmanaged}),
    layerCaseName);

TEST(ScreenLocker, IsWhateverUnmanagedHidesAWholeMonitor) {
  EXPECT_TRUE(isScreenLocker({.frame = wholeMonitor}, monitors));
  EXPECT_TRUE(isScreenLocker({.frame = {0, 0, 3200, 1080}}, monitors)) << "all monitors at once";
  EXPECT_TRUE(isScreenLocker(unmanagedPane(), monitors)) << "an alpha visual, but it takes all input";
}

TEST(ScreenLocker, IsNothingElse) {
  const WindowProperties locker{.frame = wholeMonitor};
  EXPECT_FALSE(isScreenLocker(gromitMpx(), monitors));
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.frame.height = 799; }), monitors));
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.isManaged = true; }), monitors)) << "a full-screen film";
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.isShaped = true; }), monitors)) << "a pointer highlighter";
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.hasEmptyInput = true; }), monitors)) << "a wallpaper";
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.isBeneathOrdinaryWindows = true; }), monitors));
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.isLowestOfDesktop = true; }), monitors));
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.isOwn = true; }), monitors));
  EXPECT_FALSE(isScreenLocker(with(locker, [](auto& w) { w.types = {WindowType::desktop}; }), monitors));
  EXPECT_FALSE(isScreenLocker(with(unmanagedPane(), [](auto& w) { w.className = "ardesia"; }), monitors));
}

TEST(ScreenLocker, IsCertainlyOneThatHidesEverythingOrIsKnown) {
  EXPECT_EQ(screenSheet({.className = "Whatever", .frame = wholeMonitor}, monitors), ScreenSheet::locker);
  EXPECT_EQ(screenSheet(unmanagedPane(), monitors), ScreenSheet::perhapsLocker);
  for (const char* name : {"i3lock", "Cinnamon-screensaver", "XScreenSaver"}) {
    EXPECT_EQ(screenSheet(with(unmanagedPane(), [&](auto& w) { w.className = name; }), monitors), ScreenSheet::locker);
  }
}

TEST(ScreenSheets, TakeThePointerWhereThatAloneKeepsThemFromBeingOverlays) {
  const auto pane = with(managedPane("Board"), [](auto& w) { w.state.isFullScreen = true; });
  EXPECT_EQ(screenSheet(pane, monitors), ScreenSheet::takesPointer);
  EXPECT_EQ(screenSheet(with(unmanagedPane(), [](auto& w) { w.frame.height = 790; }), monitors),
            ScreenSheet::takesPointer);
  EXPECT_EQ(screenSheet(with(pane, [](auto& w) { w.hasEmptyInput = true; }), monitors), ScreenSheet::none)
      << "an overlay";
  EXPECT_EQ(screenSheet(managedPane("Terminal"), monitors), ScreenSheet::none) << "neither above nor full-screen";
  EXPECT_EQ(screenSheet(with(pane, [](auto& w) { w.hasAlpha = false; }), monitors), ScreenSheet::none);
  EXPECT_EQ(screenSheet({.frame = {0, 0, 300, 300}, .hasAlpha = true}, monitors), ScreenSheet::none);
}

TEST(WindowLayer, OfAnOverlayStaysWhenItTakesThePointerToDraw) {
  const auto drawing = [](auto& w) {
    w.wasOverlay = true;
    w.hasEmptyInput = false;
  };
  EXPECT_EQ(windowLayer(with(unmanagedPane(), drawing), monitors), layers::overlay);
  EXPECT_FALSE(isScreenLocker(with(unmanagedPane(), drawing), monitors));
  auto pane = with(managedPane("Board"), drawing);
  EXPECT_NE(windowLayer(pane, monitors), layers::overlay) << "no window manager keeps it above any more";
  pane.state.isFullScreen = true;
  EXPECT_EQ(windowLayer(pane, monitors), layers::overlay);
  pane.hasAlpha = false;
  EXPECT_EQ(windowLayer(pane, monitors), layers::overlay) << "a drawing program that freezes the screen to draw on it";
  auto wallpaper = with(unmanagedPane(), drawing);
  wallpaper.isBeneathOrdinaryWindows = true;
  EXPECT_EQ(windowLayer(wallpaper, monitors), layers::unmanaged) << "it was alone on the screen at first";
}

TEST(WindowLayer, OfAnOwnWindowIsAboveAllOthers) {
  EXPECT_EQ(windowLayer({.frame = {0, 0, 10, 10}, .isOwn = true}, monitors), layers::own);
  EXPECT_GT(layers::own, layers::overlay);
}

}  // namespace
}  // namespace platform::linux::scene
