// A look at the desktop from outside the application: what there is of what it needs, whether or not it runs.
//
// Threads: main thread of a process that has no `Platform`. Blocks for as long as the answers take, a second or two at
// most. Nothing is changed, and what is tried out is given back. Failure: what cannot be looked at is itself a finding.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "Platform/Settings.h"

namespace platform {

enum class Health {
  works,
  limited,  // something is missing that one can do without: a tray, the log
  fails,    // something does not work that a live cover, the commands or the hot keys need, or that the user wrote
};

struct Finding {
  std::string subject;  // a few words
  Health health = Health::works;
  std::string detail;  // a sentence or less
  std::string fix{};   // sentences; empty when nothing is to be done
  friend bool operator==(const Finding&, const Finding&) = default;
};

// As for `HotKeys::registerHotKey`.
struct HotKeyTrial {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;
};

struct ExaminationRequest {
  std::vector<HotKeyTrial> hotKeys;   // to be tried out
  std::string logFile;                // below the home directory
  std::vector<std::string> settings;  // keys of settings to be read
};

enum class HotKeyAnswer { granted, refused, unknown };

struct Examination {
  std::vector<Finding> findings;                   // in the order of a chain: each builds on those before it
  std::vector<HotKeyAnswer> hotKeys;               // one for each trial
  std::map<std::string, SettingValue> settings{};  // of the asked keys, those that are stored
  std::string settingsFile{};                      // where they are stored, for people
};

// Defined by the adapter that is linked in.
Examination examineDesktop(const ExaminationRequest& request);

}  // namespace platform
