// The one Qt application of the test process, on a private X server with a private session bus and a private home.
//
// Created when a test first asks for it, and destroyed before the process ends. Qt allows one application object at a
// time, so all tests of the process share it; each leaves it without windows.
#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <functional>
#include <string>

#include "Platform/Linux/Toolkit/DesktopApplication.h"
#include "Tests/Support/Wait.h"
#include "Tests/Support/XServer.h"

namespace qt {

// Starts everything on the first call.
platform::linux::toolkit::DesktopApplication& application();
[[nodiscard]] const std::string& display();
[[nodiscard]] const std::string& busAddress();

// A test whose members may use Qt: the application is created before them.
class Test : public ::testing::Test {
 protected:
  Test() { application(); }
};

// Runs Qt's event loop until the condition holds. False if the deadline passed first.
[[nodiscard]] bool runUntil(const std::function<bool()>& condition,
                            std::chrono::milliseconds deadline = support::defaultDeadline);
// Runs whatever is waiting now.
void runPending();

}  // namespace qt
