#include "Platform/Mac/Remote/RemoteProtocol.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Quillfade/Basics/Identity.h"
#include "Quillfade/CommandLine/CommandLine.h"

namespace platform::mac::remote {
namespace {

using testing::IsEmpty;

using Words = std::vector<std::string>;

TEST(RemoteProtocol, WordsComeOutAsTheyWentIn) {
  for (const Words& words :
       {Words{}, Words{"port", "toggle"}, Words{"port", "peek", "2.5"}, Words{"", "", "ü \n\t\""}}) {
    EXPECT_EQ(wordsOf(bytesOf(words)), words);
  }
  EXPECT_THAT(wordsOf(""), IsEmpty());
  EXPECT_EQ(wordsOf("cut short"), Words{"cut short"}) << "A message that ends early is read to its end.";
}

TEST(RemoteProtocol, AQuestionIsNoExitStatus) {
  for (const int status :
       {quillfade::exitstatus::success, quillfade::exitstatus::failure, quillfade::exitstatus::usage}) {
    EXPECT_NE(status, questionNumber);
  }
}

TEST(RemoteProtocol, PortsAreNamedAfterTheApplicationAndTheirProcess) {
  const std::string identifier{quillfade::applicationIdentifier};
  EXPECT_EQ(commandPortName(), identifier + ".commands");
  EXPECT_EQ(replyPortName(7), identifier + ".reply.7");
}

}  // namespace
}  // namespace platform::mac::remote
