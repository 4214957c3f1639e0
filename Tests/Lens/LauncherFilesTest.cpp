// `quillfade share --install` and `--uninstall`, as a user would type them.

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "Platform/Linux/Posix/DesktopEntry.h"
#include "Tests/Support/ChildProcess.h"
#include "Tests/Support/Desktop.h"
#include "Tests/Support/XServer.h"

namespace lens {
namespace {

namespace fs = std::filesystem;
using platform::linux::posix::parseDesktopEntry;
using support::ChildProcess;
using support::Environment;
using testing::EndsWith;
using testing::HasSubstr;

constexpr std::string_view map =
    "[Desktop Entry]\nType=Application\nName=Map\nExec=map %U\nActions=new;\n\n"
    "[Desktop Action new]\nName=New\nExec=map --new\n";

class LauncherFiles : public testing::Test {
 protected:
  struct Said {
    std::optional<int> status;
    std::string output;
  };

  Said share(std::vector<std::string> words) {
    words.insert(words.begin(), {QUILLFADE_EXECUTABLE, "share"});
    ChildProcess process(words, environment_);
    const auto status = process.waitForExit();
    return {status, process.output()};
  }

  static testing::AssertionResult isValid(const fs::path& entry) {
    ChildProcess process({"desktop-file-validate", entry});
    if (process.waitForExit() == 0) return testing::AssertionSuccess();
    return testing::AssertionFailure() << process.output();
  }

  static std::string exec(const std::string& view, const std::string& command) {
    return platform::linux::posix::desktopExec(fs::canonical(QUILLFADE_EXECUTABLE).string()) + " share --view " + view +
           " -- " + command;
  }

