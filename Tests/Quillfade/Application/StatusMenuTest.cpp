#include <stdexcept>

#include "Tests/Quillfade/Application/DelegateTest.h"

namespace quillfade {
namespace {

using platform::ControlState;
using platform::MenuItem;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

// What a menu item looks like, without its action.
struct Row {
  std::string title;
  std::string key = "";
  std::optional<std::uint32_t> mask = std::nullopt;
  std::optional<bool> enabledFlag = std::nullopt;
  std::optional<ControlState> state = std::nullopt;
  bool hasAction = true;
  bool isSeparator = false;
  std::size_t submenuSize = 0;
  friend bool operator==(const Row&, const Row&) = default;
};

void PrintTo(const Row& row, std::ostream* out) {
  *out << (row.isSeparator ? "---" : row.title) << " key " << row.key << " mask " << row.mask.value_or(0) << " state "
       << (row.state ? (row.state == ControlState::on ? "on" : "off") : "none") << " action " << row.hasAction
       << " flag " << (row.enabledFlag ? (*row.enabledFlag ? "on" : "off") : "none") << " submenu " << row.submenuSize;
}

const Row separator{.title = "", .hasAction = false, .isSeparator = true};
constexpr std::uint32_t controlOptionCommand = 0x1C0000;

std::vector<Row> rows(const std::vector<MenuItem>& items) {
  std::vector<Row> result;
  for (const MenuItem& item : items) {
    result.push_back({item.title, item.keyEquivalent, item.keyEquivalentModifierMask, item.isEnabled, item.state,
                      static_cast<bool>(item.action), item.isSeparator, item.submenu.size()});
  }
  return result;
}

class StatusMenuTest : public DelegateTest {
 protected:
  // The items as the menu would show them now.
  const std::vector<MenuItem>& opened() {
    menu().open();
    menu().close();
    return menu().items();
  }

  const MenuItem& item(const std::string& title) {
    opened();
    const MenuItem* const found = menu().item(title);
    if (found == nullptr) throw std::runtime_error("no item " + title);
    return *found;
  }

