#include <gtest/gtest.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <functional>

#include "Platform/Linux/Posix/AtomicFile.h"
#include "Platform/Linux/Posix/UserDirectories.h"
#include "Platform/Linux/Settings/SettingsFile.h"
#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/Variable.h"

namespace fs = std::filesystem;
using platform::SettingValue;
using platform::linux::settings::SettingsFile;
using support::readFile;
using support::writeFile;

namespace {

class SettingsTest : public ::testing::Test {
 protected:
  [[nodiscard]] SettingsFile open() const { return SettingsFile(path.string()); }
  // What was written to standard error while this ran.
  template <typename Action>
  static std::string errorsOf(Action action) {
    ::testing::internal::CaptureStderr();
    action();
    return ::testing::internal::GetCapturedStderr();
  }
  static long linesIn(const std::string& text) { return std::count(text.begin(), text.end(), '\n'); }
  static unsigned modeOf(const fs::path& file) {
    struct stat status{};
    EXPECT_EQ(::stat(file.c_str(), &status), 0);
    return status.st_mode & 07777U;
  }
  std::size_t filesInDirectory() const {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(path.parent_path()), {}));
  }
  void expectHoldsWithoutSaving() {
    const std::string errors = errorsOf([&] {
      SettingsFile settings = open();
      settings.set("enabled", true);
      settings.set("enabled", false);
      EXPECT_EQ(settings.object("enabled"), SettingValue(false));
    });
    EXPECT_EQ(linesIn(errors), 1) << errors;
  }

  support::TemporaryDirectory directory;
  fs::path path = directory.path() / "configuration/quillfade/settings.json";
};

struct Outcome {
  int status = 0;      // as from waitpid
  std::string errors;  // what was written to standard error
};

// Runs `action` in a process of its own, in which no file grows beyond this many bytes; the process ends with 0 when
// `action` returns true. Its standard error is a pipe, to which the limit does not apply.
Outcome withFilesNoLargerThan(rlim_t bytes, const std::function<bool()>& action) {
  std::array<int, 2> ends{};
  EXPECT_EQ(::pipe(ends.data()), 0);
  const pid_t child = ::fork();
  if (child == 0) {
    const rlimit limit{bytes, bytes};
    // With the signal ignored, the write fails with an error.
    const bool isSet = ::dup2(ends[1], STDERR_FILENO) >= 0 && ::setrlimit(RLIMIT_FSIZE, &limit) == 0 &&
                       std::signal(SIGXFSZ, SIG_IGN) != SIG_ERR;
    ::_exit(isSet && action() ? 0 : 1);
  }
  ::close(ends[1]);
  Outcome outcome;
  std::array<char, 4096> buffer{};
  for (ssize_t count = 0; (count = ::read(ends[0], buffer.data(), buffer.size())) > 0;) {
    outcome.errors.append(buffer.data(), static_cast<std::size_t>(count));
  }
  ::close(ends[0]);
  EXPECT_EQ(::waitpid(child, &outcome.status, 0), child);
  return outcome;
}

}  // namespace

TEST_F(SettingsTest, WithoutAFileEverythingIsAbsentAndNothingIsWritten) {
  EXPECT_EQ(errorsOf([&] { EXPECT_EQ(open().object("enabled"), std::nullopt); }), "");
  EXPECT_FALSE(fs::exists(path));
}

TEST_F(SettingsTest, ValuesKeepTheirTypesFromOneRunToTheNext) {
  {
    SettingsFile settings = open();
    settings.set("enabled", true);
    settings.set("style", std::int64_t{1});
    settings.set("large", std::int64_t{9007199254740993});
    settings.set("region", std::string("{{0, 25}, {1440, 875}} \"×\"\n"));
    EXPECT_EQ(settings.object("style"), SettingValue(std::int64_t{1}));
  }
  const SettingsFile settings = open();
  EXPECT_EQ(settings.object("enabled"), SettingValue(true));
  EXPECT_EQ(settings.object("style"), SettingValue(std::int64_t{1}));
  EXPECT_EQ(settings.object("large"), SettingValue(std::int64_t{9007199254740993}));
  EXPECT_EQ(settings.object("region"), SettingValue(std::string("{{0, 25}, {1440, 875}} \"×\"\n")));
}