  support::PrivateHome home_;
  fs::path system_ = home_.path() / "system";
  fs::path applications_ = home_.path() / ".local/share/applications";
  fs::path launcher_ = applications_ / "quillfade-share-map.desktop";
  Environment environment_{{"HOME", home_.path()}, {"XDG_DATA_DIRS", "/no/such/directory:" + system_.string()}};
};

TEST_F(LauncherFiles, AnEntryFoundByItsNameGetsALauncherOfTheUsersOwn) {
  support::writeFile(system_ / "applications/map.desktop", std::string(map));
  ASSERT_FALSE(fs::exists(applications_));
  const Said said = share({"--install", "map.desktop"});
  EXPECT_EQ(said.status, 0);
  EXPECT_EQ(said.output, "Installed " + launcher_.string() + ".\n");
  EXPECT_EQ(support::readFile(launcher_),
            "[Desktop Entry]\nX-Quillfade-Share=true\nType=Application\nName=Map (through Quillfade)\nExec=" +
                exec("unmirrored", "map %U") +
                "\nActions=new;\n\n[Desktop Action new]\nName=New\nExec=" + exec("unmirrored", "map --new") + "\n");
  EXPECT_TRUE(isValid(launcher_));
  struct stat status{};
  ASSERT_EQ(::stat(launcher_.c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777U, 0600U);
  EXPECT_EQ(support::readFile(system_ / "applications/map.desktop"), map);
}

TEST_F(LauncherFiles, TheUsersOwnEntryComesBeforeTheSystems) {
  support::writeFile(system_ / "applications/map.desktop", std::string(map));
  support::writeFile(applications_ / "map.desktop", "[Desktop Entry]\nType=Application\nName=Mine\nExec=mine\n");
  EXPECT_EQ(share({"--install", "map.desktop"}).status, 0);
  EXPECT_EQ(parseDesktopEntry(support::readFile(launcher_)).value().at("Name"), "Mine (through Quillfade)");
}

TEST_F(LauncherFiles, AnEntryNamedByItsPathAndAnotherDirectoryForData) {
  environment_["XDG_DATA_HOME"] = home_.path() / "data";
  const fs::path entry = home_.path() / "map.desktop";
  support::writeFile(entry, std::string(map));
  EXPECT_EQ(share({"--install", entry}).status, 0);
  const fs::path launcher = home_.path() / "data/applications/quillfade-share-map.desktop";
  EXPECT_TRUE(isValid(launcher));
  EXPECT_FALSE(fs::exists(applications_));
  EXPECT_EQ(share({"--uninstall", entry}).status, 0);
  EXPECT_FALSE(fs::exists(launcher));
}

TEST_F(LauncherFiles, ASecondInstallationTakesTheFirstsPlace) {
  support::writeFile(system_ / "applications/map.desktop", std::string(map));
  EXPECT_EQ(share({"--install", "map.desktop"}).status, 0);
  EXPECT_EQ(share({"--view", "clean", "--install", "map.desktop"}).status, 0);
  EXPECT_EQ(parseDesktopEntry(support::readFile(launcher_)).value().at("Exec"), exec("clean", "map %U"));
  EXPECT_EQ(std::distance(fs::directory_iterator(applications_), {}), 1);
}

TEST_F(LauncherFiles, OnlyWhatWasInstalledIsRemoved) {
  support::writeFile(system_ / "applications/map.desktop", std::string(map));
  support::writeFile(applications_ / "other.desktop", std::string(map));
  ASSERT_EQ(share({"--install", "map.desktop"}).status, 0);
  const Said said = share({"--uninstall", "map.desktop"});
  EXPECT_EQ(said.status, 0);
  EXPECT_EQ(said.output, "Removed " + launcher_.string() + ".\n");
  EXPECT_FALSE(fs::exists(launcher_));
  EXPECT_TRUE(fs::exists(applications_ / "other.desktop"));
  const Said again = share({"--uninstall", "map.desktop"});
  EXPECT_EQ(again.status, 1);
  EXPECT_EQ(again.output, "There is no launcher for \"map.desktop\".\n");
}

TEST_F(LauncherFiles, SomebodyElsesFileOfThatNameStays) {
  support::writeFile(launcher_, std::string(map));
  EXPECT_EQ(share({"--uninstall", "map.desktop"}).status, 1);
  EXPECT_EQ(support::readFile(launcher_), map);
}

TEST_F(LauncherFiles, AMissingEntryOrOneOfNoApplicationIsRefusedInASentence) {
  for (const std::string name : {"map.desktop", "/no/map.desktop"}) {
    const Said said = share({"--install", name});
    EXPECT_EQ(said.status, 1);
    EXPECT_EQ(said.output, "There is no application entry \"" + name + "\".\n");
  }
  support::writeFile(system_ / "applications/map.desktop", "[Desktop Entry]\nType=Link\nName=Map\nURL=file:///\n");
  const Said said = share({"--install", "map.desktop"});
  EXPECT_EQ(said.status, 1);
  EXPECT_EQ(said.output, "\"map.desktop\" does not say how to start its application.\n");
  EXPECT_FALSE(fs::exists(applications_));
}

TEST_F(LauncherFiles, TheLaunchersOfRealEntriesAreValid) {
  int valid = 0;
  for (const auto& entry : fs::directory_iterator("/usr/share/applications")) {
    const auto keys = parseDesktopEntry(support::readFile(entry.path()));
    if (!keys || !keys->contains("Exec") || !isValid(entry.path())) continue;
    EXPECT_EQ(share({"--install", entry.path()}).status, 0) << entry.path();
    EXPECT_TRUE(isValid(applications_ / ("quillfade-share-" + entry.path().filename().string())));
    ++valid;
  }
  EXPECT_GT(valid, 0);
}

TEST_F(LauncherFiles, ADesktopStartsTheApplicationBehindTheLens) {
  const support::XServer server;
  const fs::path said = home_.path() / "said";
  support::writeFile(
      system_ / "applications/map.desktop",
      "[Desktop Entry]\nType=Application\nName=Map\nExec=sh -c 'echo $DISPLAY > " + said.string() + "'\n");
  ASSERT_EQ(share({"--install", "map.desktop"}).status, 0);
  environment_["DISPLAY"] = server.display();
  const ChildProcess desktop({"gio", "launch", launcher_}, environment_);
  ASSERT_TRUE(support::waitUntil([&] { return support::readFile(said).ends_with('\n'); }));
  EXPECT_THAT(support::readFile(said), testing::MatchesRegex(":[0-9]+\n"));
  EXPECT_NE(support::readFile(said), server.display() + "\n");
}

}  // namespace
}  // namespace lens
