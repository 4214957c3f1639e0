#include "Platform/Mac/Remote/RemoteControl.h"

#include <memory>
#include <optional>

#include "Platform/Mac/Foundation/RunLoop.h"
#include "Platform/Mac/Remote/MessagePort.h"
#include "Platform/Mac/Remote/RemoteProtocol.h"
#include "Tests/Mac/Native/Native.h"

namespace platform::mac::remote {
namespace {

using native::runAs;
using testing::ElementsAre;

class MacRemoteControl : public testing::Test {
 protected:
  void SetUp() override {
    if (remotePort(commandPortName())) GTEST_SKIP() << "Quillfade is running.";
  }
  void claim(RemoteControl::Handler handler) {
    ASSERT_EQ(control->claim(std::move(handler)), RemoteControl::Claim::first);
  }

  foundation::RunLoop loop;
  std::unique_ptr<RemoteControl> control = std::make_unique<RemoteControl>();
};

TEST_F(MacRemoteControl, WordsArriveAndTheReplyComesBack) {
  std::vector<std::string> heard;
  claim([&](const std::vector<std::string>& words, const RemoteControl::Completion& completion) {
    heard = words;
    completion({7, "two\nlines\n"});
  });
  const auto ending = runAs({"send", "peek", "2.5", ""});
  EXPECT_THAT(heard, ElementsAre("peek", "2.5", ""));
  EXPECT_EQ(ending.status, 7);
  EXPECT_EQ(ending.output, "two\nlines\n");
}

TEST_F(MacRemoteControl, AReplyMayComeLaterAndAQuestionBeforeIt) {
  std::shared_ptr<DelayedTask> later;
  claim([&](const std::vector<std::string>&, const RemoteControl::Completion& completion) {
    later = loop.after(1.5, [this, completion] {
      control->announceQuestion();
      completion({0, "answered"});
    });
  });
  EXPECT_EQ(runAs({"send", "toggle"}).output, "question\nanswered");
}

TEST_F(MacRemoteControl, TheLastWordsOfAnInstanceAreHeard) {
  claim([&](const std::vector<std::string>&, const RemoteControl::Completion& completion) {
    completion({0, "goodbye"});
    loop.post([this] { control = nullptr; });
  });
  EXPECT_EQ(runAs({"send", "quit"}).output, "goodbye");
}

TEST_F(MacRemoteControl, AnInstanceThatGoesWithoutAWordIsMissed) {
  claim([&](const std::vector<std::string>&, const RemoteControl::Completion&) {
    loop.post([this] { control = nullptr; });
  });
  EXPECT_EQ(runAs({"send", "toggle"}).output, sentence::noAnswer);
}

TEST_F(MacRemoteControl, ThereIsOneInstance) {
  EXPECT_EQ(runAs({"claim"}).output, "not taken");
  EXPECT_EQ(runAs({"send", "toggle"}).output, sentence::notRunning);
  claim([](const auto&, const auto&) {});
  EXPECT_EQ(runAs({"claim"}).output, "taken");
}

}  // namespace
}  // namespace platform::mac::remote
