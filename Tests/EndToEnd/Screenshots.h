// Waits for what the screen shows, and keeps a picture when it is not what was expected.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Tests/Support/Picture.h"
#include "Tests/Support/XClient.h"

namespace endtoend {

using support::Picture;

// Takes screenshots until one meets the condition. False at the deadline; the last one is then kept.
[[nodiscard]] bool showsOn(support::XClient& client, const std::function<bool(const Picture&)>& condition,
                           std::chrono::milliseconds deadline);

// Saves the screen as a PNG in the directory named by QUILLFADE_TEST_PICTURES, if set.
void keepPicture(const Picture& picture, const std::string& name);

}  // namespace endtoend