TEST_F(SettingsTest, TheFileAndTheDirectoriesMadeForItAreTheUsersAlone) {
  open().set("enabled", true);
  EXPECT_EQ(modeOf(path), 0600U);
  EXPECT_EQ(modeOf(path.parent_path()), 0700U);
  EXPECT_EQ(modeOf(path.parent_path().parent_path()), 0700U);
  EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(SettingsTest, WholeNumbersReadAsIntegersOthersAsFractionsAndWhateverElseIsThereAsAbsent) {
  writeFile(path, R"({"a": 1, "b": 1.0, "c": -2, "d": 1.5, "e": [1], "f": {"g": 1}, "h": null, "i": 1e300, "j": 0})");
  const SettingsFile settings = open();
  EXPECT_EQ(settings.object("a"), SettingValue(std::int64_t{1}));
  EXPECT_EQ(settings.object("b"), SettingValue(std::int64_t{1}));
  EXPECT_EQ(settings.object("c"), SettingValue(std::int64_t{-2}));
  EXPECT_EQ(settings.object("j"), SettingValue(std::int64_t{0}));
  EXPECT_EQ(settings.object("d"), SettingValue(1.5));
  EXPECT_EQ(settings.object("i"), SettingValue(1e300));
  for (const char* key : {"e", "f", "h"}) EXPECT_EQ(settings.object(key), std::nullopt) << key;
}

TEST_F(SettingsTest, AFractionThatIsSetReadsBack) {
  open().set("fraction", 0.1);
  EXPECT_EQ(open().object("fraction"), SettingValue(0.1));
}

TEST_F(SettingsTest, TheSettingsOfAnotherProcessCanBeReadWithoutTouchingThem) {
  EXPECT_TRUE(platform::linux::settings::storedSettings(path, {"region"}).empty());
  writeFile(path, R"({"region": "{{0, 0}, {1e300, 600}}", "style": 1})");
  const std::map<std::string, SettingValue> expected{{"region", std::string("{{0, 0}, {1e300, 600}}")}};
  EXPECT_EQ(platform::linux::settings::storedSettings(path, {"region", "outline"}), expected);
  writeFile(path, "{");
  EXPECT_TRUE(platform::linux::settings::storedSettings(path, {"region"}).empty());
  EXPECT_EQ(readFile(path), "{");
  EXPECT_EQ(filesInDirectory(), 1U);
}

TEST_F(SettingsTest, WhatItDoesNotUnderstandSurvivesAChange) {
  writeFile(path, R"({"later": {"deep": [1, 2.5, null]}, "fraction": 0.1, "outline": false})");
  open().set("outline", true);
  const std::string content = readFile(path);
  for (const char* part : {"\"later\"", "\"deep\"", "2.5", "null", "0.1", "\"outline\": true"})
    EXPECT_NE(content.find(part), std::string::npos) << part << " in " << content;
}

TEST_F(SettingsTest, ADamagedFileIsMovedAsideWhole) {
  for (const char* damaged : {"{\"enabled\": tr", "", "[1]", "{} trailing", "\"text\"", "{\"a\": \"\xff\"}"}) {
    fs::remove_all(path.parent_path());
    writeFile(path, damaged);
    const std::string errors = errorsOf([&] {
      SettingsFile settings = open();
      EXPECT_EQ(settings.object("enabled"), std::nullopt);
      EXPECT_FALSE(fs::exists(path));
      settings.set("enabled", true);
    });
    EXPECT_EQ(linesIn(errors), 1) << errors;
    EXPECT_EQ(readFile(path.string() + ".damaged"), damaged);
    EXPECT_EQ(open().object("enabled"), SettingValue(true));
  }
}

TEST_F(SettingsTest, FilesMovedAsideEarlierAreKept) {
  for (const char* damaged : {"first", "second", "third"}) {
    writeFile(path, damaged);
    EXPECT_NE(errorsOf([&] { (void)open(); }), "");
  }
  EXPECT_EQ(readFile(path.string() + ".damaged"), "first");
  EXPECT_EQ(readFile(path.string() + ".damaged.1"), "second");
  EXPECT_EQ(readFile(path.string() + ".damaged.2"), "third");
}

TEST_F(SettingsTest, ADirectoryInItsPlaceIsLeftAloneAndValuesHoldForTheProcess) {
  fs::create_directories(path / "inside");
  expectHoldsWithoutSaving();
  EXPECT_TRUE(fs::is_directory(path / "inside"));
}

TEST_F(SettingsTest, APipeInItsPlaceNeitherBlocksNorIsReplaced) {
  fs::create_directories(path.parent_path());
  ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0);
  expectHoldsWithoutSaving();
  EXPECT_TRUE(fs::is_fifo(path));
}

