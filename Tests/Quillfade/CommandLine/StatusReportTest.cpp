#include "Quillfade/CommandLine/StatusReport.h"

#include "Tests/Quillfade/Application/DelegateTest.h"

namespace quillfade {
namespace {

class StatusReport : public DelegateTest {
 protected:
  [[nodiscard]] std::string text() const { return statusText(overlay()); }
  [[nodiscard]] std::string json() const { return statusJson(overlay()); }
};

TEST_F(StatusReport, AtFirstNothingIsHiddenAndNoAreaIsChosen) {
  launch();
  EXPECT_EQ(text(),
            "Annotations: shown\n"
            "Area:        none chosen yet\n"
            "Style:       live\n"
            "Outline:     on\n");
  EXPECT_EQ(json(), "{\"enabled\": false, \"style\": \"live\", \"outline\": true, \"region\": null}\n");
}

TEST_F(StatusReport, ACoverThatIsOnIsReportedWithItsArea) {
  launchWithCoverOn();
  EXPECT_EQ(text(),
            "Annotations: hidden\n"
            "Area:        800 \xC3\x97 600 at (100, 100)\n"
            "Style:       live\n"
            "Outline:     on\n");
  EXPECT_EQ(json(),
            "{\"enabled\": true, \"style\": \"live\", \"outline\": true, "
            "\"region\": {\"x\": 100, \"y\": 100, \"width\": 800, \"height\": 600}}\n");
}

TEST_F(StatusReport, StyleAndOutlineAreReported) {
  store("style", std::int64_t{1});
  store("outline", false);
  launch();
  EXPECT_THAT(text(), testing::HasSubstr("Style:       solid\nOutline:     off\n"));
  EXPECT_THAT(json(), testing::HasSubstr(R"("style": "solid", "outline": false)"));
}

TEST_F(StatusReport, AnAreaIsReportedExactlyNegativeAndFractionalNumbersIncluded) {
  launch();
  overlay().setRegion({{-1440.5, -0.25}, {1439.75, 899.125}});
  EXPECT_THAT(text(), testing::HasSubstr("Area:        1439.75 \xC3\x97 899.125 at (-1440.5, -0.25)\n"));
  EXPECT_THAT(json(),
              testing::HasSubstr(R"("region": {"x": -1440.5, "y": -0.25, "width": 1439.75, "height": 899.125})"));
}

TEST_F(StatusReport, WhereInkMayBeInWindowsThatNobodySeesItSaysWhenItSeesNone) {
  const std::string sentence =
      "no ink window can be seen here; if there is ink all the same, only the solid cover hides it";
  desktop.capture().content.isPartial = true;
  launchWithCoverOn();
  EXPECT_THAT(text(), testing::HasSubstr("Note:        " + sentence + "\n"));
  EXPECT_THAT(json(), testing::HasSubstr(R"(, "note": ")" + sentence + "\"}\n"));
  desktop.capture().content.windows.push_back(listedWindow(7, "Gromit-mpx", 500));
  desktop.runLoop().advance(2);
  EXPECT_THAT(text(), testing::Not(testing::HasSubstr("Note:")));
  EXPECT_THAT(json(), testing::Not(testing::HasSubstr("note")));
  overlay().setEnabled(false);
  EXPECT_THAT(text(), testing::Not(testing::HasSubstr("Note:")));
}

TEST_F(StatusReport, WhereAllWindowsAreSeenNoInkIsNoNews) {
  launchWithCoverOn();
  EXPECT_THAT(text(), testing::Not(testing::HasSubstr("Note:")));
}

TEST_F(StatusReport, ThePeekLeavesTheAnnotationsHidden) {
  launchWithCoverOn();
  delegate->peek();
  EXPECT_THAT(shownWindows(), testing::IsEmpty());
  EXPECT_THAT(text(), testing::StartsWith("Annotations: hidden\n"));
}

}  // namespace
}  // namespace quillfade
