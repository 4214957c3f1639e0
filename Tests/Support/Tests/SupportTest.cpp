// What the other tests rely on.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <chrono>
#include <stdexcept>

#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/Input.h"
#include "Tests/Support/XClient.h"
#include "Tests/Support/XServer.h"

namespace support {
namespace {

using std::chrono::milliseconds;

TEST(Wait, AConditionThatNeverHoldsIsGivenUpAtTheDeadline) {
  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(waitUntil([] { return false; }, milliseconds(30)));
  EXPECT_GE(std::chrono::steady_clock::now() - start, milliseconds(30));
}

TEST(Wait, AConditionIsCheckedUntilItHolds) {
  int asked = 0;
  EXPECT_TRUE(waitUntil([&] { return ++asked == 5; }));
}

TEST(ChildProcess, AProgramsOutputAndStatusAreKept) {
  ChildProcess process({"sh", "-c", "echo out; echo \"$GREETING\" >&2; exit 7"}, {{"GREETING", "hello"}});
  EXPECT_EQ(process.waitForExit(), 7);
  EXPECT_EQ(process.output(), "out\nhello\n");
}

TEST(ChildProcess, AProgramEndedByASignalReportsWhich) {
  ChildProcess process({"sleep", "600"});
  process.kill();
  EXPECT_EQ(process.exitStatus(), 128 + SIGKILL);
}

TEST(ChildProcess, EndingAProgramEndsWhatItStarted) {
  pid_t grandchild = 0;
  {
    ChildProcess process({"sh", "-c", "sleep 600 & echo $!; wait"});
    ASSERT_TRUE(waitUntil([&] { return process.output().ends_with('\n'); }));
    grandchild = std::stoi(process.output());
    ASSERT_EQ(::kill(grandchild, 0), 0);
  }
  EXPECT_TRUE(waitUntil([&] {
    // A process that has ended but has not been waited for still accepts signals; its state tells.
    const std::string status = readFile("/proc/" + std::to_string(grandchild) + "/stat");
    return status.empty() || status.contains(") Z ");
  }));
}

TEST(ChildProcess, ItCannotReachTheDevelopersDesktop) {
  ASSERT_EQ(setenv("DISPLAY", ":12345", 1), 0);
  EXPECT_EQ(runToEnd({"sh", "-c", "echo ${DISPLAY-none}"}), "none\n");
  ASSERT_EQ(unsetenv("DISPLAY"), 0);
}

TEST(Picture, PixelsOfAColourAreCountedInsideThePart) {
  const Picture picture(2, 2, std::vector<std::uint32_t>{0xff0000, 0x00ff00, 0xfe0101, 0xff0000});
  EXPECT_EQ(picture.count(0xff0000), 2U);
  EXPECT_EQ(picture.count(0xff0000, {0, 0, 2, 1}), 1U);
  EXPECT_EQ(picture.count(0xff0000, {-5, -5, 100, 100}, 1), 3U);
}

TEST(Picture, PicturesOfDifferentSizesDifferEverywhere) {
  EXPECT_EQ(Picture(2, 2, 0U).differences(Picture(2, 3, 0U)), 4U);
}

TEST(Picture, APngHoldsThePixelsAndItsPublishedLastChunk) {
  const TemporaryDirectory directory;
  writePng(Picture(3, 1, std::vector<std::uint32_t>{0xff0000, 0x00ff00, 0x0000ff}), directory.path() / "picture.png");
  const std::string file = readFile(directory.path() / "picture.png");
  // The end chunk never changes, and its checksum is published with the format.
  EXPECT_TRUE(file.ends_with(std::string("IEND\xae\x42\x60\x82")));
  const std::string row("\0\xff\0\0\0\xff\0\0\0\xff", 10);
  EXPECT_THAT(file, testing::HasSubstr(row));
}

TEST(XServer, AScreenshotShowsTheWindowsInTheirOrder) {
  const XServer server;
  XClient client(server.display());
  const auto lower = client.createWindow({.frame = {100, 100, 50, 50}, .color = 0xff112233});
  client.createWindow({.frame = {120, 120, 50, 50}, .color = 0xff445566});
  Picture screen = client.screenshot();
  EXPECT_EQ(screen.count(0x112233), 50U * 50 - 30 * 30);
  EXPECT_EQ(screen.count(0x445566), 50U * 50);
  client.raise(lower);
  EXPECT_EQ(client.screenshot().count(0x112233), 50U * 50);
}

TEST(XServer, AKilledServerIsNoticedByItsClients) {
  XServer server;
  XClient client(server.display());
  server.kill();
  EXPECT_THROW(client.sync(), std::runtime_error);
  EXPECT_FALSE(client.isConnected());
}

TEST(Input, AClickReachesTheWindowUnderThePointer) {
  const XServer server;
  XClient client(server.display());
  const auto window = client.createWindow({.frame = {10, 10, 100, 100}});
  client.selectInput(window, XCB_EVENT_MASK_BUTTON_PRESS);
  Input input(server.display());
  input.click(50, 60);
  EXPECT_TRUE(client.waitForEvent(XCB_BUTTON_PRESS, defaultDeadline));
  EXPECT_EQ(input.pointer(), std::pair(50, 60));
}

}  // namespace
}  // namespace support
