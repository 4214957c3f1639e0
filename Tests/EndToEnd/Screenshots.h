// What the screen shows, waited for, and kept where it is not what was expected.
#pragma once

#include <chrono>
#include <functional>
#include <string>

#include "Tests/Support/Picture.h"
#include "Tests/Support/XClient.h"

namespace endtoend {

using support::Picture;

// Takes screenshots until the condition holds for one. False at the deadline; the last one is kept then.
[[nodiscard]] bool showsOn(support::XClient& client, const std::function<bool(const Picture&)>& condition,
                           std::chrono::milliseconds deadline);

// Keeps the screen as a PNG in the directory that QUILLFADE_TEST_PICTURES names, if it names one.
void keepPicture(const Picture& picture, const std::string& name);

}  // namespace endtoend
