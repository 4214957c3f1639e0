// Defaults, files, hot keys, the session's lock, the process.

#import <Foundation/Foundation.h>

#include <filesystem>
#include <fstream>
#include <sstream>

#include "Platform/Mac/Foundation/Files.h"
#include "Platform/Mac/Foundation/Process.h"
#include "Platform/Mac/Input/HotKeys.h"
#include "Platform/Mac/Session/LoginItem.h"
#include "Platform/Mac/Session/SessionLock.h"
#include "Platform/Mac/Settings/Settings.h"
#include "Tests/Mac/Native/Native.h"

namespace platform::mac {
namespace {

using foundation::Files;
using foundation::Process;
using input::HotKeys;
using session::LoginItem;
using session::SessionLock;
using settings::Settings;

TEST(MacSettings, EveryTypeComesBackAsItself) {
  Settings settings;
  const std::string key = "native-test";
  for (const SettingValue& value : {SettingValue{true}, SettingValue{false}, SettingValue{std::int64_t{1}},
                                    SettingValue{2.5}, SettingValue{std::string{"{{1, 2}, {3, 4}}"}}}) {
    settings.set(key, value);
    EXPECT_EQ(settings.object(key), value) << value.index();
  }
  [[NSUserDefaults standardUserDefaults] setObject:nil forKey:@"native-test"];
  EXPECT_EQ(settings.object(key), std::nullopt);
}

TEST(MacFiles, AnOpenFileGrowsAtItsEnd) {
  Files files;
  const auto path = std::filesystem::temp_directory_path() / "quillfade-native-test.log";
  std::filesystem::remove(path);
  EXPECT_FALSE(files.openForWriting(path).has_value()) << "Opening never creates.";
  ASSERT_TRUE(files.write(path, "one\n").has_value());
  EXPECT_TRUE(files.fileExists(path));
  const auto open = files.openForWriting(path);
  ASSERT_TRUE(open.has_value());
  EXPECT_TRUE((*open)->seekToEndOfFile().has_value());
  EXPECT_TRUE((*open)->write("two\n").has_value());
  EXPECT_TRUE((*open)->close().has_value());
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  EXPECT_EQ(content.str(), "one\ntwo\n");
  std::filesystem::remove(path);
  EXPECT_FALSE(files.write("/nonexistent/file", "one").has_value());
}

TEST(MacHotKeys, ACombinationIsGrantedAndGivenBack) {
  HotKeys keys;
  const auto handler = keys.installHandler([](const HotKeyEvent*, void*) { return 0; }, nullptr);
  ASSERT_TRUE(handler.has_value());
  constexpr std::uint32_t f13 = 105;
  for (const std::uint32_t turn : {1U, 2U}) {
    const auto reference = keys.registerHotKey(f13, hotkeymodifiers::control | hotkeymodifiers::option, {1, turn});
    ASSERT_TRUE(reference.has_value()) << turn;
    keys.unregisterHotKey(*reference);
  }
  keys.removeHandler(*handler);
}

TEST(MacSessionLock, ASessionThatRunsTestsIsNotLocked) { EXPECT_FALSE(SessionLock().isLocked()); }

TEST(MacLoginItem, AProgramWithoutABundleIsNotEnabled) { EXPECT_NE(LoginItem().status(), LoginItemStatus::enabled); }

TEST(MacProcess, TheHomeDirectoryIsADirectory) {
  EXPECT_TRUE(std::filesystem::is_directory(Process().homeDirectory()));
  EXPECT_FALSE(Process().homeDirectory().ends_with('/'));
  EXPECT_EQ(Process().environmentVariable("QUILLFADE_NO_SUCH_VARIABLE"), std::nullopt);
}

}  // namespace
}  // namespace platform::mac
