// The command line: what its words mean, and what the program says about them.
//
// Pure; needs no desktop.
#pragma once

#include <expected>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "Quillfade/CommandLine/ShareView.h"
#include "Quillfade/Cover/CoverStyle.h"

namespace quillfade {

namespace command {
struct Toggle {};
struct Peek {
  double seconds = 0;
};
struct WholeScreen {};
struct SelectArea {};
struct Style {
  CoverStyle style = CoverStyle::live;
};
struct Outline {
  bool shows = false;
};
struct Status {
  bool asJson = false;
};
struct Windows {};
struct Keys {};
struct Doctor {
  bool asJson = false;
};
struct Quit {};
struct Share {
  ShareView view = ShareView::unmirrored;
  std::vector<std::string> program;  // and its arguments
};
struct InstallShare {
  ShareView view = ShareView::unmirrored;
  std::string application;
};
struct UninstallShare {
  std::string application;
};
struct Start {};  // no command: run the application
struct Help {};
struct Version {};
}  // namespace command

using Command = std::variant<command::Toggle, command::Peek, command::WholeScreen, command::SelectArea, command::Style,
                             command::Outline, command::Status, command::Windows, command::Keys, command::Doctor,
                             command::Quit, command::Share, command::InstallShare, command::UninstallShare,
                             command::Start, command::Help, command::Version>;

namespace exitstatus {
inline constexpr int success = 0;
inline constexpr int failure = 1;  // no running instance, or the command could not be carried out
inline constexpr int usage = 2;    // the words are not a command
}  // namespace exitstatus

// The longest peek that the command line takes, in seconds.
inline constexpr double longestPeek = 3600;

// Words from launchers and toolkits may come before the command. The error is a sentence for the user.
[[nodiscard]] std::expected<Command, std::string> parseCommand(const std::vector<std::string>& arguments);

[[nodiscard]] std::string helpText();
[[nodiscard]] std::string versionText();

}  // namespace quillfade
