#include "Quillfade/ProcessEntry.h"

#include <cstdlib>
#include <iostream>
#include <memory>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::IsEmpty;

using ProcessEntry = OnDesktop;

TEST_F(ProcessEntry, TheApplicationIsPreparedBeforeItRuns) {
  EXPECT_EQ(runApplication(desktop), 0);
  const Strings entries = desktop.record().entries();
  ASSERT_GE(entries.size(), 4U);
  EXPECT_THAT(Strings(entries.begin(), entries.begin() + 4),
              testing::ElementsAre("application: set delegate", "application: activation policy 1", "application: run",
                                   "application: activation policy 1"));
}

TEST_F(ProcessEntry, TheGlobalsHoldWhileTheApplicationRuns) {
  desktop.sharedApplication()->setSession([this] {
    EXPECT_EQ(app, desktop.sharedApplication());
    ASSERT_NE(delegate, nullptr);
    EXPECT_NE(delegate->statusItem(), nullptr);
  });
  EXPECT_EQ(runApplication(desktop), 0);
}

TEST_F(ProcessEntry, NothingIsLeftOnTheDesktopAfterwards) {
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  desktop.sharedApplication()->setSession([this] { EXPECT_EQ(shownWindows().size(), 1U); });
  EXPECT_EQ(runApplication(desktop), 0);
  EXPECT_EQ(delegate, nullptr);
  EXPECT_THAT(shownWindows(), IsEmpty());
  EXPECT_THAT(desktop.statusBar().items(), IsEmpty());
  EXPECT_THAT(desktop.hotKeys().registered(), IsEmpty());
}

TEST_F(ProcessEntry, AWholeSessionFromTheMenuToQuitting) {
  desktop.sharedApplication()->setSession([this] {
    auto& menu = *desktop.statusBar().items().back()->shownMenu();
    menu.choose("Whole Screen");
    desktop.runLoop().settle();
    desktop.capture().streams().back()->deliver(simulated::completeFrame());
    desktop.runLoop().settle();
    menu.choose("Hide Annotations");
    menu.choose("Quit Quillfade");
  });
  EXPECT_EQ(runApplication(desktop), 0);
  EXPECT_TRUE(desktop.sharedApplication()->isTerminated());
  EXPECT_EQ(countLogged("first live frame received"), 1U);
  EXPECT_EQ(logMessages().back(), "hide");
}

using ProcessEntryDeathTest = ProcessEntry;

// As a desktop whose `terminate` ends the process by exit() does.
TEST_F(ProcessEntryDeathTest, ExitingWhileItRunsTakesNothingDown) {
  const auto session = [this] {
    desktop.process().environment["QUILLFADE_DEMO"] = "1";
    desktop.sharedApplication()->setSession([] {
      const auto tellOfItsEnd = [](int* witness) {
        std::cerr << "the delegate was taken down";
        delete witness;
      };
      delegate->overlay().setOnStateChange([witness = std::shared_ptr<int>(new int, tellOfItsEnd)] {});
      std::exit(3);
    });
    runApplication(desktop);
  };
  EXPECT_EXIT(session(), testing::ExitedWithCode(3), testing::Not(testing::HasSubstr("taken down")));
}

TEST_F(ProcessEntryDeathTest, WithoutAnApplicationTheProcessEnds) {
  desktop.disconnect();
  EXPECT_DEATH(runApplication(desktop), "fatal error");
}

}  // namespace
}  // namespace quillfade
