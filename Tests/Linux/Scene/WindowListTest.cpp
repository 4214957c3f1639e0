#include "Tests/Linux/Scene/WindowListFixture.h"

namespace platform::linux::scene {
namespace {

TEST_F(WindowListOnX, ListsTopLevelsFromBottomToTopWithTheirFramesInPoints) {
  const xcb_window_t first = client_.createWindow({.frame = {100, 50, 300, 200}});
  const xcb_window_t second = client_.createWindow({.frame = {10, 20, 30, 40}, .border = 2, .mapped = false});
  client_.sync();
  observe();
  const xcb_window_t third = client_.createWindow({.frame = {0, 0, 20, 20}});
  client_.lower(third);
  client_.sync();
  ASSERT_TRUE(support::waitUntil([&] { return windows().size() == 3 && windows().front().windowID == third; }));
  const auto all = windows();
  EXPECT_EQ(all[1].windowID, first);
  EXPECT_EQ(all[1].frame, (Rect{{100, 550}, {300, 200}}));
  EXPECT_TRUE(all[1].isOnScreen);
  EXPECT_EQ(all[2].windowID, second);
  EXPECT_EQ(all[2].frame, (Rect{{10, 736}, {34, 44}})) << "with its border";
  EXPECT_FALSE(all[2].isOnScreen);
}

TEST_F(WindowListOnX, OptionsLeaveOutHiddenAndDesktopWindows) {
  const xcb_window_t shown = client_.createWindow({});
  const xcb_window_t hidden = client_.createWindow({.mapped = false});
  const xcb_window_t desktop = client_.createWindow({});
  client_.setAtoms(desktop, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DESKTOP"});
  const xcb_window_t inputOnly = client_.createWindow({.inputOnly = true});
  client_.sync();
  observe();
  const auto ids = [&](const ShareableContentOptions& options) {
    std::vector<xcb_window_t> result;
    for (const CaptureWindow& window : windows(options)) result.push_back(window.windowID);
    return result;
  };
  EXPECT_EQ(ids({}), (std::vector{shown, hidden, desktop})) << "and never " << inputOnly;
  EXPECT_EQ(ids({.onScreenWindowsOnly = true}), (std::vector{shown, desktop}));
  EXPECT_EQ(ids({.excludingDesktopWindows = true}), (std::vector{shown, hidden}));
}

TEST_F(WindowListOnX, ASecondRequestSendsNothingAndAChangedPropertyIsSeen) {
  const xcb_window_t window = client_.createWindow({});
  client_.setClass(window, "one", "One");
  client_.sync();
  observe();
  EXPECT_EQ(ownerOf(entry(window)), "One");
  const auto numberOfRequests = [&] { return xcb_no_operation(connection_->get()).sequence; };
  const auto before = numberOfRequests();
  EXPECT_EQ(list_->windows({}).size(), 1U);
  EXPECT_EQ(numberOfRequests(), before + 1);

  client_.setClass(window, "two", "Two");
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] { return ownerOf(entry(window)) == "Two"; }));
}

TEST_F(WindowListOnX, AnnouncesAChangeOnceUntilTheNextRequest) {
  observe();
  int changes = 0;
  list_->setChanged([&] { ++changes; });
  client_.createWindow({});
  client_.sync();
  pump();
  EXPECT_EQ(changes, 0) << "no list was handed out";
  EXPECT_TRUE(support::waitUntil([&] { return windows().size() == 1; }));
  const xcb_window_t second = client_.createWindow({});
  client_.move(second, 50, 50);
  client_.setClass(second, "a", "A");
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    pump();
    return scene_->find(second) != nullptr && scene_->find(second)->outer.x == 50;
  }));
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(windows().size(), 2U);
  client_.setClass(second, "b", "B");
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] {
    pump();
    return changes == 2;
  }));
}

TEST_F(WindowListOnX, AWindowWithoutAClassBelongsToTheProcessThatMadeIt) {
  const xcb_window_t window = client_.createWindow({});
  const xcb_window_t blank = client_.createWindow({});
  client_.setClass(blank, "", " ");
  // A window's claim counts for nothing where the server knows better.
  client_.setNumbers(blank, "_NET_WM_PID", "CARDINAL", {1});
  client_.sync();
  observe();
  std::string self;
  std::getline(std::ifstream("/proc/self/comm") >> std::ws, self);
  ASSERT_FALSE(self.empty());
  EXPECT_EQ(ownerOf(entry(window)), self);
  EXPECT_EQ(ownerOf(entry(blank)), self);
  EXPECT_EQ(entry(window)->names, std::vector<std::string>{self}) << "Rules find it by this name.";
}

TEST_F(WindowListOnX, AWindowWhoseNameOnlyHoldsAConferencingProgramsHasItsNamesAndNoOwner) {
  const xcb_window_t magnifier = client_.createWindow({});
  client_.setClass(magnifier, "xzoom", "XZoom");
  client_.sync();
  observe();
  ASSERT_TRUE(entry(magnifier));
  EXPECT_EQ(entry(magnifier)->owningApplication, std::nullopt);
  EXPECT_EQ(entry(magnifier)->names, (std::vector<std::string>{"XZoom", "xzoom"}));
}

