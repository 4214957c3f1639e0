// A program's path, quoted in a desktop entry, stays one argument on one line. Any file can be read as an entry.

#include <string>

#include "Platform/Linux/Posix/DesktopEntry.h"
#include "Tests/Fuzz/Fuzz.h"

namespace {

// As a desktop does it: first the value's escapes, then the quotes, then the field codes.
std::string unquoted(std::string_view exec) {
  std::string value;
  for (std::size_t i = 0; i < exec.size(); ++i) {
    if (exec[i] != '\\') {
      value += exec[i];
      continue;
    }
    const char next = exec[++i];
    value += next == 'n' ? '\n' : next == 't' ? '\t' : next == 'r' ? '\r' : next;
  }
  fuzz::expect(value.size() >= 2 && value.front() == '"' && value.back() == '"', "the argument stands in quotes");
  std::string argument;
  for (std::size_t i = 1; i + 1 < value.size(); ++i) {
    fuzz::expect(value[i] != '"' && value[i] != '`' && value[i] != '$', "nothing ends the quotes or expands in them");
    if (value[i] == '\\') ++i;
    if (value[i] == '%') fuzz::expect(value[++i] == '%', "there are no field codes");
    argument += value[i];
  }
  return argument;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  const auto input = fuzz::text(bytes, length);
  (void)platform::linux::posix::parseDesktopEntry(input);
  // A path contains no zero byte.
  const std::string path(input.substr(0, input.find('\0')));
  const std::string exec = platform::linux::posix::desktopExec(path);
  fuzz::expect(exec.find('\n') == std::string::npos, "the value is one line");
  fuzz::expect(unquoted(exec) == path, "the argument is the path");
  const auto entry = platform::linux::posix::parseDesktopEntry("[Desktop Entry]\nExec=" + exec + "\n");
  fuzz::expect(entry && entry->size() == 1 && entry->at("Exec") == exec, "the entry reads as it was written");
  return 0;
}
