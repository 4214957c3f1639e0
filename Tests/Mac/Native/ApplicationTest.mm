#include "Tests/Mac/Native/Native.h"

namespace platform::mac {
namespace {

// Whether `terminate:` returns, nobody promises; either way the process ends well.
TEST(MacApplication, LaunchesAndTerminates) {
  const auto ending = native::runAs({"run-and-terminate"});
  EXPECT_EQ(ending.status, 0);
  EXPECT_THAT(ending.output, testing::StartsWith("launched"));
  RecordProperty("output", ending.output);
}

}  // namespace
}  // namespace platform::mac
