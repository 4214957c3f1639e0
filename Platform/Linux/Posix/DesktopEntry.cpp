#include "Platform/Linux/Posix/DesktopEntry.h"

#include "Platform/Linux/Posix/TrimmedText.h"

namespace platform::linux::posix {

namespace {

std::string quotedArgument(std::string_view argument) {
  std::string quoted = "\"";
  for (const char character : argument) {
    if (std::string_view("\"`$\\").contains(character)) quoted += '\\';
    if (character == '%') quoted += '%';
    quoted += character;
  }
  return quoted + '"';
}

std::string escapedValue(std::string_view value) {
  std::string escaped;
  for (const char character : value) {
    switch (character) {
      case '\\':
        escaped += "\\\\";
        break;
      case '\n':
        escaped += "\\n";
        break;
      case '\t':
        escaped += "\\t";
        break;
      case '\r':
        escaped += "\\r";
        break;
      default:
        escaped += character;
    }
  }
  return escaped;
}

std::string_view takeLine(std::string_view& text) {
  const auto end = text.find('\n');
  const std::string_view line = text.substr(0, end);
  text.remove_prefix(end == std::string_view::npos ? text.size() : end + 1);
  return trimmed(line);
}

}  // namespace

std::string desktopExec(std::string_view program) { return escapedValue(quotedArgument(program)); }

std::optional<std::map<std::string, std::string>> parseDesktopEntry(std::string_view text) {
  std::optional<std::map<std::string, std::string>> entries;
  bool isInGroup = false;
  while (!text.empty()) {
    const std::string_view line = takeLine(text);
    if (line.empty() || line.starts_with('#')) continue;
    if (line.starts_with('[')) {
      isInGroup = line == "[Desktop Entry]";
      if (isInGroup && !entries) entries.emplace();
      continue;
    }
    const auto equals = line.find('=');
    if (equals == std::string_view::npos) return std::nullopt;
    if (isInGroup) entries->emplace(trimmed(line.substr(0, equals)), trimmed(line.substr(equals + 1)));
  }
  return entries;
}

}  // namespace platform::linux::posix