  std::string areaLabel() { return opened().at(7).title; }
};

TEST_F(StatusMenuTest, WithTheCoverOffItHoldsTheseItems) {
  launch();
  EXPECT_THAT(
      rows(opened()),
      ElementsAre(
          Row{.title = "Quillfade · idle", .enabledFlag = false, .hasAction = false}, separator,
          Row{.title = "Hide Annotations", .key = "d", .mask = controlOptionCommand, .state = ControlState::off},
          Row{.title = "Peek for 5 Seconds", .key = "p", .mask = controlOptionCommand, .enabledFlag = false}, separator,
          Row{.title = "Whole Screen", .key = "f", .mask = controlOptionCommand},
          Row{.title = "Select Area…", .key = "a", .mask = controlOptionCommand},
          Row{.title = "Area: whole screen", .enabledFlag = false, .hasAction = false}, separator,
          Row{.title = "Mode", .hasAction = false, .submenuSize = 2},
          Row{.title = "Show Outline", .state = ControlState::on}, separator,
          Row{.title = "Launch at Login", .state = ControlState::off}, Row{.title = "About Quillfade"}, separator,
          Row{.title = "Quit Quillfade", .key = "q", .mask = 0x100000}));
}

TEST_F(StatusMenuTest, WithTheCoverOnItSaysSo) {
  launchWithCoverOn();
  const auto now = rows(opened());
  EXPECT_EQ(now.at(0), (Row{.title = "Quillfade · annotations hidden", .enabledFlag = false, .hasAction = false}));
  EXPECT_EQ(now.at(2),
            (Row{.title = "Hide Annotations", .key = "d", .mask = controlOptionCommand, .state = ControlState::on}));
  EXPECT_EQ(now.at(3),
            (Row{.title = "Peek for 5 Seconds", .key = "p", .mask = controlOptionCommand, .enabledFlag = true}));
  EXPECT_EQ(areaLabel(), "Area: 800 × 600");
  EXPECT_EQ(button().shownImage()->name(), "pencil.slash");
}

TEST_F(StatusMenuTest, TheSpecialCharactersAreTheRightOnes) {
  launchWithCoverOn();
  EXPECT_EQ(opened().at(0).title, "Quillfade \xC2\xB7 annotations hidden");
  EXPECT_EQ(opened().at(6).title, "Select Area\xE2\x80\xA6");
  EXPECT_EQ(areaLabel(), "Area: 800 \xC3\x97 600");
}

TEST_F(StatusMenuTest, TheAreaLabelDropsFractionsTowardZero) {
  launch();
  overlay().setRegion({{0, 0}, {1439.7, 899.2}});
  EXPECT_EQ(areaLabel(), "Area: 1439 × 899");
  overlay().setRegion({{0, 0}, {-1439.7, 0.9}});
  EXPECT_EQ(areaLabel(), "Area: 1439 × 0");
  overlay().setRegion({{0, 0}, {123456789, 1}});
  EXPECT_EQ(areaLabel(), "Area: 123456789 × 1");
}

TEST_F(StatusMenuTest, AfterWholeScreenTheAreaLabelShowsTheUnion) {
  desktop.arrangeScreens({{{{0, 0}, {1440, 900}}, 1, 2}, {{{1440, 0}, {1920, 1080}}, 2, 1}});
  launch();
  menu().choose("Whole Screen");
  EXPECT_EQ(areaLabel(), "Area: 3360 × 1080");
}

TEST_F(StatusMenuTest, TheModeSubmenuMarksTheCurrentStyle) {
  launch();
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    overlay().setStyle(style);
    const auto& styles = item("Mode").submenu;
    ASSERT_THAT(styles, SizeIs(2));
    EXPECT_EQ(styles[0].title, "Live (strip annotations)");
    EXPECT_EQ(styles[1].title, "Solid cover");
    EXPECT_EQ(styles[0].tag, 0);
    EXPECT_EQ(styles[1].tag, 1);
    EXPECT_EQ(styles[0].state, style == CoverStyle::live ? ControlState::on : ControlState::off);
    EXPECT_EQ(styles[1].state, style == CoverStyle::solid ? ControlState::on : ControlState::off);
    for (const MenuItem& each : styles) {
      EXPECT_EQ(each.keyEquivalent, "");
      EXPECT_TRUE(each.action);
    }
  }
}

TEST_F(StatusMenuTest, ShowOutlineIsCheckedWhileItIsOn) {
  launch();
  EXPECT_EQ(item("Show Outline").state, ControlState::on);
  overlay().setShowsOutline(false);
  EXPECT_EQ(item("Show Outline").state, ControlState::off);
}

TEST_F(StatusMenuTest, LaunchAtLoginIsCheckedOnlyWhileTheLoginItemIsEnabled) {
  using platform::LoginItemStatus;
  launch();
  for (const auto status : {LoginItemStatus::notRegistered, LoginItemStatus::enabled, LoginItemStatus::requiresApproval,
                            LoginItemStatus::notFound}) {
    desktop.loginItem().currentStatus = status;
    EXPECT_EQ(item("Launch at Login").state, status == LoginItemStatus::enabled ? ControlState::on : ControlState::off);
  }
}

TEST_F(StatusMenuTest, EveryCommandCanBeChosenAndTheLabelsCannot) {
  launch();
  for (const MenuItem& each : opened()) {
    const bool isLabel = each.isSeparator || each.title == idleText || each.title == "Area: whole screen";
    EXPECT_EQ(simulated::Menu::isEnabled(each), !isLabel) << each.title;
  }
}

TEST_F(StatusMenuTest, PeekCanBeChosenWhileTheCoverIsOffAndDoesNothing) {
  launch();
  EXPECT_TRUE(menu().choose("Peek for 5 Seconds"));
  EXPECT_THAT(desktop.runLoop().liveDelayedTasks(), IsEmpty());
}

TEST_F(StatusMenuTest, OpeningTwiceGivesTheSameItems) {
  launchWithCoverOn();
  const auto first = rows(opened());
  EXPECT_EQ(rows(opened()), first);
}

TEST_F(StatusMenuTest, OpeningTakesTheCoverAwayUntilItCloses) {
  for (const CoverStyle style : {CoverStyle::live, CoverStyle::solid}) {
    launchWithCoverOn(style);
    menu().open();
    EXPECT_THAT(shownWindows(), IsEmpty());
    EXPECT_TRUE(overlay().isEnabled());
    menu().close();
    EXPECT_THAT(shownFrames(), ElementsAre(region));
    delegate = nullptr;
  }
}

TEST_F(StatusMenuTest, TheCoverIsGoneBeforeTheMenuIsBuilt) {
  launchWithCoverOn();
  desktop.record().clear();
  menu().open();
  EXPECT_LT(placeOf("window 1: order out"), placeOf("menu: remove all items"));
  menu().close();
}

TEST_F(StatusMenuTest, ClosingLeavesTheItems) {
  launch();
  menu().open();
  const auto open = rows(menu().items());
  menu().close();
  EXPECT_EQ(rows(menu().items()), open);
}

TEST_F(StatusMenuTest, OpeningWhileTheCoverIsOffLeavesEverythingAsItIs) {
  launch();
  overlay().setRegion(region);
  opened();
  EXPECT_THAT(desktop.windows().made(), IsEmpty());
  EXPECT_FALSE(overlay().isEnabled());
}

TEST_F(StatusMenuTest, AnOpenMenuIsNotRefreshedButTheIconIs) {
  launch();
  overlay().setRegion(region);
  menu().open();
  desktop.hotKeys().press(2, controlOptionCommandKeys);
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_EQ(menu().items().front().title, idleText);
  EXPECT_EQ(button().toolTip(), hiddenText);
  menu().close();
}

TEST_F(StatusMenuTest, AMissingSymbolKeepsTheIconButChangesTheToolTip) {
  desktop.statusBar().missingSymbols = {"pencil.slash"};
  launchWithCoverOn();
  EXPECT_EQ(button().shownImage()->name(), "pencil");
  EXPECT_EQ(button().toolTip(), hiddenText);
}

TEST_F(StatusMenuTest, EveryIconIsATemplateNamedAfterTheApplication) {
  launchWithCoverOn();
  EXPECT_EQ(button().shownImage()->description(), "Quillfade");
  EXPECT_TRUE(button().shownImage()->isTemplate());
}

TEST_F(StatusMenuTest, WithoutAMenuOpeningHasNoEffect) {
  launch();
  const auto detached = statusItem()->shownMenu();
  statusItem()->setMenu(nullptr);
  detached->open();
  detached->close();
  EXPECT_THAT(detached->items(), IsEmpty());
}

TEST_F(StatusMenuTest, ItemsDoNothingOnceTheDelegateIsGone) {
  launch();
  const auto items = opened();
  delegate = nullptr;
  for (const MenuItem& each : items) {
    if (each.action) each.action(each);
    for (const MenuItem& style : each.submenu) style.action(style);
  }
  EXPECT_THAT(desktop.windows().made(), IsEmpty());
  EXPECT_FALSE(desktop.sharedApplication()->isTerminated());
}

TEST_F(StatusMenuTest, IsListedBeforeAnyOpeningWithoutTakingTheCoverDown) {
  launchWithCoverOn();
  delegate->menuWillBeListed(menu());
  const auto listed = menu().items();
  EXPECT_THAT(shownFrames(), ElementsAre(region));
  const auto shown = opened();
  ASSERT_THAT(listed, SizeIs(shown.size()));
  for (std::size_t i = 0; i < listed.size(); ++i) {
    if (shown[i].title.starts_with("Area: ")) {
      EXPECT_EQ(listed[i].title, "Area: …");
    } else {
      EXPECT_EQ(listed[i].title, shown[i].title);
    }
  }
}

TEST_F(StatusMenuTest, ARegionSizeThatDoesNotFitPreventsNeitherStartingNorCovering) {
  store("region", std::string("{{0, 0}, {1e300, 600}}"));
  store("enabled", true);
  launch();
  delegate->menuWillBeListed(menu());
  EXPECT_TRUE(overlay().isEnabled());
  EXPECT_THAT(shownFrames(), ElementsAre(platform::Rect{{0, 0}, {1440, 600}}));
}

using StatusMenuDeathTest = StatusMenuTest;

TEST_F(StatusMenuDeathTest, ARegionSizeThatDoesNotFitEndsTheProcess) {
  launch();
  overlay().setRegion({{0, 0}, {1e300, 100}});
  EXPECT_DEATH(menu().open(), "fatal error");
}

TEST_F(StatusMenuDeathTest, OpeningBeforeTheLaunchEndsTheProcess) {
  delegate = std::make_shared<AppDelegate>(desktop);
  const auto stray = desktop.statusBar().makeMenu();
  EXPECT_DEATH(delegate->menuWillOpen(*stray), "fatal error");
}

}  // namespace
}  // namespace quillfade
