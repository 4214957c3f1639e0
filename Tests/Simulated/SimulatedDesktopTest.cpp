// The application's tests rely on the simulated desktop, so it is tested itself: it behaves as the ports say, and ends
// the process when a caller does not.

#include "Tests/Quillfade/OnDesktop.h"

namespace quillfade {
namespace {

TEST_F(OnDesktop, SimulatedFilesKeepDirectoriesApart) {
  auto& files = desktop.files();
  EXPECT_TRUE(files.write("/home/presenter/note", "text"));
  EXPECT_FALSE(files.write("/home/nobody/note", "text"));
  EXPECT_FALSE(files.openForWriting("/home/presenter/missing"));
  EXPECT_TRUE(files.fileExists("/home/presenter/note"));
  auto handle = files.openForWriting("/home/presenter/note");
  ASSERT_TRUE(handle);
  // Without seeking, writing begins at the start and truncates nothing.
  EXPECT_TRUE((*handle)->write("T"));
  EXPECT_EQ(files.content("/home/presenter/note"), "Text");
}

TEST(SimulatedPlatform, IsWhatTheFactoryMakes) {
  const auto made = platform::makePlatform({});
  ASSERT_NE(dynamic_cast<simulated::Desktop*>(made.get()), nullptr);
  EXPECT_EQ(made->screens().all().size(), 1U);
}

}  // namespace
}  // namespace quillfade
