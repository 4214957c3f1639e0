#include "Quillfade/CommandLine/CommandLine.h"

#include <locale>
#include <sstream>

#include "Quillfade/Basics/EscapedText.h"
#include "Quillfade/Basics/Identity.h"
#include "Quillfade/CommandLine/LauncherWords.h"
#include "Quillfade/Cover/OverlayController.h"

namespace quillfade {
namespace {

using Parsed = std::expected<Command, std::string>;
using Words = std::vector<std::string>;

// The sentence goes to a terminal, so the word is escaped.
std::string quoted(const std::string& word) { return '"' + escapedText(word) + '"'; }

Parsed tooMany(const std::string& name) { return std::unexpected("Too many arguments for " + quoted(name) + "."); }

Parsed plain(const Words& words, const Command& command) {
  return words.size() == 1 ? Parsed{command} : tooMany(words[0]);
}

Parsed parsePeek(const Words& words) {
  if (words.size() > 2) return tooMany(words[0]);
  if (words.size() == 1) return command::Peek{OverlayController::defaultPeekLength};
  std::istringstream stream(words[1]);
  stream.imbue(std::locale::classic());
  double seconds = 0;
  // Some standard libraries also read hexadecimal.
  if (words[1].find_first_not_of("+-.0123456789eE") != std::string::npos || !(stream >> seconds) ||
      stream.peek() != std::istringstream::traits_type::eof() || !(seconds > 0 && seconds <= longestPeek)) {
    return std::unexpected("peek takes a number of seconds above 0 and up to 3600, not " + quoted(words[1]) + ".");
  }
  return command::Peek{seconds};
}

Parsed parseStyle(const Words& words) {
  if (words.size() == 2 && words[1] == "solid") return command::Style{CoverStyle::solid};
  if (words.size() == 2 && words[1] == "live") return command::Style{CoverStyle::live};
  return std::unexpected("style accepts \"solid\" or \"live\".");
}

Parsed parseOutline(const Words& words) {
  if (words.size() == 2 && (words[1] == "on" || words[1] == "off")) return command::Outline{words[1] == "on"};
  return std::unexpected("outline accepts \"on\" or \"off\".");
}

// A report for people or, as JSON, for programs.
template <class Report>
Parsed parseReport(const Words& words, const std::string& name) {
  if (words.size() == 1) return Report{};
  if (words.size() == 2 && words[1] == "--json") return Report{.asJson = true};
  return std::unexpected(name + " accepts only \"--json\".");
}

// Everything from the program's name on belongs to the program, whatever it looks like.
Parsed parseShare(const Words& words) {
  auto view = ShareView::unmirrored;
  std::size_t next = 1;
  if (words.size() > 2 && words[1] == "--view") {
    if (words[2] != "unmirrored" && words[2] != "clean") {
      return std::unexpected("--view accepts \"unmirrored\" or \"clean\", not " + quoted(words[2]) + ".");
    }
    view = words[2] == "clean" ? ShareView::clean : ShareView::unmirrored;
    next = 3;
  }
  const Words rest(words.begin() + static_cast<std::ptrdiff_t>(next), words.end());
  if (rest.size() == 2 && rest[0] == "--install") return command::InstallShare{view, rest[1]};
  if (rest.size() == 2 && rest[0] == "--uninstall" && next == 1) return command::UninstallShare{rest[1]};
  if (rest.size() > 1 && rest[0] == "--") return command::Share{view, {rest.begin() + 1, rest.end()}};
  return std::unexpected("Usage: \"quillfade share [--view unmirrored|clean] -- PROGRAM\".");
}

}  // namespace

Parsed parseCommand(const Words& arguments) {
  const Words words(arguments.begin() + static_cast<std::ptrdiff_t>(launcherWords(arguments)), arguments.end());
  if (words.empty()) return command::Start{};
  const std::string& name = words.front();
  if (name == "toggle") return plain(words, command::Toggle{});
  if (name == "peek") return parsePeek(words);
  if (name == "whole-screen") return plain(words, command::WholeScreen{});
  if (name == "select-area") return plain(words, command::SelectArea{});
  if (name == "style") return parseStyle(words);
  if (name == "outline") return parseOutline(words);
  if (name == "status") return parseReport<command::Status>(words, "status");
  if (name == "doctor") return parseReport<command::Doctor>(words, "doctor");
  if (name == "windows") return plain(words, command::Windows{});
  if (name == "keys") return plain(words, command::Keys{});
  if (name == "quit") return plain(words, command::Quit{});
  if (name == "share") return parseShare(words);
  if (name == "--help" || name == "-h") return plain(words, command::Help{});
  if (name == "--version") return plain(words, command::Version{});
  return std::unexpected("Unknown command " + quoted(name) + ".");
}

std::string versionText() { return std::string{applicationName} + ' ' + std::string{applicationVersion} + '\n'; }

std::string helpText() {
  return R"help(Usage: quillfade [COMMAND]

Without a command, Quillfade starts and lives in the tray. With one, the running Quillfade carries it out:

  toggle              hide annotations, or show them again
  peek [SECONDS]      take the cover away for that long (5 seconds by default)
  whole-screen        cover the whole screen
  select-area         select the area to keep covered
  style solid|live    cover with a plain window, or with a live copy of the screen
                      ("style live" is the only way back from the solid cover to the live one)
  outline on|off      draw a hairline around the cover
  status [--json]     show what is covered, and how
  windows             list the windows on screen; say which a live copy leaves out, and why
  keys                list the hot keys; say which of them other programs hold
  quit                quit Quillfade

These work without a running Quillfade:

  doctor [--json]     report what works on this desktop, what does not, and what to do about it
  share [--view unmirrored|clean] -- PROGRAM [WORDS...]
                      run a program that captures the screen: it sees the screen without the cover
                      (unmirrored), or without the cover and the annotations (clean)
  share [--view unmirrored|clean] --install APP.desktop
                      add a launcher "APP (through Quillfade)" to your applications
  share --uninstall APP.desktop
                      remove that launcher

  --help              print this
  --version           print the version

Environment:
  QUILLFADE_DEMO=1    start with a fixed area covered

Exit status: 0 done; 1 Quillfade is not running, or the command could not be carried out; 2 the command was not
understood.
"doctor" exits with 0 if a live cover, the commands and all hot keys can work and your settings and rules are valid,
else with 1; a missing tray or log, or Quillfade not running, does not count. "share" exits with its program's status.
)help";
}

}  // namespace quillfade
