#include "Quillfade/Cover/DiagnosticLog.h"

#include <limits>

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

using platform::CaptureWindow;
using testing::ElementsAre;

class DiagnosticLogTest : public OnDesktop {
 protected:
  [[nodiscard]] std::optional<std::string> file() const { return desktop.files().content(std::string(logPath)); }

  // The first of the two lines, for these windows.
  std::string candidates(const std::vector<CaptureWindow>& windows) {
    log.logCandidates({{}, windows}, {});
    const Strings messages = logMessages();
    return messages.size() < 2 ? "" : messages[messages.size() - 2];
  }

  DiagnosticLog log{desktop};
};

TEST_F(DiagnosticLogTest, TheFirstLineCreatesTheFile) {
  desktop.clock().setStart(std::chrono::sys_days{std::chrono::year{2026} / 11 / 15} + std::chrono::hours{23} +
                           std::chrono::minutes{56} + std::chrono::milliseconds{39'999});
  log.log("hide");
  EXPECT_EQ(file(), "[2026-11-15 23:56:39 +0000] hide\n");
}

TEST_F(DiagnosticLogTest, TimesArePaddedAndFollowTheClock) {
  desktop.clock().setStart(std::chrono::sys_days{std::chrono::year{2027} / 1 / 2} + std::chrono::seconds{3});
  log.log("a");
  desktop.runLoop().advance(61);
  log.log("b");
  EXPECT_EQ(file(), "[2027-01-02 00:00:03 +0000] a\n[2027-01-02 00:01:04 +0000] b\n");
}

TEST_F(DiagnosticLogTest, EachCallAddsOneLineAtTheEndOfAnExistingFile) {
  desktop.files().put(std::string(logPath), "earlier content\n");
  log.log("one");
  log.log("two");
  EXPECT_TRUE(file()->starts_with("earlier content\n["));
  const auto content = *file();
  EXPECT_EQ(std::ranges::count(content, '\n'), 3);
  EXPECT_TRUE(content.ends_with("] two\n"));
}

TEST_F(DiagnosticLogTest, AnEmptyExistingFileIsAppendedTo) {
  desktop.files().put(std::string(logPath), "");
  log.log("one");
  EXPECT_THAT(logMessages(), ElementsAre("one"));
}

TEST_F(DiagnosticLogTest, EveryCallClosesTheFile) {
  log.log("one");
  log.log("two");
  EXPECT_EQ(desktop.files().openHandleCount(), 0);
}

TEST_F(DiagnosticLogTest, TheHomeDirectoryDecidesWhereTheFileIs) {
  desktop.process().home = "/elsewhere";
  desktop.files().makeDirectory("/elsewhere/Library/Logs");
  log.log("here");
  EXPECT_TRUE(desktop.files().content("/elsewhere/Library/Logs/Quillfade.log"));
  EXPECT_FALSE(file());
}

TEST_F(DiagnosticLogTest, WithoutTheDirectoryNothingIsWrittenAndNothingIsReported) {
  desktop.process().home = "/nowhere";
  log.log("lost");
  EXPECT_EQ(desktop.files().fileCount(), 0U);
  EXPECT_TRUE(desktop.dialogs().alerts().empty());
}

TEST_F(DiagnosticLogTest, AFileThatCannotBeOpenedIsReplaced) {
  desktop.files().put(std::string(logPath), "earlier content\n");
  desktop.files().fail({.open = true});
  log.log("new");
  EXPECT_THAT(logMessages(), ElementsAre("new"));
  EXPECT_FALSE(file()->contains("earlier"));
}

TEST_F(DiagnosticLogTest, ALineThatCannotBeWrittenInAnyWayIsLost) {
  desktop.files().put(std::string(logPath), "earlier content\n");
  desktop.files().fail({.open = true, .wholeWrite = true});
  log.log("lost");
  EXPECT_EQ(file(), "earlier content\n");
}

TEST_F(DiagnosticLogTest, AFullDiskLosesTheLineAndKeepsTheFile) {
  log.log("one");
  const auto before = file();
  desktop.files().fail({.spaceLeft = 3});
  log.log("two");
  EXPECT_EQ(file(), before);
  EXPECT_EQ(desktop.files().openHandleCount(), 0);
}

TEST_F(DiagnosticLogTest, AFileThatOpensButCannotBeAppendedToLosesTheLineAndKeepsWhatItHas) {
  for (const simulated::FileFailures& failures :
       {simulated::FileFailures{.seek = true}, simulated::FileFailures{.handleWrite = true}}) {
    desktop.files().put(std::string(logPath), "earlier content\n");
    desktop.files().fail(failures);
    log.log("lost");
    EXPECT_EQ(file(), "earlier content\n");
    EXPECT_EQ(desktop.files().openHandleCount(), 0);
    desktop.files().fail({});
    log.log("kept");
    EXPECT_TRUE(file()->starts_with("earlier content\n["));
    EXPECT_TRUE(file()->ends_with("] kept\n"));
    EXPECT_FALSE(file()->contains("lost"));
  }
}

TEST_F(DiagnosticLogTest, AFailureToCloseIsIgnored) {
  log.log("one");
  desktop.files().fail({.close = true});
  log.log("two");
  EXPECT_THAT(logMessages(), ElementsAre("one", "two"));
}

TEST_F(DiagnosticLogTest, ALineThatIsNotTextIsDropped) {
  log.log("\xFF\xFE");
  EXPECT_FALSE(file());
}

TEST_F(DiagnosticLogTest, MessagesAreWrittenUnchanged) {
  log.log("stream stopped: \"Ünïcode\" \\ …");
  EXPECT_THAT(logMessages(), ElementsAre("stream stopped: \"Ünïcode\" \\ …"));
}

TEST_F(DiagnosticLogTest, LinesFromOtherThreadsAreWritten) {
  simulated::runOnAnotherThread([this] { log.log("from afar"); });
  EXPECT_THAT(logMessages(), ElementsAre("from afar"));
}

TEST_F(DiagnosticLogTest, WithoutWindowsBothListsAreEmptyBrackets) {
  log.logCandidates({}, {});
  EXPECT_THAT(logMessages(), ElementsAre("high-layer candidates: []", "excluded: []"));
}

TEST_F(DiagnosticLogTest, CandidatesShowOwnerLayerAndWholeSize) {
  EXPECT_EQ(
      candidates({listedWindow(1, "com.example.notes", 3, {1440.7, 900}), listedWindow(2, std::nullopt, 25, {20, 20})}),
      R"(high-layer candidates: ["com.example.notes/layer3/1440x900", "?/layer25/20x20"])");
}

TEST_F(DiagnosticLogTest, ExcludedWindowsShowOwnerAndLayerInTheOrderGiven) {
  const std::vector excluded{listedWindow(9, "com.example.notes", 3), listedWindow(1, std::nullopt, -2)};
  log.logCandidates({}, excluded);
  EXPECT_THAT(logMessages(),
              ElementsAre("high-layer candidates: []", R"(excluded: ["com.example.notes/layer3", "?/layer-2"])"));
}

TEST_F(DiagnosticLogTest, WindowsAtOrBelowTheNormalLayerAreNotCandidates) {
  EXPECT_EQ(candidates({listedWindow(1, "com.example.notes", 0), listedWindow(2, "com.example.notes", -1)}),
            "high-layer candidates: []");
}

TEST_F(DiagnosticLogTest, AConferencingProgramNamedInTheTableIsACandidateAtAnyLayer) {
  EXPECT_EQ(candidates({listedWindow(1, "com.slack.Slack", 0, {10, 10}), listedWindow(2, "us.zoom.xos", -4, {5, 6})}),
            R"(high-layer candidates: ["com.slack.Slack/layer0/10x10", "us.zoom.xos/layer-4/5x6"])");
}

TEST_F(DiagnosticLogTest, AFragmentOrOtherCaseMakesNoCandidateAtTheNormalLayer) {
  EXPECT_EQ(candidates({listedWindow(1, "com.slack.slack", 0), listedWindow(2, "org.sample.SlackBridge", 0),
                        listedWindow(3, std::nullopt, 0)}),
            "high-layer candidates: []");
}

TEST_F(DiagnosticLogTest, WindowsOffScreenAreNotCandidates) {
  CaptureWindow hidden = listedWindow(1, "com.example.notes", 9);
  hidden.isOnScreen = false;
  EXPECT_EQ(candidates({hidden}), "high-layer candidates: []");
}

TEST_F(DiagnosticLogTest, OwnWindowsAreNeverCandidates) {
  EXPECT_EQ(candidates({listedWindow(1, desktop.process().identifier, 2000)}), "high-layer candidates: []");
}

TEST_F(DiagnosticLogTest, WithoutAnOwnIdentifierWindowsWithoutAnOwnerAreNotCandidates) {
  desktop.process().identifier = std::nullopt;
  EXPECT_EQ(candidates({listedWindow(1, std::nullopt, 2000), listedWindow(2, "a", 1, {1, 1})}),
            R"(high-layer candidates: ["a/layer1/1x1"])");
}

TEST_F(DiagnosticLogTest, WindowsOfOtherDisplaysAreCandidates) {
  CaptureWindow elsewhere = listedWindow(1, "a", 1, {30, 40});
  elsewhere.frame.origin = {90'000, -90'000};
  EXPECT_EQ(candidates({elsewhere}), R"(high-layer candidates: ["a/layer1/30x40"])");
}

TEST_F(DiagnosticLogTest, CandidatesAreNotFilteredByTheExclusionRules) {
  EXPECT_EQ(candidates({listedWindow(1, "a", 1, {1, 1}), listedWindow(2, "b", 900, {2, 2})}),
            R"(high-layer candidates: ["a/layer1/1x1", "b/layer900/2x2"])");
}

TEST_F(DiagnosticLogTest, QuotesAndControlCharactersInAnEntryAreEscaped) {
  EXPECT_EQ(candidates({listedWindow(1, "a\"b\\c\nd", 1, {1, 1})}),
            R"(high-layer candidates: ["a\"b\\c\nd/layer1/1x1"])");
}

using DiagnosticLogDeathTest = DiagnosticLogTest;

TEST_F(DiagnosticLogDeathTest, AFrameThatIsNotFiniteEndsTheProcess) {
  const platform::ShareableContent content{{}, {listedWindow(1, "a", 1, {std::numeric_limits<double>::infinity(), 1})}};
  EXPECT_DEATH(log.logCandidates(content, {}), "fatal error");
}

}  // namespace
}  // namespace quillfade
