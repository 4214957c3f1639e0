// The parts that the delegate wires together, each alone.

#include "Quillfade/Application/Commands.h"
#include "Quillfade/Application/PermissionGate.h"
#include "Quillfade/Application/StatusMenu.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::IsEmpty;
using testing::SizeIs;

class ApplicationParts : public OnDesktop {
 protected:
  std::shared_ptr<OverlayController> overlay = std::make_shared<OverlayController>(desktop);
  std::shared_ptr<Commands> commands =
      std::make_shared<Commands>(desktop, overlay, std::make_shared<RegionSelector>(desktop));
};

TEST_F(ApplicationParts, TheGateAsksOnlyWhenTheLiveStyleIsInForce) {
  desktop.screenCaptureAccess().isGranted = false;
  desktop.dialogs().answerWith(platform::alertFirstButtonReturn + 1);
  Alerts alerts(desktop);
  PermissionGate gate(desktop, *overlay, alerts);
  EXPECT_TRUE(gate.ensureLivePermission().has_value());
  EXPECT_EQ(overlay->style(), CoverStyle::solid) << "the user's answer";
  EXPECT_TRUE(gate.ensureLivePermission().has_value());
  EXPECT_THAT(desktop.dialogs().alerts(), SizeIs(1));
}

TEST_F(ApplicationParts, AskingTheGateChangesNothing) {
  desktop.screenCaptureAccess().isGranted = false;
  desktop.dialogs().answerWith(platform::alertFirstButtonReturn + 1);
  Alerts alerts(desktop);
  PermissionGate gate(desktop, *overlay, alerts);
  EXPECT_EQ(gate.ask(), PermissionGate::Permission::solidPreferred);
  EXPECT_EQ(overlay->style(), CoverStyle::live);
}

TEST_F(ApplicationParts, CommandsNeedNoMenu) {
  EXPECT_TRUE(commands->wholeScreen().has_value());
  EXPECT_THAT(shownWindows(), SizeIs(1));
  commands->perform(HotKeyCommand::toggle);
  EXPECT_THAT(shownWindows(), IsEmpty());
}

TEST_F(ApplicationParts, TheMenuOutlivesTheCommandsThatItOffers) {
  StatusMenu statusMenu(desktop, *overlay, commands);
  statusMenu.create({});
  statusMenu.rebuildMenu();
  const auto& menu = *desktop.statusBar().items().back()->shownMenu();
  const platform::MenuItem item = *menu.item("Whole Screen");
  commands = nullptr;
  item.action(item);
  EXPECT_FALSE(overlay->isEnabled());
}

}  // namespace
}  // namespace quillfade
