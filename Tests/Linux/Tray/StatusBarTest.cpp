#include <gtest/gtest.h>

#include <QApplication>
#include <QDBusArgument>
#include <QMenu>
#include <QPainter>
#include <QPixmap>
#include <algorithm>
#include <cstdlib>
#include <functional>
#include <iterator>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Platform/Linux/Toolkit/QtRunLoop.h"
#include "Platform/Linux/Tray/DesktopStatusBar.h"
#include "Platform/Linux/Tray/DesktopStatusItem.h"
#include "Platform/Linux/Tray/SymbolImage.h"
#include "Tests/Linux/Toolkit/QtEnvironment.h"
#include "Tests/Linux/Tray/TrayHost.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/Variable.h"

using namespace platform;
using namespace platform::linux;
using namespace platform::linux::tray;
using platform::linux::tray::SymbolImage;

namespace {

constexpr std::uint32_t allModifiers = modifierflags::control | modifierflags::option | modifierflags::command;

// Refills the menu at each opening, as the application does.
class MenuReader : public MenuDelegate {
 public:
  MenuReader() {
    MenuItem separator;
    separator.isSeparator = true;
    MenuItem command = choosable("Hide Annotations");
    command.keyEquivalent = "d";
    command.keyEquivalentModifierMask = allModifiers;
    command.isEnabled = false;  // a wish that its action overrides
    command.state = ControlState::on;
    MenuItem mode = titled("Mode");
    mode.submenu.push_back(choosable("Solid cover"));
    mode.submenu.back().tag = 1;
    mode.submenu.back().state = ControlState::off;
    items = {titled("Quillfade · idle"), separator, command, mode};
  }

  void menuWillBeListed(platform::Menu& menu) override {
    calls += "list ";
    fill(menu);
  }
  void menuWillOpen(platform::Menu& menu) override {
    calls += "open ";
    fill(menu);
  }
  void menuDidClose(platform::Menu&) override { calls += "close "; }

  static MenuItem titled(const char* title) {
    MenuItem item;
    item.title = title;
    return item;
  }
  MenuItem choosable(const char* title) {
    MenuItem item = titled(title);
    item.action = [this](const MenuItem& chosen) { calls += chosen.title + "/" + std::to_string(chosen.tag) + " "; };
    return item;
  }

  std::string calls;
  std::vector<MenuItem> items;

 private:
  void fill(platform::Menu& menu) {
    menu.removeAllItems();
    for (const MenuItem& item : items) menu.addItem(item);
  }
};

// A tray host that shows nothing on screen.
class NoHostMenus : public HostMenus {
 public:
  void whenClosed(std::function<void()>) override {}
  [[nodiscard]] bool isSeen() const override { return false; }
};

class StatusBarTest : public qt::Test {
 protected:
  void makeItem() {
    item = bar.makeStatusItem(StatusBar::squareLength);
    const auto image = bar.systemSymbol("pencil", "Quillfade");
    item->button()->setImage(image);
    image->setTemplate(true);
    item->button()->setToolTip("Quillfade · idle");
    const auto menu = bar.makeMenu();
    menu->setDelegate(delegate);
    item->setMenu(menu);
  }
  void showItem() {
    tray.emplace();
    makeItem();
    ASSERT_TRUE(qt::runUntil([&] { return tray->hasItem(); }));
  }
  // Shows the item as it is when its menu is opened for the first time.
  void showQuietItem() {
    showItem();
    delegate->calls.clear();
  }
  [[nodiscard]] const std::string& calls() const { return delegate->calls; }

