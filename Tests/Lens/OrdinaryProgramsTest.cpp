// Programs that capture nothing run through the lens as they would without it.

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

#include "Tests/Lens/OpenLens.h"
#include "Tests/Support/QuillfadeProgram.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

using support::ChildProcess;
using support::Picture;
using support::PixelRect;

class OrdinaryPrograms : public testing::Test {
 protected:
  std::unique_ptr<ChildProcess> start(std::vector<std::string> words) {
    return std::make_unique<ChildProcess>(throughLens("unmirrored", std::move(words)),
                                          home_.environment(server_.display()));
  }

  std::size_t colorsOnScreen() {
    const Picture screen = client_.screenshot();
    std::set<std::uint32_t> colors;
    for (int y = 0; y < screen.height(); y += 2) {
      for (int x = 0; x < screen.width(); x += 2) colors.insert(screen.at(x, y));
    }
    return colors.size();
  }

  // Whether the program shows something with this many colours, and then other things.
  testing::AssertionResult isAnimated(ChildProcess& program, std::size_t colors) {
    if (!support::waitUntil([&] { return colorsOnScreen() >= colors; })) {
      return testing::AssertionFailure() << "It shows nothing: " << program.output();
    }
    const Picture before = client_.screenshot();
    if (!support::waitUntil([&] { return client_.screenshot() != before; })) {
      return testing::AssertionFailure() << "It stands still: " << program.output();
    }
    return testing::AssertionSuccess();
  }

  support::XServer server_;
  support::XClient client_{server_.display()};
  support::PrivateHome home_;
};

TEST_F(OrdinaryPrograms, ATerminal) {
  const auto terminal =
      start({"xterm", "-bg", "#203040", "-fg", "#e0d0c0", "-e", "cat /etc/passwd; exec tail -f /dev/null"});
  EXPECT_TRUE(support::waitUntil([&] {
    const Picture screen = client_.screenshot();
    return screen.count(0x203040) > 10'000 && screen.count(0xe0d0c0) > 200;
  })) << terminal->output();
}

TEST_F(OrdinaryPrograms, AProgramOfTheQtToolkit) {
  const std::string settings = R"({"enabled": true, "style": 1, "region": "{{100, 100}, {300, 200}}"})";
  support::writeFile(home_.configuration() / "quillfade/settings.json", settings);
  const auto program = start({QUILLFADE_EXECUTABLE});
  EXPECT_TRUE(support::waitUntil([&] { return client_.findTopLevel("Quillfade").has_value(); })) << program->output();
}

TEST_F(OrdinaryPrograms, AProgramOfTheGtkToolkit) {
  const auto program = start({"gromit-mpx"});
  EXPECT_TRUE(support::waitUntil([&] { return client_.findTopLevel("Gromit-mpx").has_value(); })) << program->output();
}

TEST_F(OrdinaryPrograms, GearsByOpenGL) {
  const auto gears = start({"glxgears"});
  EXPECT_TRUE(isAnimated(*gears, 50));
}

TEST_F(OrdinaryPrograms, AVideoPlayer) {
  const auto player = start({"ffplay", "-loglevel", "error", "-an", "-f", "lavfi", "testsrc2=size=320x240:rate=30"});
  EXPECT_TRUE(isAnimated(*player, 20));
}

}  // namespace
}  // namespace lens
