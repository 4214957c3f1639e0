// The diagnostic log of the real program, byte for byte.

#include <regex>

#include "Tests/EndToEnd/CoveredDesktop.h"

namespace endtoend {
namespace {

class Log : public CoveredDesktop {};

TEST_F(Log, ACoverThatComesUpWritesItsLinesInOrder) {
  auto& quillfade = cover();
  const std::string stamp = R"(\[\d{4}-\d{2}-\d{2} \d{2}:\d{2}:\d{2} \+0000\] )";
  const std::regex expected(stamp + "show region=520x340 at 240,240 permission=true\n" +  //
                            stamp + "high-layer candidates: \\[\\]\n" +                   //
                            stamp + "excluded: \\[\"org\\.quillfade\\.Quillfade/layer\\d+\"\\]\n" + stamp +
                            "stream started, excluding 1 window\\(s\\)\n" +  //
                            stamp + "first live frame received\n");
  EXPECT_TRUE(support::waitUntil([&] { return quillfade.messages().size() >= 5; }));
  const std::string log = support::readFile(quillfade.logPath());
  EXPECT_TRUE(std::regex_match(log, expected)) << log;
}

TEST_F(Log, AnAnnotationProgramIsNamedAmongTheCandidatesAndTheExcluded) {
  drawInk();
  const auto& quillfade = cover();
  EXPECT_THAT(quillfade.messages(),
              testing::IsSupersetOf({std::string(R"(high-layer candidates: ["Gromit-mpx/layer500/1280x799"])"),
                                     std::string("stream started, excluding 2 window(s)")}));
  EXPECT_THAT(quillfade.messages(), testing::Contains(testing::AllOf(testing::StartsWith("excluded: ["),
                                                                     testing::HasSubstr("\"Gromit-mpx/layer500\""))));
}

TEST_F(Log, AnExistingLogIsContinued) {
  auto& quillfade = cover();
  const std::string before = support::readFile(quillfade.logPath());
  quillfade.restart();
  EXPECT_TRUE(quillfade.waitForMessage(firstFrame, 2));
  EXPECT_TRUE(support::readFile(quillfade.logPath()).starts_with(before));
}

TEST_F(Log, WithoutItsDirectoryThereIsNoLogAndTheCoverComesUpAllTheSame) {
  const Picture clean = client_.screenshot();
  drawInk();
  const support::QuillfadeProgram quillfade(QUILLFADE_EXECUTABLE, server_.display(), {.hasLogDirectory = false});
  EXPECT_TRUE(shows([&](const Picture& screen) { return screen.differences(clean, inside) == 0; }));
  EXPECT_FALSE(std::filesystem::exists(quillfade.logPath().parent_path()));
}

}  // namespace
}  // namespace endtoend