  toolkit::QtRunLoop runLoop;
  std::optional<qt::TrayHost> tray;
  NoHostMenus hostMenus;
  DesktopStatusBar bar{runLoop, hostMenus};
  std::shared_ptr<MenuReader> delegate = std::make_shared<MenuReader>();
  std::shared_ptr<StatusItem> item;
};

// The identifiers of all lines, a line's own before those of its submenu.
std::vector<int> identifiers(const std::vector<qt::ShownItem>& lines) {
  std::vector<int> result;
  for (const auto& line : lines) {
    result.push_back(line.id);
    std::ranges::copy(identifiers(line.children), std::back_inserter(result));
  }
  return result;
}

QImage picture(const QIcon& icon, int size) {
  return icon.pixmap(size, size).toImage().convertToFormat(QImage::Format_ARGB32);
}

int countPixels(const QImage& picture, const std::function<bool(const QColor&)>& counts) {
  int count = 0;
  for (int y = 0; y < picture.height(); ++y)
    for (int x = 0; x < picture.width(); ++x) count += counts(picture.pixelColor(x, y)) ? 1 : 0;
  return count;
}

// How many pixels of a large picture consist of this ink alone.
int inkOf(const QIcon& icon, const QColor& ink) {
  return countPixels(picture(icon, 64), [&](const QColor& pixel) { return pixel == ink; });
}

// How many pixels stand out from a panel of this colour.
int contrastOf(const QIcon& icon, const QColor& panel) {
  QImage shown(22, 22, QImage::Format_RGB32);
  shown.fill(panel);
  QPainter(&shown).drawImage(0, 0, picture(icon, 22));
  return countPixels(shown, [&](const QColor& pixel) { return std::abs(pixel.lightness() - panel.lightness()) > 80; });
}

}  // namespace

TEST_F(StatusBarTest, ThereIsADrawingForEachStateAndNoneForOtherNames) {
  EXPECT_NE(bar.systemSymbol("pencil", "Quillfade"), nullptr);
  EXPECT_NE(bar.systemSymbol("pencil.slash", "Quillfade"), nullptr);
  EXPECT_EQ(bar.systemSymbol("no.such.symbol", "Quillfade"), nullptr);
}

TEST_F(StatusBarTest, ATemplateIsDrawnInTheInkThatSuitsTheBar) {
  const QColor ink(10, 200, 30);
  for (const char* name : {"pencil", "pencil.slash"}) {
    const auto image = SymbolImage::named(name, "Quillfade");
    const int plain = inkOf(image->icon(ink), Qt::black);
    EXPECT_GT(plain, 200);
    image->setTemplate(true);
    EXPECT_NEAR(inkOf(image->icon(ink), ink), plain, 10);
  }
}

TEST_F(StatusBarTest, ATemplateStandsOutFromAPanelOfAnyShade) {
  const QColor dark(35, 38, 41);
  const QColor light(239, 240, 241);
  for (const char* name : {"pencil", "pencil.slash"}) {
    const auto image = SymbolImage::named(name, "Quillfade");
    const int plain = contrastOf(image->icon({}), Qt::white);
    image->setTemplate(true);
    EXPECT_EQ(contrastOf(image->icon(Qt::black), Qt::white), plain);
    for (const QColor ink : {QColor(Qt::black), dark, light, QColor(Qt::white)})
      for (const QColor panel : {QColor(Qt::black), dark, QColor(Qt::gray), light, QColor(Qt::white)})
        EXPECT_GT(contrastOf(image->icon(ink), panel), 40)
            << name << ", " << ink.lightness() << " on " << panel.lightness();
  }
}

TEST_F(StatusBarTest, TheItemAppearsInAnExistingTray) {
  showItem();
  const auto toolTip = tray->itemProperty(QStringLiteral("ToolTip")).value<QDBusArgument>();
  QString icon, title, description;
  toolTip.beginStructure();
  toolTip >> icon;
  toolTip.beginArray();
  while (!toolTip.atEnd()) {
    int width = 0, height = 0;
    QByteArray pixels;
    toolTip.beginStructure();
    toolTip >> width >> height >> pixels;
    toolTip.endStructure();
  }
  toolTip.endArray();
  toolTip >> title >> description;
  toolTip.endStructure();
  EXPECT_EQ(title, QStringLiteral("Quillfade · idle"));
  EXPECT_EQ(tray->itemProperty(QStringLiteral("Status")), QStringLiteral("Active"));
}

