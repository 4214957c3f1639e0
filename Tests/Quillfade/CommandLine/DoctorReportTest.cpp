#include "Quillfade/CommandLine/DoctorReport.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Quillfade/CommandLine/CommandLine.h"
#include "Quillfade/CommandLine/Doctor.h"

namespace platform {

inline void PrintTo(const Finding& finding, std::ostream* out) {
  *out << static_cast<int>(finding.health) << ' ' << finding.subject << ": " << finding.detail << " / " << finding.fix;
}

}  // namespace platform

namespace quillfade {
namespace {

using platform::Finding;
using platform::Health;
using platform::HotKeyAnswer;
using Kind = platform::HotKeyStanding::Kind;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::SizeIs;

const Finding fine{.subject = "Display", .detail = ":1"};
const Finding lacking{.subject = "Log", .health = Health::limited, .detail = "no \"directory\"", .fix = "Make it."};
const Finding broken{.subject = "Keys", .health = Health::fails, .detail = "none", .fix = "Free one."};
const std::string path = "/home/presenter/.config/quillfade/rules.json";

TEST(DoctorReport, EachFindingIsALineWithItsFixBelowIt) {
  EXPECT_EQ(doctorText({fine, lacking, broken}),
            "ok       Display  :1\n"
            "note     Log      no \"directory\"\n"
            "                  Make it.\n"
            "problem  Keys     none\n"
            "                  Free one.\n"
            "\n"
            "There is 1 problem.\n");
}

TEST(DoctorReport, TheLastLineCountsTheProblems) {
  EXPECT_THAT(doctorText({fine, lacking}), testing::EndsWith("\nEverything required works.\n"));
  EXPECT_THAT(doctorText({broken, broken}), testing::EndsWith("\nThere are 2 problems.\n"));
}

TEST(DoctorReport, OnlyAProblemMakesItFail) {
  EXPECT_EQ(doctorStatus({fine, lacking}), 0);
  EXPECT_EQ(doctorStatus({fine, broken}), 1);
}

TEST(DoctorReport, ProgramsGetTheSameAsJson) {
  EXPECT_EQ(doctorJson({lacking, broken}),
            R"({"works": false, "findings": [{"subject": "Log", "state": "note", "detail": "no \"directory\"", )"
            R"("fix": "Make it."}, {"subject": "Keys", "state": "problem", "detail": "none", "fix": "Free one."}]})"
            "\n");
  EXPECT_THAT(doctorJson({fine}), HasSubstr(R"({"works": true, )"));
  EXPECT_THAT(doctorJson({{.subject = "a\n\x1b\\"}}), HasSubstr(R"("a\u000a\u001b\\")"));
}

TEST(DoctorReport, TheRunningInstanceKnowsItsKeys) {
  const RunningInstance running{
      RunningReport{.hotKeys = {{"Control+F9", "toggle", {Kind::held}}, {"Control+F8", "peek", {Kind::taken}}}}};
  const auto findings = hotKeyFindings(running, builtInHotKeys, {}, path);
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_EQ(findings[0], (Finding{.subject = "Control+F9", .detail = "toggle: bound by the running Quillfade"}));
  EXPECT_EQ(findings[1].health, Health::fails);
  EXPECT_THAT(findings[1].detail, HasSubstr("peek: taken; it was refused to the running Quillfade"));
  EXPECT_THAT(findings[1].fix, HasSubstr(path));
}

TEST(DoctorReport, WithoutARunningInstanceTheTrialsTell) {
  const RunningInstance none = std::unexpected(platform::Error{"Quillfade is not running."});
  const auto findings =
      hotKeyFindings(none, builtInHotKeys, {HotKeyAnswer::granted, HotKeyAnswer::refused, HotKeyAnswer::unknown}, path);
  ASSERT_THAT(findings, SizeIs(4));
  EXPECT_EQ(findings[0].health, Health::works);
  EXPECT_THAT(findings[0].detail, HasSubstr("toggle: free"));
  EXPECT_EQ(findings[1].health, Health::fails);
  EXPECT_THAT(findings[1].detail, HasSubstr("another program holds it"));
  EXPECT_EQ(findings[2].health, Health::limited);
  EXPECT_EQ(findings[3].health, Health::limited) << "A key that was not tried is not known.";
  EXPECT_EQ(instanceFinding(none).detail, "Quillfade is not running.");
  EXPECT_EQ(instanceFinding(none).health, Health::limited);
}

TEST(DoctorReport, WhereProgramsShareKeysAGrantedOneIsNotCalledFree) {
  const RunningInstance none = std::unexpected(platform::Error{"Quillfade is not running."});
  const auto findings = hotKeyFindings(none, builtInHotKeys, {HotKeyAnswer::shared}, "");
  EXPECT_EQ(findings[0].health, Health::works);
  EXPECT_EQ(findings[0].detail, "toggle: granted to this check; another program may have it, too");
}

TEST(DoctorReport, WhatADesktopThatGivesKeysItselfHasAnsweredIsTold) {
  const RunningInstance running{RunningReport{.hotKeys = {{"Control+F7", "toggle", {Kind::held, "Press Ctrl+F7"}},
                                                          {"Control+F8", "peek", {Kind::awaited}},
                                                          {"Control+F9", "select-area", {Kind::declined}},
                                                          {"Control+F10", "whole-screen", {Kind::unassigned}}}}};
  const auto findings = hotKeyFindings(running, builtInHotKeys, {}, path);
  ASSERT_THAT(findings, SizeIs(4));
  EXPECT_EQ(findings[0].health, Health::works);
  EXPECT_THAT(findings[0].detail, testing::EndsWith("as the desktop says: Press Ctrl+F7"));
  for (const std::size_t each : {1U, 2U, 3U}) EXPECT_EQ(findings[each].health, Health::limited);
  EXPECT_EQ(findings[1].detail, "peek: the desktop has not answered yet");
  EXPECT_THAT(findings[2].fix, HasSubstr("\"quillfade select-area\""));
  EXPECT_THAT(findings[3].fix, HasSubstr("Choose keys in the desktop's keyboard settings"));
}

TEST(DoctorReport, WhereTheDesktopGivesNoKeysOneSentenceNamesTheCommandsToBind) {
  RunningReport report;
  for (const HotKey& key : builtInHotKeys) report.hotKeys.push_back(hotKeyState(key, {Kind::unavailable, "No portal"}));
  const auto findings = hotKeyFindings(report, builtInHotKeys, {}, path);
  ASSERT_THAT(findings, SizeIs(1));
  EXPECT_EQ(findings[0].health, Health::limited);
  EXPECT_EQ(findings[0].detail, "this desktop gives Quillfade no hot keys: No portal");
  EXPECT_EQ(findings[0].fix,
            "Bind the commands \"quillfade toggle\", \"quillfade peek\", \"quillfade select-area\" and \"quillfade "
            "whole-screen\" to keys in the desktop's own settings.");
  const RunningInstance none = std::unexpected(platform::Error{"Quillfade is not running."});
  const auto untried = hotKeyFindings(none, builtInHotKeys, {4, HotKeyAnswer::unavailable}, path);
  ASSERT_THAT(untried, SizeIs(1));
  EXPECT_EQ(untried[0].fix, findings[0].fix);
  EXPECT_EQ(hotKeyFindings(none, builtInHotKeys, {4, HotKeyAnswer::offered}, path)[3].health, Health::works);
}

TEST(DoctorReport, WithoutRulesOfOnesOwnNothingIsSaidOfThem) {
  EXPECT_THAT(rulesFindings({}, false, ""), testing::IsEmpty());
  const RunningInstance none = std::unexpected(platform::Error{"Quillfade is not running."});
  const auto findings = hotKeyFindings(none, builtInHotKeys, {HotKeyAnswer::refused}, "");
  EXPECT_EQ(findings[0].fix, "Release it in the keyboard settings of the desktop or of the program that holds it.");
}

TEST(DoctorReport, WhatCouldNotBeLookedAtIsNotSaidToWork) {
  const Finding unseen{.subject = "Permission", .health = Health::unseen, .detail = "cannot be looked at"};
  EXPECT_THAT(doctorText({unseen}), testing::StartsWith("unknown  Permission  cannot be looked at\n"));
  EXPECT_THAT(doctorText({unseen}), testing::EndsWith("\nThere is no problem that could be seen from here.\n"));
  EXPECT_THAT(doctorJson({unseen}), HasSubstr(R"({"works": false, )"));
  EXPECT_EQ(doctorStatus({unseen}), exitstatus::failure);
}

TEST(DoctorReport, WhatARunningInstanceSaysReadsBack) {
  for (const bool mayCapture : {true, false}) {
    const RunningReport report{.hotKeys = {{"Control+F9", "toggle", {Kind::held}}}, .mayCapture = mayCapture};
    EXPECT_EQ(parseRunningReport(runningReportText(report)), report);
  }
  EXPECT_EQ(parseRunningReport(""), RunningReport{});
}

TEST(DoctorReport, EachFaultInTheRulesIsAProblem) {
  const UserRules faulty{.faults = {"one", "two"}};
  const auto findings = rulesFindings(faulty, true, path);
  ASSERT_THAT(findings, SizeIs(2));
  EXPECT_EQ(findings[1].health, Health::fails);
  EXPECT_EQ(findings[1].detail, "two");
  EXPECT_THAT(findings[1].fix, HasSubstr(path));
  EXPECT_THAT(rulesFindings({}, false, path), ElementsAre(testing::Field(&Finding::detail, HasSubstr("none"))));
  EXPECT_THAT(rulesFindings({}, true, path), ElementsAre(testing::Field(&Finding::detail, path + " is valid")));
}

TEST(DoctorReport, HotKeysAreTextThatReadsBack) {
  const std::vector<HotKeyState> states{{"Control+F9", "toggle", {Kind::held}},
                                        {"Control+Alt+F9", "select-area", {Kind::taken}}};
  EXPECT_EQ(hotKeyText(states),
            "Control+F9      toggle       bound\n"
            "Control+Alt+F9  select-area  taken by another program\n");
  EXPECT_EQ(parseHotKeyText(hotKeyText(states)), states);
  const std::vector<HotKeyState> others{{"Control+F7", "toggle", {Kind::held, "Press: Ctrl+F7"}},
                                        {"Control+F8", "peek", {Kind::awaited}},
                                        {"Control+F9", "select-area", {Kind::unassigned}},
                                        {"Control+F10", "whole-screen", {Kind::unavailable, "An id is required"}}};
  EXPECT_EQ(parseHotKeyText(hotKeyText(others)), others);
  EXPECT_THAT(hotKeyText({{"Control+F7", "toggle", {Kind::held, "a\nb"}}}), HasSubstr("bound: a\\nb\n"));
  EXPECT_EQ(parseHotKeyText("Quillfade is still starting.\n\nx\n"), std::vector<HotKeyState>{});
}

TEST(DoctorReport, TheWholeReportHoldsEveryKeyAndTheRules) {
  const auto report = examine(false);
  for (const char* part : {"Control+Alt+Super+D", "Control+Alt+Super+P", "Control+Alt+Super+A", "Control+Alt+Super+F",
                           "Your rules", "Quillfade is not running."}) {
    EXPECT_THAT(report.output, HasSubstr(part));
  }
  EXPECT_THAT(examine(true).output, testing::StartsWith("{\"works\": "));
}

TEST(DoctorReport, AStoredAreaThatTheMenuCannotShowIsAProblem) {
  const auto findings = [](const std::string& area) { return regionFindings(area, "/settings.json"); };
  for (const char* area : {"{{0, 0}, {1e300, 600}}", "{{0, 0}, {600, 1e19}}"}) {
    ASSERT_THAT(findings(area), SizeIs(1)) << area;
    EXPECT_EQ(findings(area)[0].health, Health::fails);
    EXPECT_THAT(findings(area)[0].detail, HasSubstr("opening the menu ends Quillfade"));
    EXPECT_THAT(findings(area)[0].fix, HasSubstr("\"region\" from /settings.json"));
  }
  EXPECT_THAT(findings("{{0, 0}, {1e300, 600}}")[0].detail, HasSubstr("1e+300 × 600 points"));
  for (const char* area : {"{{1e300, 0}, {500, 600}}", "{{0, 0}, {1e18, 600}}", "{{0, 0}, {1e300, 5}}", "nonsense"}) {
    EXPECT_THAT(findings(area), SizeIs(0)) << area;
  }
  EXPECT_THAT(regionFindings(std::nullopt, "/settings.json"), SizeIs(0));
}

}  // namespace
}  // namespace quillfade
