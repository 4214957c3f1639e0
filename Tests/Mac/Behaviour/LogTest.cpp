// The log file, byte for byte.
#include <regex>

#include "Tests/Mac/Behaviour/MacTest.h"

namespace quillfade {
namespace {

class LogTest : public MacTest {
 protected:
  static constexpr const char* path = "/Users/presenter/Library/Logs/Quillfade.log";

  [[nodiscard]] std::string withoutTimes() const {
    static const std::regex stamp{R"(\[\d{4}-\d\d-\d\d \d\d:\d\d:\d\d \+0000\])"};
    return std::regex_replace(log(), stamp, "[time]");
  }
};

TEST_F(LogTest, ACoverThatComesAndGoesLeavesTheseLines) {
  world.capture.windows = {{.number = 7, .layer = 0, .owner = "us.zoom.xos"},
                           {.number = 8, .layer = 500, .owner = "org.example.\"ink\""},
                           {.number = 9, .layer = 3, .frame = {{0, 0}, {100.9, 50.9}}, .owner = std::nullopt},
                           {.number = 10, .layer = 3, .owner = "org.quillfade.Quillfade"},
                           {.number = 11, .layer = 0, .owner = "com.example.editor"}};
  coveredLive([this] {
    deliver(1, {.number = 1});
    press(keyD);
  });
  EXPECT_EQ(withoutTimes(),
            "[time] show region=800x300 at 100,200 permission=true\n"
            "[time] high-layer candidates: [\"us.zoom.xos/layer0/1440x900\", "
            "\"org.example.\\\"ink\\\"/layer500/1440x900\", \"?/layer3/100x50\"]\n"
            "[time] excluded: [\"org.example.\\\"ink\\\"/layer500\", \"org.quillfade.Quillfade/layer3\"]\n"
            "[time] stream started, excluding 2 window(s)\n"
            "[time] first live frame received\n"
            "[time] hide\n");
  EXPECT_EQ(world.files.openHandles, 0);
}

TEST_F(LogTest, SaysThatThePermissionIsMissing) {
  world.captureAllowed = false;
  coveredLive([] {});
  EXPECT_TRUE(withoutTimes().starts_with("[time] show region=800x300 at 100,200 permission=false\n"));
}

TEST_F(LogTest, LinesAreAppendedToWhatIsThere) {
  world.files.contents[path] = "An older line.\n";
  coveredLive([] {});
  EXPECT_TRUE(withoutTimes().starts_with("An older line.\n[time] show"));
}

TEST_F(LogTest, WithoutItsDirectoryThereIsNoLog) {
  world.files.directories.clear();
  coveredLive([this] { EXPECT_EQ(shownFrames().size(), 1U); });
  EXPECT_TRUE(world.files.contents.empty());
}

TEST_F(LogTest, AFileThatCannotBeOpenedIsReplaced) {
  world.files.contents[path] = "An older line.\n";
  world.files.failures.open = true;
  coveredLive([] {});
  EXPECT_EQ(withoutTimes(), "[time] stream started, excluding 0 window(s)\n");
}

TEST_F(LogTest, AFullDiskEndsNothing) {
  for (const bool withoutReason : {false, true}) {
    for (bool fake::FileFailures::* failure :
         {&fake::FileFailures::seek, &fake::FileFailures::write, &fake::FileFailures::close}) {
      world.files.contents[path] = "An older line.\n";
      world.files.failures = {.withoutReason = withoutReason};
      world.files.failures.*failure = true;
      coveredLive([this] { EXPECT_EQ(shownFrames().size(), 1U); });
      const bool isWritten = failure == &fake::FileFailures::close;
      EXPECT_EQ(log().size() > 15, isWritten);
      EXPECT_EQ(world.files.openHandles, 0);
    }
  }
}

}  // namespace
}  // namespace quillfade