TEST_F(StatusBarTest, AHostReadsTheImagesAccessibilityDescriptionAsTheItemsTitle) {
  showItem();
  EXPECT_EQ(tray->itemProperty(QStringLiteral("Title")), QStringLiteral("Quillfade"));
  item->button()->setImage(bar.systemSymbol("pencil.slash", "Crossed pencil"));
  EXPECT_EQ(tray->itemProperty(QStringLiteral("Title")), QStringLiteral("Crossed pencil"));
  item->button()->setImage(bar.systemSymbol("pencil", "Quillfade"));
  EXPECT_EQ(tray->itemProperty(QStringLiteral("Title")), QStringLiteral("Quillfade"));
}

TEST_F(StatusBarTest, TheItemAppearsWhenTheTrayComesLater) {
  makeItem();
  qt::runPending();
  tray.emplace();
  EXPECT_TRUE(qt::runUntil([&] { return tray->hasItem(); }));
}

TEST_F(StatusBarTest, TheItemReappearsWhenTheTrayIsRestarted) {
  showItem();
  tray.reset();
  qt::runPending();
  tray.emplace();
  EXPECT_TRUE(qt::runUntil([&] { return tray->hasItem(); }));
}

TEST_F(StatusBarTest, TheIconFollowsTheDesktopsColours) {
  showItem();
  const QSystemTrayIcon* icon = std::dynamic_pointer_cast<DesktopStatusItem>(item)->trayIcon();
  const QPalette before = QApplication::palette();
  for (const QColor ink : {QColor(Qt::white), QColor(20, 20, 200)}) {
    QPalette palette = before;
    palette.setColor(QPalette::WindowText, ink);
    QApplication::setPalette(palette);
    EXPECT_TRUE(qt::runUntil([&] { return inkOf(icon->icon(), ink) > 200; }));
  }
  QApplication::setPalette(before);
}

TEST_F(StatusBarTest, AHostThatReadsTheMenuBeforeItOpensItFindsTheLinesAndOpensNothing) {
  showItem();
  EXPECT_EQ(calls(), "list ");
  EXPECT_EQ(tray->items().size(), 4U);
}

TEST_F(StatusBarTest, GnomesHostOpensNothingWhenItAnnouncesAnOpeningWhileItLoadsTheMenu) {
  const support::Variable desktop("XDG_CURRENT_DESKTOP", "ubuntu:GNOME");
  showItem();
  tray->aboutToShow();
  EXPECT_EQ(calls(), "list list ");
}

TEST_F(StatusBarTest, GnomesHostMayLoadTheMenuOnceMore) {
  const support::Variable desktop("XDG_CURRENT_DESKTOP", "GNOME");
  showQuietItem();
  tray.reset();
  tray.emplace();
  ASSERT_TRUE(qt::runUntil([&] { return tray->hasItem(); }));
  tray->aboutToShow();
  EXPECT_EQ(calls(), "list ");
}

TEST_F(StatusBarTest, TheMenuIsRefilledWhenItOpensAndEveryItemLooksAsRequested) {
  showQuietItem();
  tray->aboutToShow();
  EXPECT_EQ(calls(), "open ");
  const auto items = tray->items();
  ASSERT_EQ(items.size(), 4U);
  EXPECT_EQ(items[0].title(), "Quillfade · idle");
  EXPECT_FALSE(items[0].isEnabled());
  EXPECT_TRUE(items[1].isSeparator());
  EXPECT_EQ(items[2].title(), "Hide Annotations");
  EXPECT_TRUE(items[2].isEnabled());  // it has an action
  EXPECT_TRUE(items[2].isChecked());
  EXPECT_EQ(items[2].shortcut(), "Super+Control+Alt+D");
  ASSERT_EQ(items[3].children.size(), 1U);
  EXPECT_TRUE(items[3].isEnabled());
  EXPECT_EQ(items[3].children[0].title(), "Solid cover");
  EXPECT_FALSE(items[3].children[0].isChecked());
  tray->event(0, QStringLiteral("closed"));
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close "; })) << calls();
}

TEST_F(StatusBarTest, EachOpeningShowsTheSameItemsOnce) {
  showQuietItem();
  for (int round = 0; round < 3; ++round) {
    tray->aboutToShow();
    EXPECT_EQ(tray->items().size(), 4U);
    tray->event(0, QStringLiteral("closed"));
  }
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close open close open close "; })) << calls();
}

