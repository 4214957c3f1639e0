#include "Platform/Linux/Posix/NewStart.h"

#include <linux/close_range.h>
#include <unistd.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <system_error>

#include "Platform/Linux/Posix/UserDirectories.h"

namespace platform::linux::posix {
namespace {

constexpr const char* countVariable = "QUILLFADE_STARTS";
constexpr unsigned mostInARow = 3;
constexpr std::chrono::minutes longAgo{1};

}  // namespace

NewStart::NewStart(std::span<char* const> arguments) : arguments_(arguments.begin(), arguments.end()) {
  const std::string text = environmentVariable(countVariable).value_or("");
  std::from_chars(text.data(), text.data() + text.size(), count_);
  // Not for the programs that this one starts.
  ::unsetenv(countVariable);
}

void NewStart::begin() {
  const bool wasLongAgo = std::chrono::steady_clock::now() - since_ > longAgo;
  const unsigned next = wasLongAgo ? 1 : count_ + 1;
  if (next > mostInARow) return;
  ::setenv(countVariable, std::to_string(next).c_str(), 1);
  std::vector<char*> words;
  for (std::string& word : arguments_) words.push_back(word.data());
  words.push_back(nullptr);
  // The bus must see that the old program is gone before the new one asks for its name.
  ::close_range(STDERR_FILENO + 1, ~0U, CLOSE_RANGE_CLOEXEC);
  // Not by that link itself, or the process would be known by its name.
  std::error_code missing;
  const std::filesystem::path program = std::filesystem::read_symlink("/proc/self/exe", missing);
  ::execv(program.c_str(), words.data());
}

}  // namespace platform::linux::posix
