#include "Quillfade/CommandLine/CommandLine.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

namespace quillfade {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using Words = std::vector<std::string>;

template <class Kind>
bool means(const Words& words) {
  const auto parsed = parseCommand(words);
  return parsed && std::holds_alternative<Kind>(*parsed);
}

std::string complaint(const Words& words) {
  const auto parsed = parseCommand(words);
  return parsed ? "(understood)" : parsed.error();
}

TEST(CommandLine, NoWordsStartTheApplication) { EXPECT_TRUE(means<command::Start>({})); }

TEST(CommandLine, WordsOfLaunchersAndToolkitsStartTheApplication) {
  for (const Words& words : std::vector<Words>{{"-session", "2b4f_1700000000_42"},
                                               {"--session", "2b4f"},
                                               {"-qwindowtitle", "toggle"},
                                               {"-display", ":7", "-name", "x", "-reverse"},
                                               {"-style", "fusion"},
                                               {"-style=fusion"},
                                               {"-stylesheet=sheet.css"},
                                               {"-platform", "xcb", "-widgetcount"},
                                               {"-psn_0_12345"},
                                               {"-NSDocumentRevisionsDebugMode", "YES"},
                                               {"-ApplePersistenceIgnoreState", "YES", "-psn_0_1"},
                                               {"-session"}}) {
    EXPECT_TRUE(means<command::Start>(words)) << words.front();
  }
}

TEST(CommandLine, ACommandMayFollowLauncherWords) {
  EXPECT_TRUE(means<command::Toggle>({"-display", ":7", "toggle"}));
  EXPECT_EQ(complaint({"-session", "1", "hide"}), "Unknown command \"hide\".");
  const auto shared = parseCommand({"share", "--", "xterm", "-display", ":7"});
  EXPECT_THAT(std::get<command::Share>(shared.value()).program, testing::ElementsAre("xterm", "-display", ":7"));
}

TEST(CommandLine, WordsThatOnlyLookLikeLauncherWordsAreRefused) {
  for (const char* word :
       {"-sessions", "-NS", "-psn", "-nsfoo", "session", "style=fusion", "-reverse=1", "-x", "---name", "-", "--"}) {
    EXPECT_EQ(complaint({word}), "Unknown command \"" + std::string(word) + "\".");
  }
}

TEST(CommandLine, EveryCommandIsUnderstood) {
  EXPECT_TRUE(means<command::Toggle>({"toggle"}));
  EXPECT_TRUE(means<command::Peek>({"peek"}));
  EXPECT_TRUE(means<command::WholeScreen>({"whole-screen"}));
  EXPECT_TRUE(means<command::SelectArea>({"select-area"}));
  EXPECT_TRUE(means<command::Windows>({"windows"}));
  EXPECT_TRUE(means<command::Keys>({"keys"}));
  EXPECT_TRUE(means<command::Doctor>({"doctor"}));
  EXPECT_TRUE(means<command::Quit>({"quit"}));
  EXPECT_TRUE(means<command::Help>({"--help"}));
  EXPECT_TRUE(means<command::Help>({"-h"}));
  EXPECT_TRUE(means<command::Version>({"--version"}));
}

TEST(CommandLine, APeekLastsFiveSecondsUnlessToldOtherwise) {
  const auto seconds = [](const Words& words) { return std::get<command::Peek>(parseCommand(words).value()).seconds; };
  EXPECT_EQ(seconds({"peek"}), 5);
  EXPECT_EQ(seconds({"peek", "12"}), 12);
  EXPECT_EQ(seconds({"peek", "0.25"}), 0.25);
  EXPECT_EQ(seconds({"peek", "3600"}), 3600);
}

TEST(CommandLine, APeekAcceptsOnlyANumberOfSecondsInRange) {
  for (const char* wrong : {"0", "-1", "3600.1", "nan", "inf", "1e9", "five", "5s", "5 6", "0x10", "1,5", ""}) {
    EXPECT_EQ(complaint({"peek", wrong}),
              "peek takes a number of seconds above 0 and up to 3600, not \"" + std::string(wrong) + "\".");
  }
}

TEST(CommandLine, SharingTakesAProgramAndItsArguments) {
  const auto shared = std::get<command::Share>(parseCommand({"share", "--", "grab", "--view", "x"}).value());
  EXPECT_EQ(shared.view, ShareView::unmirrored);
  EXPECT_THAT(shared.program, testing::ElementsAre("grab", "--view", "x"));
  const auto clean = std::get<command::Share>(parseCommand({"share", "--view", "clean", "--", "grab"}).value());
  EXPECT_EQ(clean.view, ShareView::clean);
  EXPECT_THAT(clean.program, testing::ElementsAre("grab"));
  EXPECT_EQ(std::get<command::Share>(parseCommand({"share", "--view", "unmirrored", "--", "grab"}).value()).view,
            ShareView::unmirrored);
}

TEST(CommandLine, AnApplicationIsInstalledToShareWithOneViewOrTheOther) {
  const auto installed = std::get<command::InstallShare>(parseCommand({"share", "--install", "a.desktop"}).value());
  EXPECT_EQ(installed.view, ShareView::unmirrored);
  EXPECT_EQ(installed.application, "a.desktop");
  EXPECT_EQ(std::get<command::InstallShare>(parseCommand({"share", "--view", "clean", "--install", "a"}).value()).view,
            ShareView::clean);
  EXPECT_EQ(std::get<command::UninstallShare>(parseCommand({"share", "--uninstall", "a"}).value()).application, "a");
}

TEST(CommandLine, SharingAcceptsNothingElse) {
  for (const Words& wrong : std::vector<Words>{{"share"},
                                               {"share", "grab"},
                                               {"share", "--"},
                                               {"share", "--view", "clean"},
                                               {"share", "--view", "clean", "--uninstall", "a"},
                                               {"share", "--install"},
                                               {"share", "--install", "a", "b"}}) {
    EXPECT_EQ(complaint(wrong), "Usage: \"quillfade share [--view unmirrored|clean] -- PROGRAM\".");
  }
  EXPECT_EQ(complaint({"share", "--view", "dirty", "--", "grab"}),
            "--view accepts \"unmirrored\" or \"clean\", not \"dirty\".");
}

TEST(CommandLine, AStyleIsOneOfTwo) {
  const auto style = [](const Words& words) { return std::get<command::Style>(parseCommand(words).value()).style; };
  EXPECT_EQ(style({"style", "solid"}), CoverStyle::solid);
  EXPECT_EQ(style({"style", "live"}), CoverStyle::live);
  for (const Words& wrong : {Words{"style"}, {"style", "Live"}, {"style", "1"}, {"style", "live", "now"}}) {
    EXPECT_EQ(complaint(wrong), "style accepts \"solid\" or \"live\".");
  }
}

TEST(CommandLine, TheOutlineIsOnOrOff) {
  const auto shows = [](const Words& words) { return std::get<command::Outline>(parseCommand(words).value()).shows; };
  EXPECT_TRUE(shows({"outline", "on"}));
  EXPECT_FALSE(shows({"outline", "off"}));
  for (const Words& wrong : {Words{"outline"}, {"outline", "true"}, {"outline", "on", "off"}}) {
    EXPECT_EQ(complaint(wrong), "outline accepts \"on\" or \"off\".");
  }
}

TEST(CommandLine, AStatusIsForPeopleOrForPrograms) {
  const auto asJson = [](const Words& words) { return std::get<command::Status>(parseCommand(words).value()).asJson; };
  EXPECT_FALSE(asJson({"status"}));
  EXPECT_TRUE(asJson({"status", "--json"}));
  for (const Words& wrong : {Words{"status", "json"}, {"status", "--json", "--json"}}) {
    EXPECT_EQ(complaint(wrong), "status accepts only \"--json\".");
  }
}

TEST(CommandLine, DoctorReportsToPeopleOrPrograms) {
  const auto asJson = [](const Words& words) { return std::get<command::Doctor>(parseCommand(words).value()).asJson; };
  EXPECT_FALSE(asJson({"doctor"}));
  EXPECT_TRUE(asJson({"doctor", "--json"}));
  EXPECT_EQ(complaint({"doctor", "now"}), "doctor accepts only \"--json\".");
}

TEST(CommandLine, AnUnknownCommandIsNamed) {
  EXPECT_EQ(complaint({"hide"}), "Unknown command \"hide\".");
  EXPECT_EQ(complaint({"Toggle"}), "Unknown command \"Toggle\".");
  EXPECT_EQ(complaint({"--json"}), "Unknown command \"--json\".");
  EXPECT_EQ(complaint({""}), "Unknown command \"\".");
}

TEST(CommandLine, ExtraWordsAreRefusedNotIgnored) {
  for (const char* name : {"toggle", "whole-screen", "select-area", "windows", "keys", "quit", "--help", "--version"}) {
    EXPECT_EQ(complaint({name, "now"}), "Too many arguments for \"" + std::string(name) + "\".");
  }
  EXPECT_EQ(complaint({"peek", "5", "6"}), "Too many arguments for \"peek\".");
}

// The first word of each line that names a command.
Words commandsInHelp() {
  std::istringstream help(helpText().substr(0, helpText().find("\nEnvironment:")));
  Words names;
  for (std::string line; std::getline(help, line);) {
    if (line.starts_with("  ") && line.size() > 2 && line[2] != ' ')
      names.push_back(line.substr(2, line.find(' ', 2) - 2));
  }
  return names;
}

TEST(CommandLine, TheHelpNamesEveryCommand) {
  EXPECT_THAT(commandsInHelp(), testing::ElementsAre("toggle", "peek", "whole-screen", "select-area", "style",
                                                     "outline", "status", "windows", "keys", "quit", "doctor", "share",
                                                     "share", "share", "--help", "--version"));
  for (const auto& name : commandsInHelp()) EXPECT_THAT(complaint({name}), Not(StartsWith("There is no command")));
}

TEST(CommandLine, TheHelpTellsTheWayBackToTheLiveCoverAndWhatTheExitStatusMeans) {
  EXPECT_THAT(helpText(), HasSubstr("\"style live\" is the only way back from the solid cover to the live one"));
  EXPECT_THAT(helpText(), HasSubstr("Exit status: 0 done; 1 "));
  EXPECT_THAT(helpText(), HasSubstr("could not be carried out; 2 the command was not\nunderstood."));
  EXPECT_THAT(helpText(), HasSubstr("a missing tray or log, or Quillfade not running, does not count"));
  EXPECT_THAT(helpText(), HasSubstr("QUILLFADE_DEMO=1"));
  EXPECT_THAT(helpText(), EndsWith("\n"));
}

TEST(CommandLine, AComplaintIsOneLineWhateverTheWordIsMadeOf) {
  EXPECT_EQ(complaint({"\x1B[2J\nforged"}), R"(Unknown command "\u{1B}[2J\nforged".)");
  EXPECT_EQ(complaint({"quit", "\n"}), R"(Too many arguments for "quit".)");
}

TEST(CommandLine, TheVersionIsOneLine) { EXPECT_EQ(versionText(), "Quillfade 1.1\n"); }

}  // namespace
}  // namespace quillfade
