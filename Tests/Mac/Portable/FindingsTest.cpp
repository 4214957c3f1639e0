#include "Platform/Mac/Findings.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "Quillfade/Basics/Identity.h"

namespace platform::mac {
namespace {

using testing::HasSubstr;

TEST(MacFindings, ThePermissionIsClaimedOnlyOnTheWordOfTheRunningApplication) {
  EXPECT_EQ(permissionFinding(true).health, Health::works);
  EXPECT_EQ(permissionFinding(false).health, Health::fails);
  EXPECT_THAT(permissionFinding(false).fix, HasSubstr("Screen Recording"));
  EXPECT_EQ(permissionFinding(std::nullopt).health, Health::unseen);
}

TEST(MacFindings, ALoginItemThatIsOffIsNoProblem) {
  EXPECT_EQ(loginItemFinding(LoginItemStatus::enabled).detail, "on");
  EXPECT_EQ(loginItemFinding(LoginItemStatus::notRegistered), (Finding{.subject = "Launch at Login", .detail = "off"}));
  for (const auto status : {LoginItemStatus::requiresApproval, LoginItemStatus::notFound}) {
    EXPECT_EQ(loginItemFinding(status).health, Health::limited);
    EXPECT_NE(loginItemFinding(status).fix, "");
  }
}

TEST(MacFindings, TheLogNeedsADirectory) {
  const auto here = std::filesystem::temp_directory_path();
  EXPECT_EQ(logFinding(here / "log").health, Health::works);
  const Finding lacking = logFinding("/nonexistent/Logs/log");
  EXPECT_EQ(lacking.health, Health::limited);
  EXPECT_EQ(lacking.fix, "mkdir -p /nonexistent/Logs");
}

TEST(MacFindings, TheSettingsAreThoseOfTheBundle) {
  EXPECT_EQ(preferencesPath("/Users/presenter"),
            "/Users/presenter/Library/Preferences/" + std::string{quillfade::applicationIdentifier} + ".plist");
}

}  // namespace
}  // namespace platform::mac
