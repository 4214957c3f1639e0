// Runs another program so that what it reads of the screen leaves out some of the windows.
//
// Threads: `runThroughLens` blocks the main thread until the program has ended, and calls the rule there.
// Failure: sentences. A desktop that has no lens says so.
#pragma once

#include <expected>
#include <functional>
#include <string>
#include <vector>

#include "Platform/Capture.h"
#include "Platform/Error.h"
#include "Platform/Screens.h"

namespace platform {

struct LensRule {
  // Returns those windows on screen that are left out; called whenever the program reads. Pure.
  std::function<std::vector<CaptureWindow>(const std::vector<CaptureWindow>&, const std::vector<Screen>&)> leftOut;
  // Whether the rule may leave out other applications' windows. What lies beneath those has to be kept from the start,
  // which makes all drawing more expensive; what lies beneath its own windows the application keeps anyway.
  bool concernsOthers = true;
};

// Defined by the adapter that is linked in, as are the functions below. Looks the program up as a shell would. Returns
// its exit status, or 128 plus the number of the signal that ended it.
std::expected<int, Error> runThroughLens(const std::vector<std::string>& program, const LensRule& rule);

// Adds an entry to the user's application menu that starts an application through the lens. `application` is the name
// or path of that application's own entry; `words` go between this program and the application's command line. Returns
// the path of the new entry.
std::expected<std::string, Error> installLensEntry(const std::string& application,
                                                   const std::vector<std::string>& words);
// Removes that entry and returns its path.
std::expected<std::string, Error> removeLensEntry(const std::string& application);

}  // namespace platform