TEST_F(SettingsTest, AFileWhereADirectoryShouldBeStopsNothing) {
  writeFile(path.parent_path(), "in the way");
  expectHoldsWithoutSaving();
  EXPECT_EQ(readFile(path.parent_path()), "in the way");
}

TEST_F(SettingsTest, ADirectoryThatCannotBeCreatedStopsNothing) {
  // Not even the superuser can create directories there.
  path = "/proc/quillfade/settings.json";
  expectHoldsWithoutSaving();
}

TEST_F(SettingsTest, AWriteThatFailsPartWayLeavesTheOldFileAndNothingElse) {
  const std::string old = R"({"style": 1})";
  writeFile(path, old);
  const std::string large(64 * 1024, 'x');
  const Outcome outcome = withFilesNoLargerThan(1000, [&] {
    SettingsFile settings = open();
    settings.set("large", large);
    settings.set("enabled", true);
    return settings.object("large") == SettingValue(large) && settings.object("enabled") == SettingValue(true);
  });
  EXPECT_TRUE(WIFEXITED(outcome.status) && WEXITSTATUS(outcome.status) == 0) << outcome.status;
  EXPECT_EQ(readFile(path), old);
  EXPECT_EQ(filesInDirectory(), 1U);
  EXPECT_EQ(linesIn(outcome.errors), 1) << outcome.errors;
  EXPECT_NE(outcome.errors.find("Could not write " + path.string()), std::string::npos) << outcome.errors;
}

TEST_F(SettingsTest, ALinkIsFollowedAndStaysALink) {
  const fs::path target = directory.path() / "dotfiles/settings.json";
  writeFile(target, R"({"style": 1})");
  fs::create_directories(path.parent_path());
  fs::create_symlink("../../dotfiles/settings.json", path);
  {
    SettingsFile settings = open();
    EXPECT_EQ(settings.object("style"), SettingValue(std::int64_t{1}));
    settings.set("enabled", true);
  }
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_FALSE(fs::is_symlink(target));
  EXPECT_NE(readFile(target).find("\"enabled\": true"), std::string::npos);
}

TEST_F(SettingsTest, ADanglingLinkIsFilledWhereItPoints) {
  const fs::path target = directory.path() / "elsewhere/settings.json";
  fs::create_directories(path.parent_path());
  fs::create_symlink(target, path);
  open().set("enabled", true);
  EXPECT_TRUE(fs::is_symlink(path));
  EXPECT_EQ(open().object("enabled"), SettingValue(true));
  EXPECT_TRUE(fs::is_regular_file(target));
}

TEST_F(SettingsTest, ALoopOfLinksStopsNothing) {
  fs::create_directories(path.parent_path());
  fs::create_symlink("settings.json", path);
  expectHoldsWithoutSaving();
  EXPECT_TRUE(fs::is_symlink(path));
}

TEST_F(SettingsTest, ThePathFollowsTheEnvironmentWhenThatIsAbsolute) {
  const support::Variable home("HOME", "/home/someone/");
  {
    const support::Variable configuration("XDG_CONFIG_HOME", "/somewhere/else");
    EXPECT_EQ(platform::linux::settings::settingsPath(), "/somewhere/else/quillfade/settings.json");
  }
  {
    const support::Variable configuration("XDG_CONFIG_HOME", "relative");
    EXPECT_EQ(platform::linux::settings::settingsPath(), "/home/someone/.config/quillfade/settings.json");
  }
  const support::Variable configuration("XDG_CONFIG_HOME", nullptr);
  EXPECT_EQ(platform::linux::settings::settingsPath(), "/home/someone/.config/quillfade/settings.json");
}

TEST_F(SettingsTest, WithoutAnAbsoluteHomeTheUserDatabaseDecides) {
  const support::Variable home("HOME", "not/absolute");
  const std::string found = platform::linux::posix::homeDirectory();
  EXPECT_TRUE(found.starts_with('/')) << found;
}
