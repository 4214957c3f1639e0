#include "Tests/EndToEnd/Screenshots.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>

#include "Tests/Support/Wait.h"

namespace endtoend {

bool showsOn(support::XClient& client, const std::function<bool(const Picture&)>& condition,
             std::chrono::milliseconds deadline) {
  std::optional<Picture> last;
  const bool held = support::waitUntil(
      [&] {
        last = client.screenshot();
        return condition(*last);
      },
      deadline);
  if (!held) keepPicture(*last, "failed");
  return held;
}

void keepPicture(const Picture& picture, const std::string& name) {
  const char* directory = std::getenv("QUILLFADE_TEST_PICTURES");
  if (directory == nullptr) return;
  const auto* test = testing::UnitTest::GetInstance()->current_test_info();
  std::string file = std::string(test->test_suite_name()) + "." + test->name() + "." + name + ".png";
  std::ranges::replace(file, '/', '-');
  writePng(picture, std::filesystem::path(directory) / file);
}

}  // namespace endtoend