TEST_F(WindowListOnX, WindowsOfThisProgramsConnectionsAreItsOwn) {
  observe();
  const xcb_window_t own = connection_->newId();
  xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, own, connection_->root(), 0, 0, 10, 10, 0,
                    XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, 0, nullptr);
  EXPECT_TRUE(support::waitUntil([&] { return ownerOf(entry(own)) == "org.quillfade.Quillfade"; }));
  EXPECT_TRUE(list_->isOwn(own));
  EXPECT_EQ(entry(own)->windowLayer, layers::own);
}

TEST_F(WindowListOnX, WindowsOfAnotherProcessOfThisProductAreItsOwnAsLongAsThatRuns) {
  observe();
  const xcb_window_t foreign = client_.createWindow({});
  client_.setClass(foreign, "paint", "Paint");
  client_.sync();
  ASSERT_TRUE(support::waitUntil([&] { return ownerOf(entry(foreign)) == "Paint"; }));
  {
    const auto other = connectTo(server_.display());
    const std::uint32_t client = foreign & ~other->resourceMask();
    const ProductMark mark(*other, std::array{other->resourceBase(), client});
    other->flush();
    EXPECT_TRUE(support::waitUntil([&] { return ownerOf(entry(foreign)) == "org.quillfade.Quillfade"; }));
    EXPECT_TRUE(list_->isOwn(foreign));
  }
  EXPECT_TRUE(support::waitUntil([&] { return ownerOf(entry(foreign)) == "Paint"; }));
}

TEST_F(WindowListOnX, AMarkOfNobodyMarksNothing) {
  observe();
  const xcb_window_t mark = client_.createWindow({});
  const xcb_window_t plain = client_.createWindow({});
  client_.setClass(plain, "paint", "Paint");
  client_.setNumbers(mark, productClientsProperty, "CARDINAL", {0, 0xffffffff});
  client_.sync();
  EXPECT_EQ(ownerOf(entry(plain)), "Paint");
  EXPECT_FALSE(list_->isOwn(plain));
}

TEST_F(WindowListOnX, AnOwnWindowInsideAWindowManagersFrameIsStillOwn) {
  const support::WindowManager manager(server_.display());
  observe();
  const xcb_window_t own = connection_->newId();
  xcb_create_window(connection_->get(), XCB_COPY_FROM_PARENT, own, connection_->root(), 0, 0, 100, 100, 0,
                    XCB_WINDOW_CLASS_COPY_FROM_PARENT, XCB_COPY_FROM_PARENT, 0, nullptr);
  ASSERT_TRUE(support::waitUntil([&] {
    xcb_map_window(connection_->get(), own);
    const auto window = entryOf("org.quillfade.Quillfade");
    return window && window->windowID != own;
  }));
  EXPECT_TRUE(list_->isOwn(entryOf("org.quillfade.Quillfade")->windowID));
}

