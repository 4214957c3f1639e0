// The plain-text log of what the live mirrors do, so that one can see afterwards why a window was or was not left out.
//
// The file is "Library/Logs/Quillfade.log" below the home directory. Every line opens and closes the file itself;
// nothing is buffered, nothing is rotated, and every failure is swallowed: a log must never get in the way. Threads:
// any; every call writes its line whole, and no state is shared.
#pragma once

#include <span>
#include <string>
#include <string_view>

#include "Platform/Capture.h"
#include "Platform/Platform.h"

namespace quillfade {

class DiagnosticLog {
 public:
  // Below the home directory.
  static constexpr std::string_view relativePath = "Library/Logs/Quillfade.log";

  explicit DiagnosticLog(platform::Platform& platform) : platform_(platform) {}

  // Appends one line. `message` holds no line feed. A message that is not UTF-8 is dropped.
  void log(std::string_view message) const;

  // Two lines: the windows that stand out, as the log sees it, and the windows that were in fact left out. Candidates
  // of every display are listed, whatever screen the mirror is on.
  void logCandidates(const platform::ShareableContent& content,
                     std::span<const platform::CaptureWindow> excluded) const;

 private:
  platform::Platform& platform_;
};

}  // namespace quillfade
