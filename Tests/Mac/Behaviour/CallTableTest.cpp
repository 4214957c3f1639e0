// What the adapter asks of the system in whole scenes, call by call. The tables are kept in Tests/Mac/Tables; a change
// of them is a change of what a Mac sees, and is to be looked at. QUILLFADE_WRITE_TABLES=1 writes them anew.
#include <cstdlib>
#include <fstream>
#include <iterator>

#include "Platform/Examination.h"
#include "Platform/RemoteControl.h"
#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

class CallTableTest : public MacTest {
 protected:
  void SetUp() override {
    if (fake::schedule() != fake::Schedule::inTurns) GTEST_SKIP() << "free threads take the calls in any order";
  }

  // The calls of a scene.
  Strings callsOf(const std::function<void()>& scene) {
    Strings calls;
    launched([&] {
      (void)fake::takeRecord();
      scene();
      calls = fake::takeRecord();
    });
    return withoutPlainValues(calls);
  }

  // Without the calls on plain values.
  static Strings withoutPlainValues(Strings calls) {
    std::erase_if(calls, [](const std::string& call) {
      return call.contains("NSString ") || call.contains("NSNumber ") || call.contains("NSData ") ||
             call.contains("NSURL ") || call.contains("countByEnumerating");
    });
    return calls;
  }

  // With the calls themselves where the table differs.
  static void expectTable(const std::string& name, const Strings& calls) {
    const std::string path = std::string{QUILLFADE_MAC_TABLES} + '/' + name + ".txt";
    if (std::getenv("QUILLFADE_WRITE_TABLES") != nullptr) {
      std::ofstream file{path};
      for (const auto& call : calls) file << call << '\n';
      return;
    }
    Strings table;
    std::ifstream file{path};
    for (std::string line; std::getline(file, line);) table.push_back(line);
    const auto [call, entry] = std::ranges::mismatch(calls, table);
    EXPECT_TRUE(call == calls.end() && entry == table.end())
        << name << ", line " << std::distance(table.begin(), entry) + 1 << ": called was "
        << (call == calls.end() ? "nothing more" : *call) << ", the table has "
        << (entry == table.end() ? "nothing more" : *entry);
  }

  void coverAndUncover() {
    choose("Whole Screen");
    deliver(1, {.number = 1});
    fake::advance(1.6);
    press(keyD);
  }
};

TEST_F(CallTableTest, TwoRunsMakeTheSameCalls) {
  const Strings first = callsOf([this] {
    coverAndUncover();
    world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
    choose("Hide Annotations");
  });
  world.capture.windows.clear();
  world.defaults.clear();
  world.files.contents.clear();
  // Streams are counted on.
  const Strings second = callsOf([this] {
    choose("Whole Screen");
    deliver(static_cast<int>(world.streams().size()), {.number = 1});
    fake::advance(1.6);
    press(keyD);
    world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
    choose("Hide Annotations");
  });
  EXPECT_GT(first.size(), 200U);
  EXPECT_EQ(first, second);
}

TEST_F(CallTableTest, Menu) {
  expectTable("menu", callsOf([this] {
                world.openMenu();
                world.closeMenu();
              }));
}

TEST_F(CallTableTest, LiveCover) {
  expectTable("live-cover", callsOf([this] { coverAndUncover(); }));
}

TEST_F(CallTableTest, Restart) {
  world.defaults = {{"region", std::string{"{{100, 200}, {800, 300}}"}}, {"enabled", true}};
  expectTable("restart", callsOf([this] {
                world.capture.windows = {{.number = 9, .layer = 500, .owner = "org.example.ink"}};
                fake::advance(1.6);
              }));
}

TEST_F(CallTableTest, SolidCover) {
  world.defaults = {{"style", std::int64_t{1}}};
  expectTable("solid-cover", callsOf([this] {
                choose("Whole Screen");
                press(keyD);
              }));
}

TEST_F(CallTableTest, Selection) {
  expectTable("selection", callsOf([this] {
                choose("Select Area…");
                (void)world.draw();
                world.mouseDown({100, 100});
                world.mouseDragged({300, 300});
                (void)world.draw();
                world.mouseUp({300, 300});
                fake::settle();
              }));
}

TEST_F(CallTableTest, Permission) {
  world.captureAllowed = false;
  world.alertAnswers = {1000};
  expectTable("permission", callsOf([this] { choose("Whole Screen"); }));
}

// Both ends of it.
TEST_F(CallTableTest, RemoteCommand) {
  expectTable("remote-command", callsOf([] { ASSERT_TRUE(platform::sendToRunningInstance({"peek", "2.5"})); }));
}

TEST_F(CallTableTest, Doctor) {
  (void)fake::takeRecord();
  fake::inPool([] {
    (void)platform::examineDesktop({.hotKeys = {{keyD, controlOptionCommand}},
                                    .logFile = "Library/Logs/Quillfade.log",
                                    .settings = {"style"},
                                    .mayCapture = true});
  });
  expectTable("doctor", withoutPlainValues(fake::takeRecord()));
}

}  // namespace
}  // namespace quillfade
