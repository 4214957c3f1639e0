// Examines the desktop from outside the application: which of the things the application needs are there, whether or
// not it runs.
//
// Threads: main thread of a process that has no `Platform`. Blocks until the answers are in, a second or two at most.
// Effects: changes nothing, and gives back whatever it tries out.
// Failure: what cannot be examined is itself a finding.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "Platform/Settings.h"

namespace platform {

enum class Health {
  works,
  unseen,   // needed, but nobody could look at it
  limited,  // something optional is missing: a tray, the log
  fails,    // something fails that a live cover, the commands or the hot keys need, or that the user wrote
};

struct Finding {
  std::string subject;  // a few words
  Health health = Health::works;
  std::string detail;  // a sentence or less
  std::string fix{};   // sentences; empty when there is nothing to do
  friend bool operator==(const Finding&, const Finding&) = default;
};

// As for `HotKeys::registerHotKey`.
struct HotKeyTrial {
  std::uint32_t keyCode = 0;
  std::uint32_t modifiers = 0;
};

struct ExaminationRequest {
  std::vector<HotKeyTrial> hotKeys;   // to try out
  std::string logFile;                // below the home directory
  std::vector<std::string> settings;  // the keys of the settings to read
  std::optional<bool> mayCapture{};   // what the running application says of its permission; absent without one
};

enum class HotKeyAnswer {
  granted,  // to nobody else
  shared,   // granted, which does not say that no other program has it
  refused,
  offered,      // the desktop gives keys, but only to the running application
  unavailable,  // the desktop gives programs no hot keys
  unknown,
};

struct Examination {
  std::vector<Finding> findings;                   // in order: each builds on those before it
  std::vector<HotKeyAnswer> hotKeys;               // one per trial
  std::map<std::string, SettingValue> settings{};  // those of the requested keys that are stored
  std::string settingsFile{};                      // where they are stored, for a person to read
};

// Defined by the adapter that is linked in.
Examination examineDesktop(const ExaminationRequest& request);

}  // namespace platform
