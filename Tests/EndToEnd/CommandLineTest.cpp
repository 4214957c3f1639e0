// The program's command line: with a running instance, with none, and with no way to reach one.

#include "Tests/EndToEnd/DrivenDesktop.h"

namespace endtoend {
namespace {

using testing::HasSubstr;

class CommandLine : public DrivenDesktop {};

const Answer done{0, ""};

TEST_F(CommandLine, EveryCommandReachesTheRunningInstance) {
  auto& program = start(solidOff);
  EXPECT_EQ(run({"toggle"}), done);
  EXPECT_TRUE(showsCover());
  EXPECT_EQ(run({"peek", "0.5"}), done);
  EXPECT_TRUE(showsNoCover());
  EXPECT_TRUE(showsCover()) << "The peek ends by itself.";
  EXPECT_EQ(run({"outline", "on"}), done);
  EXPECT_THAT(status(), HasSubstr("\"outline\": true"));
  EXPECT_EQ(run({"outline", "off"}), done);
  EXPECT_EQ(run({"whole-screen"}), done);
  EXPECT_THAT(status(), HasSubstr(R"("region": {"x": 0, "y": 0, "width": 1280, "height": 800})"));
  EXPECT_EQ(run({"style", "live"}), done);
  EXPECT_TRUE(program.waitForMessage("first live frame received"));
  EXPECT_EQ(run({"style", "solid"}), done);
  EXPECT_THAT(status(), HasSubstr("\"style\": \"solid\""));
  EXPECT_EQ(run({"toggle"}), done);
  EXPECT_TRUE(showsNoCover());
  EXPECT_EQ(run({"quit"}), done);
  EXPECT_EQ(program.process().waitForExit(), 0) << program.process().output();
}

TEST_F(CommandLine, TheStatusIsForPeopleOrForPrograms) {
  start(solidOn);
  EXPECT_EQ(run({"status"}), (Answer{0,
                                     "Annotations: hidden\n"
                                     "Area:        400 \xC3\x97 200 at (200, 300)\n"
                                     "Style:       solid\n"
                                     "Outline:     off\n"}));
  EXPECT_EQ(run({"status", "--json"}),
            (Answer{0,
                    "{\"enabled\": true, \"style\": \"solid\", \"outline\": false, "
                    "\"region\": {\"x\": 200, \"y\": 300, \"width\": 400, \"height\": 200}}\n"}));
}

TEST_F(CommandLine, TheWindowsAreThoseOnTheScreenWithTheirJudgements) {
  start(solidOff);
  const auto editor = client_.createWindow({.frame = {10, 10, 640, 400}});
  client_.setClass(editor, "editor", "Edi\ntor");
  const auto ink = client_.createWindow({.frame = client_.screenFrame(), .color = 0, .depth = 32});
  client_.setClass(ink, "gromit-mpx", "Gromit-mpx");
  client_.setInputShape(ink, {});
  client_.sync();
  const auto listed = [&](const std::string& part) {
    return support::waitUntil([&] { return run({"windows"}).output.contains(part); });
  };
  EXPECT_TRUE(listed("Gromit-mpx")) << run({"windows"}).output;
  const Answer answer = run({"windows"});
  EXPECT_EQ(answer.status, 0);
  EXPECT_THAT(answer.output, testing::StartsWith("ID "));
  const std::string inLine = "[^\n]*";
  EXPECT_THAT(answer.output,
              testing::ContainsRegex("\n" + std::to_string(ink) + inLine + " 500 " + inLine + " 1280x800 " + inLine +
                                     " 100% " + inLine + " left out " + inLine + " overlay layer\n"));
  EXPECT_THAT(answer.output, testing::ContainsRegex("\n" + std::to_string(editor) + inLine + " 640x400 " + inLine +
                                                    " 25% " + inLine + " kept " + inLine + " not a large overlay\n"));
  EXPECT_THAT(answer.output, HasSubstr(R"(Edi\ntor)")) << "A name cannot end a line.";
}

TEST_F(CommandLine, ASecondStartLeavesTheFirstAloneAndEndsWithSuccess) {
  auto& first = start(solidOn);
  const support::PrivateHome home;
  auto environment = home.environment(server_.display());
  environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
  support::ChildProcess second({QUILLFADE_EXECUTABLE}, environment);
  EXPECT_EQ(second.waitForExit(), 0);
  EXPECT_EQ(second.output(), "Quillfade is already running.\n");
  EXPECT_TRUE(first.process().isRunning());
  EXPECT_TRUE(showsCover());
}

TEST_F(CommandLine, ASecondStartAskedToDemonstrateSaysThatItCannot) {
  start(solidOff);
  const support::PrivateHome home;
  auto environment = home.environment(server_.display());
  environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
  environment["QUILLFADE_DEMO"] = "1";
  support::ChildProcess second({QUILLFADE_EXECUTABLE}, environment);
  EXPECT_EQ(second.waitForExit(), 1);
  EXPECT_EQ(second.output(),
            "Quillfade is already running, and QUILLFADE_DEMO=1 works only at startup: quit it first.\n");
  EXPECT_TRUE(showsNoCover());
}

TEST_F(CommandLine, WordsOfLaunchersAndToolkitsStartTheProgram) {
  for (const std::vector<std::string>& words : std::vector<std::vector<std::string>>{
           {"-session", "12_34", "-qwindowtitle", "Ink"}, {"-psn_0_42", "-NSQuitAlwaysKeepsWindows", "NO"}}) {
    const support::PrivateHome home;
    auto environment = home.environment(server_.display());
    environment["DBUS_SESSION_BUS_ADDRESS"] = busAddress();
    std::vector<std::string> command{QUILLFADE_EXECUTABLE};
    command.insert(command.end(), words.begin(), words.end());
    support::ChildProcess program(command, environment);
    EXPECT_TRUE(support::waitUntil([&] { return run({"status"}).status == 0; })) << program.output();
    EXPECT_EQ(run({"quit"}), done);
    EXPECT_EQ(program.waitForExit(), 0) << program.output();
  }
}

TEST_F(CommandLine, WithoutARunningInstanceEveryCommandSaysSoAndFails) {
  const Answer notRunning{1, "Quillfade is not running.\n"};
  for (const char* word : {"toggle", "peek", "whole-screen", "select-area", "status", "windows", "quit"}) {
    EXPECT_EQ(run({word}), notRunning) << word;
  }
  EXPECT_EQ(run({"style", "live"}), notRunning);
  EXPECT_EQ(run({"outline", "on"}), notRunning);
}

TEST_F(CommandLine, HelpAndVersionNeedNothing) {
  const Answer help = run({"--help"});
  EXPECT_EQ(help.status, 0);
  EXPECT_THAT(help.output, testing::StartsWith("Usage: quillfade [COMMAND]\n"));
  EXPECT_EQ(run({"--version"}), (Answer{0, "Quillfade 1.1\n"}));
}

TEST_F(CommandLine, WordsThatAreNoCommandEndWithStatusTwo) {
  EXPECT_EQ(run({"hide"}), (Answer{2, "Unknown command \"hide\". Try \"quillfade --help\".\n"}));
  EXPECT_EQ(run({"style"}), (Answer{2, "style accepts \"solid\" or \"live\". Try \"quillfade --help\".\n"}));
  EXPECT_EQ(run({"peek", "soon"}).status, 2);
}

TEST_F(CommandLine, AnInstanceThatHasEndedMakesWayForTheNext) {
  start(solidOff);
  quillfade().process().kill();
  EXPECT_EQ(run({"status"}), (Answer{1, "Quillfade is not running.\n"}));
  start(solidOff);
  EXPECT_EQ(run({"status"}).status, 0);
}

class WithoutABus : public DrivenDesktop {
 protected:
  std::string busAddress() override { return "unix:path=/nonexistent"; }
};

TEST_F(WithoutABus, TheProgramRunsByKeyAndSaysWhatIsMissing) {
  auto& program = launch(solidOn, {});
  ASSERT_TRUE(showsCover()) << program.process().output();
  EXPECT_THAT(program.process().output(),
              HasSubstr("quillfade: There is no session bus: commands like \"quillfade toggle\" will not reach this "
                        "instance.\n"));
  press(XK_d);
  EXPECT_TRUE(showsNoCover());
  press(XK_d);
  EXPECT_TRUE(showsCover());
  EXPECT_TRUE(program.process().isRunning());
}

TEST_F(WithoutABus, ACommandSaysWhyItCannotReachAnything) {
  EXPECT_EQ(run({"toggle"}), (Answer{1, "There is no session bus, so a running Quillfade cannot be reached.\n"}));
}

}  // namespace
}  // namespace endtoend
