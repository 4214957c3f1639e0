// What the user sees when the desktop lets the program down.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

class Failure : public CoveredDesktop {};

TEST_F(Failure, AnXServerThatDiesEndsTheProgramWithAMessageAndWholeSettings) {
  auto& quillfade = cover();
  const std::string settings = support::readFile(quillfade.settingsPath());
  ASSERT_FALSE(settings.empty());
  server_.kill();
  EXPECT_EQ(quillfade.process().waitForExit(), 1) << quillfade.process().output();
  EXPECT_THAT(quillfade.process().output(), testing::HasSubstr("The connection to the display server was lost."));
  EXPECT_EQ(support::readFile(quillfade.settingsPath()), settings);
}

TEST_F(Failure, WithoutADisplayTheProgramSaysSo) {
  support::QuillfadeProgram quillfade(QUILLFADE_EXECUTABLE, ":54321");
  EXPECT_EQ(quillfade.process().waitForExit(), 1) << quillfade.process().output();
  EXPECT_THAT(quillfade.process().output(), testing::HasSubstr(":54321"));
}

TEST_F(Failure, AskedToEndTheProgramEndsWithSuccess) {
  auto& quillfade = cover();
  const Picture covered = client_.screenshot();
  quillfade.process().signal(SIGTERM);
  EXPECT_EQ(quillfade.process().waitForExit(), 0) << quillfade.process().output();
  EXPECT_NE(client_.screenshot().differences(covered), 0U) << "The cover is still there.";
}

TEST(Incapable, AServerWithoutOffScreenWindowsGetsTheFailureTextAndTheLogSaysWhy) {
  const support::XServer server({.arguments = {"-extension", "Composite"}});
  support::XClient client(server.display());
  support::QuillfadeProgram quillfade(QUILLFADE_EXECUTABLE, server.display());
  const std::string sentence = "This display lacks the X extension Composite, without which nothing can be captured.";
  ASSERT_TRUE(quillfade.waitForMessage("stream start failed: " + sentence)) << support::readFile(quillfade.logPath());
  EXPECT_TRUE(quillfade.waitForMessage("exclusion refresh failed: " + sentence, 2))
      << support::readFile(quillfade.logPath());
  EXPECT_EQ(quillfade.messages().front(), "show region=520x340 at 240,240 permission=false");
  // White text at 65 % on black; nothing else is on this screen. It starts where no shorter text would.
  const PixelRect firstWord{area.x + 30, area.y + area.height / 2 - 15, 60, 30};
  EXPECT_TRUE(support::waitUntil([&] {
    const Picture screen = client.screenshot();
    return screen.count(0xa6a6a6, firstWord, 8) > 20 && screen.count(0, inside, 8) > 170'000;
  }));
  EXPECT_TRUE(quillfade.process().isRunning());
}

}  // namespace
}  // namespace endtoend
