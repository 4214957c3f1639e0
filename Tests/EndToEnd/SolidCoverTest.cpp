// The solid cover, and which cover the settings ask for.

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

class SolidCover : public CoveredDesktop {
 protected:
  static bool isOneColor(const Picture& part) { return part == Picture(part.width(), part.height(), part.at(0, 0)); }
};

TEST_F(SolidCover, EverythingInsideIsOneColourAndEverythingOutsideStays) {
  drawInk();
  const Picture inked = client_.screenshot();
  const support::QuillfadeProgram quillfade(QUILLFADE_EXECUTABLE, server_.display(),
                                            {.settings = R"({"style": 1, "outline": false})"});
  EXPECT_TRUE(shows([&](const Picture& screen) { return isOneColor(screen.cropped(area)); }));
  const Picture covered = client_.screenshot();
  EXPECT_EQ(covered.differences(inked), covered.differences(inked, area));
  EXPECT_FALSE(std::filesystem::exists(quillfade.logPath())) << "Only live mirrors write the log.";
}

TEST_F(SolidCover, AClickReachesTheWindowBeneath) {
  client_.selectInput(board_, XCB_EVENT_MASK_BUTTON_PRESS);
  const Picture open = client_.screenshot();
  const support::QuillfadeProgram quillfade(QUILLFADE_EXECUTABLE, server_.display(), {.settings = R"({"style": 1})"});
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen.differences(open, area) > 10'000; }));
  support::Input(server_.display()).click(500, 400);
  EXPECT_TRUE(client_.waitForEvent(XCB_BUTTON_PRESS, support::defaultDeadline));
}

TEST_F(SolidCover, TheDemonstrationIsRememberedForTheNextStart) {
  const Picture open = client_.screenshot();
  const auto coversTheArea = [&](const Picture& screen) { return isOneColor(screen.cropped(inside)); };
  const support::PrivateHome home;
  support::writeFile(home.configuration() / "quillfade/settings.json", R"({"style": 1})");
  auto environment = home.environment(server_.display());
  environment["QUILLFADE_DEMO"] = "1";
  {
    const support::ChildProcess first({QUILLFADE_EXECUTABLE}, environment);
    ASSERT_TRUE(shows(coversTheArea));
  }
  ASSERT_TRUE(shows([&](const Picture& screen) { return screen == open; }));
  environment.erase("QUILLFADE_DEMO");
  const support::ChildProcess second({QUILLFADE_EXECUTABLE}, environment);
  EXPECT_TRUE(shows(coversTheArea));
}

}  // namespace
}  // namespace endtoend