TEST_F(WindowListOnX, NonsenseInPropertiesGivesADefinedResult) {
  const xcb_window_t huge = client_.createWindow({});
  client_.setText(huge, "WM_CLASS", "STRING", std::string(200'000, 'x'));
  const xcb_window_t numbers = client_.createWindow({});
  client_.setNumbers(numbers, "WM_CLASS", "CARDINAL", {1, 2, 3});
  client_.setText(numbers, "_NET_WM_WINDOW_TYPE", "STRING", "_NET_WM_WINDOW_TYPE_DESKTOP");
  client_.setText(numbers, "_NET_WM_STATE", "STRING", "_NET_WM_STATE_ABOVE");
  client_.setText(numbers, "WM_NORMAL_HINTS", "STRING", "x");
  client_.setText(numbers, "_NET_WM_PID", "STRING", "1");
  const xcb_window_t unterminated = client_.createWindow({});
  client_.setText(unterminated, "WM_CLASS", "STRING", std::string("zo\0Zo\xE9\xFF", 8));
  const xcb_window_t manyTypes = client_.createWindow({});
  client_.setNumbers(manyTypes, "_NET_WM_WINDOW_TYPE", "ATOM", std::vector<std::uint32_t>(50'000, 0xFFFFFFF));
  client_.sync();
  observe();
  EXPECT_EQ(ownerOf(entry(huge)), std::string(4096, 'x'));
  EXPECT_EQ(entry(numbers)->windowLayer, layers::unmanaged);
  EXPECT_NE(ownerOf(entry(numbers)), "(none)") << "the process, as there is no class";
  EXPECT_EQ(ownerOf(entry(unterminated)), "Zo\xC3\xA9\xC3\xBF");
  EXPECT_EQ(entry(manyTypes)->windowLayer, layers::unmanaged);
}

TEST_F(WindowListOnX, AnOpaqueFullScreenLockerIsNoOverlayAndNothingMayLieAboveIt) {
  const xcb_window_t locker = client_.createWindow({.frame = wholeScreen});
  const xcb_window_t withAlpha = client_.createWindow({.frame = wholeScreen, .depth = 32});
  const xcb_window_t clickThrough = client_.createWindow({.frame = wholeScreen, .depth = 32});
  client_.setInputShape(clickThrough, {});
  client_.sync();
  observe();
  EXPECT_EQ(entry(locker)->windowLayer, layers::unmanaged);
  EXPECT_EQ(entry(withAlpha)->windowLayer, layers::unmanaged);
  EXPECT_EQ(entry(clickThrough)->windowLayer, layers::overlay);
  EXPECT_TRUE(list_->isScreenLocker(locker));
  EXPECT_TRUE(list_->isScreenLocker(withAlpha));
  EXPECT_FALSE(list_->isScreenLocker(clickThrough));
}

TEST_F(WindowListOnX, AnOverlayStaysOneWhileItTakesThePointerToDrawUntilItIsUnmapped) {
  const xcb_window_t pane = client_.createWindow({.frame = wholeScreen, .depth = 32});
  client_.setInputShape(pane, {});
  client_.sync();
  observe();
  ASSERT_EQ(entry(pane)->windowLayer, layers::overlay);
  const xcb_rectangle_t everything{0, 0, 1280, 800};
  client_.setInputShape(pane, {&everything, 1});
  client_.sync();
  pump();
  EXPECT_EQ(entry(pane)->windowLayer, layers::overlay);
  EXPECT_FALSE(list_->properties(pane)->hasEmptyInput);
  EXPECT_FALSE(list_->isScreenLocker(pane));
  client_.unmap(pane);
  client_.sync();
  pump();
  EXPECT_EQ(entry(pane)->windowLayer, layers::unmanaged);
  client_.map(pane);
  client_.sync();
  pump();
  EXPECT_EQ(entry(pane)->windowLayer, layers::unmanaged) << "From now on it may be anything, a locker, too.";
  EXPECT_TRUE(list_->isScreenLocker(pane));
}

TEST_F(WindowListOnX, AnOpaqueWallpaperThatTakesInputIsNoLockerOnceTheDesktopLiesOverIt) {
  const auto isLocker = [&](xcb_window_t window) {
    pump();
    return list_->isScreenLocker(window);
  };
  observe();
  const auto wallpaper = client_.createWindow({.frame = wholeScreen});
  client_.sync();
  EXPECT_TRUE(isLocker(wallpaper)) << "With nothing else there is no telling, and the safe answer is yes.";
  const auto dialog = client_.createWindow({.frame = {500, 300, 200, 100}});
  client_.sync();
  EXPECT_TRUE(isLocker(wallpaper)) << "A locker's own dialog lies over it, too.";
  const auto ink = client_.createWindow({.frame = wholeScreen, .depth = 32, .mapped = false});
  client_.setInputShape(ink, {});
  client_.map(ink);
  client_.sync();
  EXPECT_TRUE(isLocker(wallpaper)) << "So does an overlay that raises itself again and again.";
  client_.destroy(ink);
  client_.destroy(dialog);
  client_.sync();
  const support::WindowManager manager(server_.display());
  const auto panel = createManaged("panel", {0, 0, 1280, 30});
  client_.setAtoms(panel, "_NET_WM_WINDOW_TYPE", {"_NET_WM_WINDOW_TYPE_DOCK"});
  show(panel);
  client_.lower(wallpaper);
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] { return !isLocker(wallpaper); })) << "A panel does not.";
  client_.raise(wallpaper);
  client_.sync();
  EXPECT_TRUE(support::waitUntil([&] { return isLocker(wallpaper); }));
}

TEST_F(WindowListOnX, WindowsThatComeAndGoWhileTheyAreReadDoNoHarm) {
  observe();
  std::mt19937 random(7);
  std::vector<xcb_window_t> alive;
  for (int i = 0; i < 2000; ++i) {
    if (alive.size() < 20 || random() % 2 == 0) {
      alive.push_back(client_.createWindow({}));
      client_.setClass(alive.back(), "storm", "Storm");
    } else {
      const auto victim = alive.begin() + static_cast<std::ptrdiff_t>(random() % alive.size());
      client_.destroy(*victim);
      alive.erase(victim);
    }
    xcb_flush(client_.connection());
    if (i % 5 == 0) (void)windows();
  }
  client_.sync();
  std::ranges::sort(alive);
  EXPECT_TRUE(support::waitUntil([&] {
    std::vector<xcb_window_t> listed;
    for (const CaptureWindow& window : windows()) listed.push_back(window.windowID);
    std::ranges::sort(listed);
    return listed == alive;
  }));
  for (const CaptureWindow& window : windows()) EXPECT_EQ(ownerOf(window), "Storm");
}

}  // namespace
}  // namespace platform::linux::scene
