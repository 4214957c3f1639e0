#include "Platform/Linux/Posix/UserDirectories.h"

#include <gtest/gtest.h>
#include <pwd.h>
#include <unistd.h>

#include "Tests/Support/TemporaryDirectory.h"
#include "Tests/Support/Variable.h"

namespace platform::linux::posix {
namespace {

using support::Variable;

TEST(UserDirectories, AreBelowTheHomeUnlessVariablesNameOthers) {
  const Variable home("HOME", "/home/presenter//");
  const Variable noConfiguration("XDG_CONFIG_HOME", nullptr);
  const Variable noState("XDG_STATE_HOME", nullptr);
  EXPECT_EQ(homeDirectory(), "/home/presenter");
  EXPECT_EQ(configurationDirectory(), "/home/presenter/.config");
  EXPECT_EQ(stateDirectory(), "/home/presenter/.local/state");
  const Variable configuration("XDG_CONFIG_HOME", "/elsewhere/");
  const Variable state("XDG_STATE_HOME", "/state");
  EXPECT_EQ(configurationDirectory(), "/elsewhere");
  EXPECT_EQ(stateDirectory(), "/state");
}

TEST(UserDirectories, VariablesThatAreNotAbsolutePathsCountAsUnset) {
  const Variable home("HOME", "/home/presenter");
  const Variable configuration("XDG_CONFIG_HOME", "relative/path");
  const Variable state("XDG_STATE_HOME", "");
  EXPECT_EQ(configurationDirectory(), "/home/presenter/.config");
  EXPECT_EQ(stateDirectory(), "/home/presenter/.local/state");
}

TEST(UserDirectories, AHomeThatIsTheRootDirectoryGivesNoDoubleSlash) {
  const Variable home("HOME", "///");
  const Variable noConfiguration("XDG_CONFIG_HOME", nullptr);
  const Variable noState("XDG_STATE_HOME", nullptr);
  EXPECT_EQ(homeDirectory(), "/");
  EXPECT_EQ(configurationDirectory(), "/.config");
  EXPECT_EQ(stateDirectory(), "/.local/state");
}

TEST(UserDirectories, WithoutAHomeTheUserDatabaseIsAsked) {
  const passwd* user = ::getpwuid(::getuid());
  ASSERT_NE(user, nullptr);
  for (const char* home : {static_cast<const char*>(nullptr), "", "home"}) {
    const Variable variable("HOME", home);
    EXPECT_EQ(homeDirectory(), user->pw_dir);
  }
}

TEST(UserDirectories, OnlyAnExistingDirectoryCanTakeFiles) {
  const support::TemporaryDirectory directory;
  support::writeFile(directory.path() / "file", "");
  EXPECT_TRUE(isWritableDirectory(directory.path().string()));
  EXPECT_FALSE(isWritableDirectory((directory.path() / "file").string()));
  EXPECT_FALSE(isWritableDirectory((directory.path() / "nothing").string()));
}

}  // namespace
}  // namespace platform::linux::posix
