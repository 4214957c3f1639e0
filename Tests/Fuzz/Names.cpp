// The names of foreign windows in the log and in the table of windows: no name adds, ends or forges a line.

#include <algorithm>
#include <string>

#include "Platform/Linux/Scene/Identity.h"
#include "Platform/Simulated/Desktop.h"
#include "Platform/Utf8.h"
#include "Quillfade/Basics/EscapedText.h"
#include "Quillfade/CommandLine/WindowTable.h"
#include "Quillfade/Cover/DiagnosticLog.h"
#include "Tests/Fuzz/Fuzz.h"

namespace {

bool isPlain(std::string_view text, bool withLineFeeds) {
  while (!text.empty()) {
    const auto character = platform::firstUtf8Character(text);
    if (!character) return false;
    const char32_t code = character->code;
    const bool turns = (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    const bool isControl = (code < 0x20 && !(withLineFeeds && code == '\n')) || (code >= 0x7F && code <= 0x9F);
    if (isControl || turns || code == 0x2028 || code == 0x2029) return false;
    text.remove_prefix(character->length);
  }
  return true;
}

}  // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t length) {
  const std::string name = platform::linux::scene::validUtf8(fuzz::text(bytes, length));
  fuzz::expect(isPlain(quillfade::escapedText(name), false), "an escaped name has no control characters");

  static platform::simulated::Desktop desktop;
  desktop.record().clear();
  static const std::string path = desktop.process().homeDirectory() + "/Library/Logs/Quillfade.log";
  platform::CaptureWindow window{7, 500, {{0, 0}, {1440, 900}}, true, platform::RunningApplication{name}};
  const platform::ShareableContent content{.displays = {}, .windows = {window}};
  const auto table = quillfade::windowTable(content, std::nullopt, desktop);
  fuzz::expect(std::ranges::count(table, '\n') == 2, "a window is one line of the table, below its heading");
  fuzz::expect(isPlain(table, true), "the table has no control characters");

  (void)desktop.files().write(path, "");
  quillfade::DiagnosticLog(desktop).logCandidates(content, content.windows);
  const auto log = desktop.files().content(path).value_or("");
  fuzz::expect(std::ranges::count(log, '\n') == 2 && isPlain(log, true), "the windows are two lines of the log");
  return 0;
}
