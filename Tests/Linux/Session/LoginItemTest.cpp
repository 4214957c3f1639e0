#include <gtest/gtest.h>

#include <filesystem>

#include "Platform/Linux/Posix/DesktopEntry.h"
#include "Platform/Linux/Session/AutostartItem.h"
#include "Tests/Support/ChildProcess.h"

namespace fs = std::filesystem;
using namespace platform::linux;
using namespace platform::linux::session;
using platform::LoginItemStatus;
using support::readFile;
using support::writeFile;

namespace {

class LoginItemTest : public ::testing::Test {
 protected:
  support::TemporaryDirectory directory;
  fs::path entry = directory.path() / "autostart/org.quillfade.Quillfade.desktop";
  AutostartItem item{directory.path(), "/usr/bin/quillfade"};
};

}  // namespace

TEST_F(LoginItemTest, RegisteringAndUnregisteringChangesTheStatus) {
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  EXPECT_TRUE(item.registerItem());
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
  EXPECT_TRUE(item.unregisterItem());
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  EXPECT_FALSE(fs::exists(entry));
  EXPECT_TRUE(item.unregisterItem());
}

TEST_F(LoginItemTest, TheEntryIsAValidDesktopEntry) {
  for (const char* program : {"/usr/bin/quillfade", "/opt/my tools/100% \"odd\" $path\\`x`/quillfade"}) {
    ASSERT_TRUE(AutostartItem(directory.path(), program).registerItem());
    const std::string output = support::runToEnd({"desktop-file-validate", entry.string()});
    EXPECT_EQ(output, "") << readFile(entry);
  }
}

TEST_F(LoginItemTest, AnEntryThatTheDesktopSwitchedOffIsNotEnabled) {
  ASSERT_TRUE(item.registerItem());
  const std::string content = readFile(entry);
  writeFile(entry, content + "Hidden=true\n");
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  writeFile(entry, content + "Hidden=false\n");
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
  writeFile(entry, "[Desktop Entry]\nType=Application\nExec=x\nX-GNOME-Autostart-enabled=false\n");
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
  EXPECT_TRUE(item.registerItem());
  EXPECT_EQ(item.status(), LoginItemStatus::enabled);
}

TEST_F(LoginItemTest, SomethingOtherThanAnEntryIsNotEnabled) {
  for (const char* text : {"", "nonsense", "[Other]\nType=Application\nExec=x\n", "[Desktop Entry]\nType=Application\n",
                           "[Desktop Entry]\nExec=x\nType=Link\n"}) {
    writeFile(entry, text);
    EXPECT_EQ(item.status(), LoginItemStatus::notRegistered) << text;
  }
  fs::remove(entry);
  fs::create_directory(entry);
  EXPECT_EQ(item.status(), LoginItemStatus::notRegistered);
}

TEST_F(LoginItemTest, AFailureGivesTheSystemsReason) {
  writeFile(directory.path() / "autostart", "a file in the way");
  const auto result = item.registerItem();
  ASSERT_FALSE(result);
  EXPECT_NE(result.error().localizedDescription.find("Not a directory."), std::string::npos)
      << result.error().localizedDescription;
  EXPECT_FALSE(item.unregisterItem());
}

TEST(DesktopEntry, AProgramIsQuotedAsAnArgumentAndThenEscapedAsAValue) {
  EXPECT_EQ(posix::desktopExec("/usr/bin/quillfade"), R"("/usr/bin/quillfade")");
  EXPECT_EQ(posix::desktopExec("/a b/c"), R"("/a b/c")");
  EXPECT_EQ(posix::desktopExec("/100%/x"), R"("/100%%/x")");
  EXPECT_EQ(posix::desktopExec(R"(/a"b)"), R"("/a\\"b")");
  EXPECT_EQ(posix::desktopExec("/a$b`c"), R"("/a\\$b\\`c")");
  EXPECT_EQ(posix::desktopExec(R"(/a\b)"), R"("/a\\\\b")");
  EXPECT_EQ(posix::desktopExec("/a\nb"), R"("/a\nb")");
}

TEST(DesktopEntry, OnlyTheKeysOfItsOwnGroupCount) {
  const auto entry =
      posix::parseDesktopEntry("# comment\n[Desktop Entry]\nName = Some\r\n\n[Desktop Action x]\nName=Other\n");
  ASSERT_TRUE(entry);
  EXPECT_EQ(entry->size(), 1U);
  EXPECT_EQ(entry->at("Name"), "Some");
}
