// A second start, and what the first one says at its own.

#include <algorithm>
#include <iostream>
#include <sstream>

#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/ProcessEntry.h"
#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

// What a stream says meanwhile.
class Overheard {
 public:
  explicit Overheard(std::ostream& stream) : stream_(stream), before_(stream.rdbuf(heard_.rdbuf())) {}
  ~Overheard() { stream_.rdbuf(before_); }
  Overheard(const Overheard&) = delete;
  Overheard& operator=(const Overheard&) = delete;
  [[nodiscard]] std::string text() const { return heard_.str(); }

 private:
  std::ostringstream heard_;
  std::ostream& stream_;
  std::streambuf* before_;
};

using OnlyInstance = OnDesktop;

TEST_F(OnlyInstance, TheFirstOneRunsAndTakesCommands) {
  const Overheard output(std::cout);
  const Overheard errors(std::cerr);
  desktop.sharedApplication()->setSession([this] {
    desktop.remoteControl().send({"whole-screen"});
    desktop.remoteControl().send({"status", "--json"});
    desktop.remoteControl().send({"quit"});
    desktop.runLoop().settle();
    EXPECT_THAT(shownFrames(), ElementsAre(platform::Rect{{0, 0}, {1440, 900}}));
  });
  EXPECT_EQ(runOnlyInstance(desktop), 0);
  ASSERT_THAT(desktop.remoteControl().replies(), SizeIs(3));
  EXPECT_THAT(desktop.remoteControl().replies()[1].output, HasSubstr("\"enabled\": true"));
  EXPECT_TRUE(desktop.sharedApplication()->isTerminated());
  EXPECT_EQ(output.text() + errors.text(), "");
}

TEST_F(OnlyInstance, TheSecondOneSaysSoAndDoesNotRun) {
  desktop.remoteControl().nextClaim = platform::RemoteControl::Claim::taken;
  const Overheard output(std::cout);
  EXPECT_EQ(runOnlyInstance(desktop), 0);
  EXPECT_EQ(output.text(), "Quillfade is already running.\n");
  EXPECT_THAT(desktop.record().entries(), ElementsAre("claim the remote control"));
}

TEST_F(OnlyInstance, ASecondOneThatIsToDemonstrateSaysThatItCannot) {
  desktop.remoteControl().nextClaim = platform::RemoteControl::Claim::taken;
  desktop.process().environment["QUILLFADE_DEMO"] = "1";
  const Overheard output(std::cout);
  const Overheard errors(std::cerr);
  EXPECT_EQ(runOnlyInstance(desktop), exitstatus::failure);
  EXPECT_EQ(errors.text(),
            "Quillfade is already running, and QUILLFADE_DEMO=1 works only at startup: quit it first.\n");
  EXPECT_EQ(output.text(), "");
  EXPECT_THAT(desktop.record().entries(), ElementsAre("claim the remote control"));
  desktop.process().environment["QUILLFADE_DEMO"] = "true";
  EXPECT_EQ(runOnlyInstance(desktop), 0);
  EXPECT_EQ(output.text(), "Quillfade is already running.\n");
}

TEST_F(OnlyInstance, ARulesFileThatCannotBeReadIsToldOnceAtTheStart) {
  desktop.rulesFile().content = std::unexpected(platform::Error{"Line 3 is no JSON."});
  const Overheard errors(std::cerr);
  EXPECT_EQ(runOnlyInstance(desktop), 0);
  EXPECT_THAT(errors.text(), testing::StartsWith("quillfade: /home/presenter/.config/quillfade/rules.json: "));
  EXPECT_THAT(errors.text(), HasSubstr("Line 3 is no JSON."));
  EXPECT_EQ(std::ranges::count(errors.text(), '\n'), 1);
}

TEST_F(OnlyInstance, WithoutAWayInItRunsAllTheSame) {
  desktop.remoteControl().nextClaim = platform::RemoteControl::Claim::unavailable;
  bool ran = false;
  desktop.sharedApplication()->setSession([&] { ran = true; });
  EXPECT_EQ(runOnlyInstance(desktop), 0);
  EXPECT_TRUE(ran);
}

}  // namespace
}  // namespace quillfade