TEST_F(StatusBarTest, LinesThatLookDifferentAtTheNextOpeningKeepTheirPlace) {
  showQuietItem();
  const auto before = tray->items();
  const auto revision = tray->menuRevision();
  auto& items = delegate->items;
  items[0].title = "Quillfade · annotations hidden";
  items[2].state = ControlState::off;
  items[2].action = {};
  items[3].submenu[0] = delegate->choosable("Solid");
  items[3].submenu[0].tag = 7;
  items[3].submenu[0].state = ControlState::on;
  tray->aboutToShow();
  const auto now = tray->items();
  EXPECT_EQ(now[0].title(), "Quillfade · annotations hidden");
  EXPECT_FALSE(now[2].isChecked());
  EXPECT_FALSE(now[2].isEnabled());
  EXPECT_TRUE(now[3].children[0].isChecked());
  EXPECT_EQ(identifiers(now), identifiers(before));
  EXPECT_EQ(tray->menuRevision(), revision) << "A host would lose the menu that it is opening.";
  tray->event(now[3].children[0].id, QStringLiteral("clicked"));
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close Solid/7 "; })) << calls();
}

TEST_F(StatusBarTest, LinesOfAnotherKindReplaceTheEarlierOnesAtTheNextOpening) {
  showQuietItem();
  auto& items = delegate->items;
  const auto titles = [this] {
    tray->aboutToShow();
    std::vector<std::string> result;
    for (const auto& line : tray->items()) result.push_back(line.isSeparator() ? "-" : line.title());
    return result;
  };
  std::swap(items[1], items[3]);
  EXPECT_EQ(titles(), (std::vector<std::string>{"Quillfade · idle", "Mode", "Hide Annotations", "-"}));
  items.insert(items.begin(), delegate->choosable("Peek"));
  EXPECT_EQ(titles(), (std::vector<std::string>{"Peek", "Quillfade · idle", "Mode", "Hide Annotations", "-"}));
  items.erase(items.begin() + 1, items.begin() + 3);
  EXPECT_EQ(titles(), (std::vector<std::string>{"Peek", "Hide Annotations", "-"}));
  items.clear();
  EXPECT_EQ(titles(), std::vector<std::string>());
}

TEST_F(StatusBarTest, AChosenItemRunsAfterTheMenuHasClosedEvenIfTheHostDoesNotSaySo) {
  showQuietItem();
  tray->aboutToShow();
  tray->event(tray->items()[3].children[0].id, QStringLiteral("clicked"));
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close Solid cover/1 "; })) << calls();
  tray->event(0, QStringLiteral("closed"));
  EXPECT_EQ(calls(), "open close Solid cover/1 ");
}

TEST_F(StatusBarTest, AnItemRunsInTheTurnThatEndsTheOpeningEvenIfTheHostReportedTheEndBefore) {
  showQuietItem();
  tray->aboutToShow();
  const auto line = tray->items()[3].children[0].id;
  tray->event(0, QStringLiteral("closed"));
  EXPECT_EQ(calls(), "open ");
  tray->event(line, QStringLiteral("clicked"));
  std::vector<std::string> seen;
  EXPECT_TRUE(qt::runUntil([&] {
    seen.push_back(calls());
    return seen.back() == "open close Solid cover/1 ";
  }));
  EXPECT_EQ(std::ranges::count(seen, "open close "), 0);
}

TEST_F(StatusBarTest, AnOpeningEndsWhenTheTrayVanishes) {
  showQuietItem();
  tray->aboutToShow();
  tray.reset();
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close "; })) << calls();
}

TEST_F(StatusBarTest, APlainClickOpensTheMenuHereAndItClosesAsMenusDo) {
  showQuietItem();
  support::Input input(qt::display());
  input.moveTo(400, 300);
  tray->activateItem(400, 300);
  EXPECT_TRUE(qt::runUntil([&] { return QApplication::activePopupWidget() != nullptr; }));
  EXPECT_EQ(calls(), "open ");
  EXPECT_TRUE(qt::runUntil([&] {
    input.press(XK_Escape);
    qt::runPending();
    return QApplication::activePopupWidget() == nullptr;
  }));
  EXPECT_TRUE(qt::runUntil([&] { return calls() == "open close "; })) << calls();
}
