#include "Platform/Linux/Session/DesktopNotifications.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "Tests/Support/TemporaryDirectory.h"

namespace platform::linux::session {
namespace {

TEST(DesktopNotifications, WhatWasShownOnceIsRememberedInTheStateDirectory) {
  const support::TemporaryDirectory directory;
  const auto state = directory.path() / "state/quillfade";
  DesktopNotifications(state.string()).showOnce("welcomed", {"Title", "Text"});
  EXPECT_TRUE(std::filesystem::is_regular_file(state / "welcomed"));
}

}  // namespace
}  // namespace platform::linux::session
