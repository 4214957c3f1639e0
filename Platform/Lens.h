// Running another program so that what it reads of the screen is not the screen as it looks, but the screen without
// some of its windows.
//
// Threads: `runThroughLens` blocks the main thread until the program has ended, and calls the rule there.
// Failure: sentences. A desktop that cannot do it says so.
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
  // Says which of the windows on screen are left out, whenever the program reads. Pure.
  std::function<std::vector<CaptureWindow>(const std::vector<CaptureWindow>&, const std::vector<Screen>&)> leftOut;
  // Whether others than this application's own windows can be among them. What lies beneath others has to be kept from
  // the beginning, which makes all drawing dearer; beneath its own windows the application keeps it already.
  bool concernsOthers = true;
};

// Defined by the adapter that is linked in, as are the others here. The program is looked up as a shell would; the
// result is its exit status, or 128 and the number of the signal that ended it.
std::expected<int, Error> runThroughLens(const std::vector<std::string>& program, const LensRule& rule);

// Adds an entry to the user's own menu of applications that starts this application through the lens. `application` is
// the name or the path of its entry, `words` what stands between this program and the application's command line. The
// result names the new entry.
std::expected<std::string, Error> installLensEntry(const std::string& application,
                                                   const std::vector<std::string>& words);
// Takes it away again.
std::expected<std::string, Error> removeLensEntry(const std::string& application);

}  // namespace platform
