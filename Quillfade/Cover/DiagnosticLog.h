// The plain-text log of what the live mirrors do: it shows afterwards why a window was or was not left out.
//
// The file is "Library/Logs/Quillfade.log" below the home directory. Every line opens and closes the file itself.
// Nothing is buffered or rotated, and every failure is ignored: a log must never get in the way.
//
// Threads: any; every call writes its line whole, and no state is shared.
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

  // Logs two lines: the windows that stand out, as the log sees it, and those that were actually left out. Lists
  // candidates on every display, whatever screen the mirror is on.
  void logCandidates(const platform::ShareableContent& content,
                     std::span<const platform::CaptureWindow> excluded) const;

 private:
  platform::Platform& platform_;
};

}  // namespace quillfade
